#pragma once

#include <QObject>
#include <QString>

// A small file logger: time-stamped lines appended to a file named by date. The program's own
// diagnostics go through qDebug; this logger is offered for lines that must outlive a run.
class NLogger : public QObject
{
    Q_OBJECT
public:
    explicit NLogger(const QString &path = QString(), QObject *parent = nullptr);

    QString path() const { return m_path; }
    void log(const QString &file, const QString &text);

    static void setLoggerPath(const QString &path);
    static QString standardLogFilePath();

    static void Log(const QString &text, bool flag = false);
    static void Log(const QString &type, const QString &text, bool flag);
    static void LogTo(const QString &text, const QString &prefix, bool flag = false);
    static void LogTo(const QString &type, const QString &text, const QString &prefix, bool flag);
    static void LogToFile(const QString &text, const QString &file, bool flag = false);
    static void LogToFile(const QString &type, const QString &text, const QString &file, bool flag);

private:
    static QString dayFile(const QString &prefix);
    static QString typed(const QString &type, const QString &text);

    QString m_path;
};
