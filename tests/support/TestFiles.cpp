#include "TestFiles.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

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

} // namespace TestFiles

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
