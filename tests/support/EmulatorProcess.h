#pragma once

#include <QProcess>
#include <QTemporaryDir>

// Runs tarvelo-devsim for a test: starts it with a traffic log of its own, reads the path of
// its pseudo-terminal and reads the log back. The process is killed when the object goes.
class EmulatorProcess
{
public:
    EmulatorProcess() = default;
    ~EmulatorProcess();
    EmulatorProcess(const EmulatorProcess &) = delete;
    EmulatorProcess &operator=(const EmulatorProcess &) = delete;

    // False if the program didn't start or printed no path in time.
    bool start(const QStringList &arguments = {});
    QString path() const { return m_path; }
    // As if the cable were pulled.
    void kill();

    QStringList log() const;
    // The commands it received and the reports it sent, in order, without their marks.
    QStringList commands() const { return linesMarked('<'); }
    QStringList reports() const { return linesMarked('>'); }

private:
    QStringList linesMarked(char mark) const;

    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_path;
};

// The greeting goes out a second after a port opened; a search wins a box a little later.
constexpr int WinMs = 8000;

// Points the device search at exactly these extra ports.
void setExtraPorts(const QStringList &paths);
