#include "NLogger.h"

#include "TextHelper.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QMutex>
#include <QMutexLocker>
#include <QStandardPaths>

#include <cstdio>

namespace {
QString &loggerFolder()
{
    static QString folder;
    return folder;
}

// The first file named in a process is the one all lines go to, so a run that crosses
// midnight stays in one file.
QByteArray &openPath()
{
    static QByteArray path;
    return path;
}

QMutex &writeLock()
{
    static QMutex lock;
    return lock;
}
} // namespace

NLogger::NLogger(const QString &path, QObject *parent)
    : QObject(parent)
    , m_path(path.isEmpty() ? standardLogFilePath() : path)
{
}

void NLogger::log(const QString &file, const QString &text)
{
    LogToFile(text, file, false);
}

void NLogger::setLoggerPath(const QString &path)
{
    loggerFolder() = path;
}

QString NLogger::standardLogFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QLatin1Char('/')
        + QCoreApplication::applicationName() + QLatin1Char('_')
        + TextHelper::DateTimeFileString(QDateTime(), true) + QStringLiteral(".log");
}

void NLogger::Log(const QString &text, bool flag)
{
    LogTo(text, loggerFolder(), flag);
}

void NLogger::Log(const QString &type, const QString &text, bool flag)
{
    LogTo(type, text, loggerFolder(), flag);
}

void NLogger::LogTo(const QString &text, const QString &prefix, bool flag)
{
    LogToFile(text, dayFile(prefix), flag);
}

void NLogger::LogTo(const QString &type, const QString &text, const QString &prefix, bool flag)
{
    LogToFile(typed(type, text), dayFile(prefix), flag);
}

void NLogger::LogToFile(const QString &type, const QString &text, const QString &file, bool flag)
{
    LogToFile(typed(type, text), file, flag);
}

void NLogger::LogToFile(const QString &text, const QString &file, bool)
{
    QMutexLocker locker(&writeLock());
    if (openPath().isEmpty())
        openPath() = file.toUtf8();
    FILE *out = std::fopen(openPath().constData(), "ab");
    if (!out)
        return;
    const QByteArray line = (QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"))
                             + QLatin1Char('\t') + text + QStringLiteral("\r\n"))
                                .toUtf8();
    std::fwrite(line.constData(), 1, size_t(line.size()), out);
    std::fclose(out);
}

QString NLogger::dayFile(const QString &prefix)
{
    return prefix + QDate::currentDate().toString(QStringLiteral("yyyy.MM.dd"))
        + QStringLiteral(".log");
}

QString NLogger::typed(const QString &type, const QString &text)
{
    return type.isEmpty() ? text : type + QLatin1Char('\t') + text;
}
