#include "TarveloMessage.h"

namespace {
const QChar OpenBrace = QLatin1Char('{');
const QChar CloseBrace = QLatin1Char('}');
} // namespace

TarveloMessage::TarveloMessage(QObject *parent)
    : QObject(parent)
{
}

QStringList TarveloMessage::parse(const QString &chunk)
{
    addText(chunk);
    QStringList finished;
    finished.reserve(m_messages.size());
    // Taken one by one so that a receiver of the signal sees the result list up to its own
    // message, and a nested parse (a receiver feeding the splitter) can't lose any.
    while (!m_messages.isEmpty()) {
        finished << m_messages.takeFirst();
        emit messageReceived(finished.constLast());
    }
    return finished;
}

void TarveloMessage::reset()
{
    m_messages.clear();
    m_buffer.clear();
    m_inside = false;
}

void TarveloMessage::addText(const QString &text)
{
    int from = 0;
    while (from < text.size()) {
        if (!m_inside) {
            const int open = text.indexOf(OpenBrace, from);
            if (open < 0)
                return;
            m_inside = true;
            from = open + 1;
            continue;
        }
        const int close = text.indexOf(CloseBrace, from);
        if (close < 0) {
            m_buffer += text.midRef(from);
            return;
        }
        m_inside = false;
        m_buffer += text.midRef(from, close - from);
        m_messages << m_buffer;
        m_buffer.clear();
        // The closing brace itself is skipped by the next search for "{".
        from = close;
    }
}
