#include "TarveloMessage.h"

#include <QDebug>
#include <QTextCodec>
#include <QTextDecoder>

namespace {
const QChar OpenBrace = QLatin1Char('{');
const QChar CloseBrace = QLatin1Char('}');

std::unique_ptr<QTextDecoder> utf8Decoder()
{
    return std::unique_ptr<QTextDecoder>(QTextCodec::codecForName("UTF-8")->makeDecoder());
}
} // namespace

TarveloMessage::TarveloMessage(QObject *parent)
    : QObject(parent)
    , m_decoder(utf8Decoder())
{
}

TarveloMessage::~TarveloMessage() = default;

QStringList TarveloMessage::parseBytes(const QByteArray &bytes)
{
    // An empty read would make the decoder give up a character cut before it.
    if (bytes.isEmpty())
        return QStringList();
    // With its length: a NUL byte is noise like any other and must not end the text.
    return parse(m_decoder->toUnicode(bytes.constData(), bytes.size()));
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
    m_decoder = utf8Decoder();
    m_messages.clear();
    m_buffer.clear();
    m_inside = false;
    m_dropping = false;
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
        const int end = close < 0 ? text.size() : close;
        if (!m_dropping && m_buffer.size() + (end - from) > MaxFrameLength) {
            qWarning() << "Tarvelo: a frame longer than" << MaxFrameLength
                       << "characters is dropped";
            m_buffer.clear();
            m_dropping = true;
        }
        if (!m_dropping)
            m_buffer += text.midRef(from, end - from);
        if (close < 0)
            return;
        m_inside = false;
        if (!m_dropping)
            m_messages << m_buffer;
        m_buffer.clear();
        m_dropping = false;
        // The closing brace itself is skipped by the next search for "{".
        from = close;
    }
}
