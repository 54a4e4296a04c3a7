#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QRandomGenerator>
#include <QString>
#include <QTimer>

class PseudoTerminal;

// Frames the box's reports and writes them to the terminal, with the faults of a bad cable on
// request: garbage and line ends between frames, frames cut into several writes with pauses
// between them, and a link that goes dead after a number of messages.
class ReportWriter : public QObject
{
    Q_OBJECT
public:
    struct Faults
    {
        bool noise = false;
        bool split = false;
        int dropAfter = -1; // messages; -1 never
    };

    ReportWriter(PseudoTerminal *terminal, const Faults &faults, quint32 seed,
                 QObject *parent = nullptr);

    // False when the link is gone, or going, and the report wasn't sent.
    bool send(const QString &report);

signals:
    // The terminal was closed after the last message that dropAfter allows.
    void linkDropped();

private:
    QByteArray noise();
    void queueSplit(const QByteArray &frame);
    void writeQueued();
    void dropIfDone();

    PseudoTerminal *m_terminal;
    Faults m_faults;
    QRandomGenerator m_random;
    QList<QByteArray> m_queue;
    QTimer m_pause;
    int m_sent = 0;
    bool m_dropping = false;
};
