#include "FileUtilities.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

// The longest file name most file systems take, in bytes of UTF-8.
constexpr int MaxFileNameBytes = 255;

QString replaceRefused(const QString &text)
{
    static const QString refused = QStringLiteral("/\\<>:\"|?*");
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result += c;
            result += text.at(++i);
            continue;
        }
        // A lone surrogate has no UTF-8 form at all.
        const bool bad =
            c.category() == QChar::Other_Control || c.isSurrogate() || refused.contains(c);
        result += bad ? QChar(QLatin1Char('_')) : c;
    }
    return result;
}

// The longest start of text, in whole characters, that takes at most bytes in UTF-8.
QString cutToBytes(const QString &text, int bytes)
{
    int used = 0;
    int i = 0;
    while (i < text.size()) {
        const int width = text.at(i).isHighSurrogate() ? 2 : 1;
        const int size = text.midRef(i, width).toUtf8().size();
        if (used + size > bytes)
            break;
        used += size;
        i += width;
    }
    return text.left(i);
}

// The names are matched here rather than by QDir's name filters, which compile their patterns
// anew for every folder listed: a search down a big folder spent most of its time on that.
QStringList filesMatching(const QString &folder, const QVector<QRegularExpression> &patterns,
                          bool recursive, bool fullPaths)
{
    QStringList result;
    const QDir dir(folder);
    if (!dir.exists())
        return result;
    const QString base = dir.absolutePath();

    const QStringList entries = dir.entryList(QDir::NoFilter, QDir::NoSort);
    for (const QString &entry : entries) {
        const bool matches = patterns.isEmpty()
            || std::any_of(patterns.cbegin(), patterns.cend(),
                           [&entry](const QRegularExpression &pattern) {
                               return pattern.match(entry).hasMatch();
                           });
        if (matches)
            result << (fullPaths ? base + QLatin1Char('/') + entry : entry);
    }

    if (recursive) {
        const QStringList subfolders =
            dir.entryList(QDir::AllDirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
        for (const QString &sub : subfolders) {
            const QStringList inner =
                filesMatching(base + QLatin1Char('/') + sub, patterns, true, false);
            for (const QString &entry : inner) {
                const QString relative = sub + QLatin1Char('/') + entry;
                result << (fullPaths ? base + QLatin1Char('/') + relative : relative);
            }
        }
    }
    return result;
}

} // namespace

QString FileUtilities::FolderSlash(const QString &path)
{
    if (path.isEmpty())
        return path;
    QString result = path;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!result.endsWith(QLatin1Char('/')))
        result += QLatin1Char('/');
    return result;
}

QString FileUtilities::filename(const QString &path, bool withSuffix)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    const QString suffix = info.suffix();
    if (!withSuffix && !suffix.isEmpty())
        return name.left(name.length() - suffix.length() - 1);
    return name;
}

bool FileUtilities::createIfNotExists(const QString &path)
{
    // Made from the working folder: QDir(path).mkpath(path) would nest a relative path in itself.
    return QDir(path).exists() || QDir().mkpath(path);
}

bool FileUtilities::clearFolder(const QString &path, bool leaveRemoved)
{
    QDir dir(path);
    if (!dir.exists())
        return false;
    const bool removed = dir.removeRecursively();
    if (!leaveRemoved) {
        qDebug() << "Creating dir" << path;
        createIfNotExists(path);
    }
    return removed;
}

QStringList FileUtilities::getFilesOfType(const QString &folder, const QString &type,
                                          bool recursive, bool fullPaths)
{
    return getFilesOfTypes(folder, QStringList {type}, recursive, fullPaths);
}

QStringList FileUtilities::getFilesOfTypes(const QString &folder, const QStringList &types,
                                           bool recursive, bool fullPaths)
{
    // "csv", ".csv" and "*.csv" all make the same filter.
    static const QRegularExpression stars(QStringLiteral("[\\*\\.]+"));
    QVector<QRegularExpression> patterns;
    for (const QString &type : types) {
        if (type.isEmpty())
            continue;
        QString bare = type;
        bare.remove(stars);
        // As QDir matches its name filters.
        patterns << QRegularExpression(
            QRegularExpression::wildcardToRegularExpression(QStringLiteral("*.") + bare),
            QRegularExpression::CaseInsensitiveOption);
    }
    return filesMatching(folder, patterns, recursive, fullPaths);
}

QStringList FileUtilities::GetSubfolders(const QString &path, bool fullPaths, bool recursive)
{
    QStringList result;
    const QString root = FolderSlash(path);
    const QStringList entries = QDir(root).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        if (entry.startsWith(QLatin1Char('.')))
            continue;
        const QString folder = FolderSlash(entry);
        result << (fullPaths ? root + folder : folder);
        if (recursive) {
            const QStringList inner = GetSubfolders(root + folder, false, true);
            for (const QString &sub : inner)
                result << (fullPaths ? root + folder + sub : folder + sub);
        }
    }
    return result;
}

QString FileUtilities::safeFolderName(const QString &name, const QString &keptEnd)
{
    const QString end = cutToBytes(replaceRefused(keptEnd), MaxFileNameBytes);
    QString result = cutToBytes(replaceRefused(name), MaxFileNameBytes - end.toUtf8().size()) + end;
    if (result.isEmpty())
        return QStringLiteral("_");
    if (result.startsWith(QLatin1Char('.')))
        result.replace(0, 1, QLatin1Char('_'));
    if (result.endsWith(QLatin1Char('.')) || result.endsWith(QLatin1Char(' ')))
        result.replace(result.size() - 1, 1, QLatin1Char('_'));
    return result;
}

bool FileUtilities::writeAtomically(const QString &path, const QByteArray &data, QString *error)
{
    QSaveFile file(path);
    errno = 0;
    // commit() overlooks a failure of its own final flush (a full disk, a size limit) and would
    // put the cut-off file in place, so the data is flushed and checked first.
    const bool written = !path.isEmpty() && file.open(QIODevice::WriteOnly)
        && file.write(data) == data.size() && file.flush();
    if (written && file.commit())
        return true;
    // An uncommitted file takes its temporary file with it. A write cut short by a size limit
    // or a full disk leaves Qt without a reason; the system's is still at hand then.
    if (error)
        *error = path.isEmpty() ? QStringLiteral("No file name")
            : errno != 0        ? QString::fromLocal8Bit(std::strerror(errno))
                                : file.errorString();
    return false;
}

QString FileUtilities::writableFolderProblem(const QString &folder)
{
    QTemporaryFile probe(FolderSlash(folder) + QStringLiteral("XXXXXX.probe"));
    return probe.open() ? QString() : probe.errorString();
}

void FileUtilities::ignoreFileSizeSignal()
{
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

namespace {
QString nameText(const char *source)
{
    return QCoreApplication::translate("FileUtilities", source);
}

// Windows opens a device instead of a file for these, whatever follows the first point.
bool isReservedDeviceName(const QString &name)
{
    static const QRegularExpression reserved(
        QStringLiteral("^(CON|PRN|AUX|NUL|COM[1-9]|LPT[1-9])$"),
        QRegularExpression::CaseInsensitiveOption);
    return reserved.match(name.section(QLatin1Char('.'), 0, 0).trimmed()).hasMatch();
}
} // namespace

QString FileUtilities::fileNameProblem(const QString &name)
{
    if (name.isEmpty())
        return nameText("Имя не может быть пустым");
    for (const QChar c : name) {
        if (QLatin1String(RefusedNameCharacters).contains(c))
            return nameText("Имя не может содержать символ «%1»").arg(c);
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator)
            return nameText("Имя не может содержать переводы строк и управляющие символы");
    }
    if (name.contains(QLatin1String("..")))
        return nameText("Имя не может содержать две точки подряд");
    if (name.startsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('.')))
        return nameText("Имя не может начинаться или заканчиваться точкой");
    if (name.front().isSpace() || name.back().isSpace())
        return nameText("Имя не может начинаться или заканчиваться пробелом");
    if (isReservedDeviceName(name))
        return nameText("Имя %1 зарезервировано системой")
            .arg(name.section(QLatin1Char('.'), 0, 0));
    if (name.toUtf8().size() > MaxNameBytes)
        return nameText("Имя длиннее %1 байт").arg(MaxNameBytes);
    return QString();
}
