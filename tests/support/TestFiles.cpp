#include "TestFiles.h"

#include <QTest>

#include <csignal>

namespace TestFiles {

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QString dataPath(const QString &name)
{
    return QStringLiteral(TARVELO_TEST_DATA "/") + name;
}

bool matchesGolden(const QString &name, const QByteArray &actual)
{
    if (read(dataPath(name)) == actual)
        return true;
    if (qEnvironmentVariableIsSet("TARVELO_UPDATE_GOLDEN")) {
        qWarning() << "golden file rewritten:" << name;
        return write(dataPath(name), actual);
    }
    const QString path =
        QCoreApplication::applicationDirPath() + QStringLiteral("/golden-actual/") + name;
    QDir().mkpath(QFileInfo(path).absolutePath());
    write(path, actual);
    qWarning().noquote() << "differs from the golden file; compare" << dataPath(name) << "with"
                         << path;
    return false;
}

namespace {
QByteArray unescaped(const QByteArray &text)
{
    static const QMap<char, char> simple {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}};
    QByteArray bytes;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != '\\' || i + 1 == text.size()) {
            bytes += text.at(i);
        } else if (text.at(i + 1) == 'x') {
            bytes += char(text.mid(i + 2, 2).toInt(nullptr, 16));
            i += 3;
        } else {
            const char escaped = text.at(++i);
            bytes += simple.value(escaped, escaped);
        }
    }
    return bytes;
}

QList<QByteArray> split(const QByteArray &text, const QByteArray &separator)
{
    QList<QByteArray> pieces;
    int from = 0;
    for (int at = text.indexOf(separator); at >= 0; at = text.indexOf(separator, from)) {
        pieces << text.mid(from, at - from);
        from = at + separator.size();
    }
    return pieces << text.mid(from);
}

void addColumn(QTestData &row, const QByteArray &type, const QByteArray &value)
{
    if (type == "text") {
        row << QString::fromUtf8(unescaped(value));
    } else if (type == "bytes") {
        row << unescaped(value);
    } else if (type == "int") {
        row << value.toInt();
    } else if (type == "bool") {
        row << (value == "true");
    } else if (type == "ints") {
        QList<int> list;
        for (const QByteArray &item : split(value, " , "))
            list << item.toInt();
        row << (value.isEmpty() ? QList<int>() : list);
    } else {
        QStringList list;
        for (const QByteArray &item : split(value, " , "))
            list << QString::fromUtf8(unescaped(item));
        row << (value.isEmpty() ? QStringList() : list);
    }
}
} // namespace

void addRows(const QString &name)
{
    static const QMap<QByteArray, int> typeIds {{"text", QMetaType::QString},
                                                {"bytes", QMetaType::QByteArray},
                                                {"int", QMetaType::Int},
                                                {"bool", QMetaType::Bool},
                                                {"ints", qMetaTypeId<QList<int>>()},
                                                {"texts", QMetaType::QStringList}};
    QList<QByteArray> types;
    for (const QByteArray &line : read(dataPath(name)).split('\n')) {
        if (line.trimmed().isEmpty() || line.startsWith('#'))
            continue;
        const QList<QByteArray> columns = split(line, " | ");
        if (!types.isEmpty()) {
            QTestData &row = QTest::newRow(columns.constFirst().constData());
            for (int i = 0; i < types.size(); ++i)
                addColumn(row, types.at(i), columns.value(i + 1));
            continue;
        }
        // The table keeps the names' pointers.
        static QList<QByteArray> names;
        for (const QByteArray &column : columns) {
            types << column.mid(column.indexOf(':') + 1);
            names << column.left(column.indexOf(':'));
            QTest::addColumnInternal(typeIds.value(types.last()), names.last().constData());
        }
    }
}

FileSizeLimit::FileSizeLimit(rlim_t bytes)
{
    getrlimit(RLIMIT_FSIZE, &m_original);
    m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = m_original;
    small.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &small);
}

FileSizeLimit::~FileSizeLimit()
{
    setrlimit(RLIMIT_FSIZE, &m_original);
    std::signal(SIGXFSZ, m_oldHandler);
}

} // namespace TestFiles
