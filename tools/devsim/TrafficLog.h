#pragma once

#include <QFile>
#include <QString>

// The emulator's record of the link for tests to compare: "< " and each command received,
// "> " and each report sent, "# " and a note, one per line and flushed at once. Line breaks
// inside a message are written as \r and \n so that each message keeps to its line.
class TrafficLog
{
public:
    bool open(const QString &path);
    void command(const QString &text) { write('<', text); }
    void report(const QString &text) { write('>', text); }
    void note(const QString &text) { write('#', text); }

private:
    void write(char direction, const QString &text);

    QFile m_file;
};
