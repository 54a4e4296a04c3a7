#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QTimer>

class QProcess;

// Runs an outside flashing tool once for each port, one port after another, and judges each run
// by its output. The tool runs beside the event loop and its output is read as it comes, so the
// window stays alive while a board is written.
class FirmwareFlasher : public QObject
{
    Q_OBJECT
public:
    // A tool that keeps silent this long is taken for hung and stopped.
    static constexpr int SilenceMs = 30000;

    // files: role to path, as FirmwarePackage::findFiles gives them.
    FirmwareFlasher(int type, const QString &tool, const QMap<QString, QString> &files,
                    QObject *parent = nullptr);

    // The tool's arguments for one port of a board type; paths and the port stand in double
    // quotes as part of the text.
    static QStringList arguments(int type, const QMap<QString, QString> &files,
                                 const QString &port);
    // A "self-" tool is the package's file of that role; any other name is found by the system.
    static QString program(const QString &tool, const QMap<QString, QString> &files);
    // The program in double quotes, a blank, then the arguments joined by blanks.
    static QString commandLine(const QString &program, const QStringList &arguments);
    // True when the output says "invalid", "can't" or "failed", in any case.
    static bool reportsErrors(const QString &output);

    // Ports by the names the port list shows; nothing runs for an empty list.
    void flash(const QStringList &ports);

signals:
    void output(const QString &text);
    // errors: the output has one of the words, or the tool didn't run to a clean end.
    void portDone(const QString &port, bool errors);
    void finished();

private:
    void runNext();
    void readOutput();
    void note(const QString &text);
    void endPort(bool cleanEnd);

    int m_type;
    QString m_program;
    QMap<QString, QString> m_files;
    QStringList m_ports;
    QString m_port;
    QString m_output;
    QProcess *m_process = nullptr;
    QTimer m_silence;
};
