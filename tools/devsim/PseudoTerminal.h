#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;

// The master side of a pseudo-terminal, which stands in for the box's end of the cable. The
// slave side, a device path like /dev/pts/7, is what the program opens as its serial port.
//
// The object keeps a slave descriptor of its own open all the time: otherwise the master would
// see a hang-up each time the program closes the port between two search passes, and the
// terminal settings (raw mode) would be lost with the last descriptor.
class PseudoTerminal : public QObject
{
    Q_OBJECT
public:
    explicit PseudoTerminal(QObject *parent = nullptr);
    ~PseudoTerminal() override;

    bool open();
    bool isOpen() const { return m_master >= 0; }
    QString slavePath() const { return m_slavePath; }
    QString errorString() const { return m_error; }

    // Queues the bytes and writes what the terminal takes now; the rest follows as room comes.
    // Past a modest backlog (nobody reading) new bytes are dropped, as a cable would lose them.
    void write(const QByteArray &bytes);
    bool hasPendingBytes() const { return !m_pending.isEmpty(); }
    // Closes both ends of the emulator's side: the program's port sees its device vanish.
    void close();

signals:
    void received(const QByteArray &bytes);
    void drained();

private:
    void readMaster();
    void writePending();
    bool fail(const char *what);

    int m_master = -1;
    int m_slave = -1;
    QString m_slavePath;
    QString m_error;
    QByteArray m_pending;
    QSocketNotifier *m_readNotifier = nullptr;
    QSocketNotifier *m_writeNotifier = nullptr;
};
