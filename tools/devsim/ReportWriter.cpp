#include "ReportWriter.h"

#include "PseudoTerminal.h"

namespace {
constexpr int SplitPauseMs = 2;
} // namespace

ReportWriter::ReportWriter(PseudoTerminal *terminal, const Faults &faults, quint32 seed,
                           QObject *parent)
    : QObject(parent)
    , m_terminal(terminal)
    , m_faults(faults)
    , m_random(seed)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(SplitPauseMs);
    connect(&m_pause, &QTimer::timeout, this, &ReportWriter::writeQueued);
    connect(m_terminal, &PseudoTerminal::drained, this, &ReportWriter::dropIfDone);
}

bool ReportWriter::send(const QString &report)
{
    if (m_dropping || !m_terminal->isOpen())
        return false;
    if (m_faults.noise && m_random.bounded(2) == 0)
        m_queue << noise();
    const QByteArray frame = QByteArray(1, '{') + report.toUtf8() + '}';
    if (m_faults.split)
        queueSplit(frame);
    else
        m_queue << frame;
    m_dropping = ++m_sent == m_faults.dropAfter;
    if (!m_pause.isActive())
        writeQueued();
    return true;
}

QByteArray ReportWriter::noise()
{
    switch (m_random.bounded(4)) {
    case 0:
        return QByteArrayLiteral("\r\n");
    case 1:
        // What a board prints while it boots, stray closing brace included.
        return QByteArrayLiteral("rst:0x1 boot ok}\r\n");
    default: {
        // Any bytes but an opening brace, which would start a frame: invalid UTF-8 included.
        QByteArray junk;
        const int length = 1 + int(m_random.bounded(8));
        while (junk.size() < length) {
            const char byte = char(m_random.bounded(256));
            if (byte != '{')
                junk += byte;
        }
        return junk;
    }
    }
}

void ReportWriter::queueSplit(const QByteArray &frame)
{
    // Two to four pieces, cut anywhere, multi-byte characters included.
    int from = 0;
    const int pieces = qMin(frame.size(), 2 + int(m_random.bounded(3)));
    for (int i = 1; i < pieces; ++i) {
        const int remaining = frame.size() - from - (pieces - i);
        const int length = 1 + int(m_random.bounded(qMax(1, remaining)));
        m_queue << frame.mid(from, length);
        from += length;
    }
    m_queue << frame.mid(from);
}

void ReportWriter::writeQueued()
{
    while (!m_queue.isEmpty()) {
        m_terminal->write(m_queue.takeFirst());
        if (m_faults.split && !m_queue.isEmpty()) {
            m_pause.start();
            return;
        }
    }
    dropIfDone();
}

void ReportWriter::dropIfDone()
{
    if (!m_dropping || !m_queue.isEmpty() || m_pause.isActive() || m_terminal->hasPendingBytes()
        || !m_terminal->isOpen())
        return;
    m_terminal->close();
    emit linkDropped();
}
