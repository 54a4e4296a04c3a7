#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class QTextDecoder;

// Turns the byte stream of one link back into whole "{...}" messages. Whatever stands between
// two frames (boot noise, line ends) is dropped; braces don't nest and can't be escaped. Only
// the half message now being received, and a character cut between two reads, survive from
// one read to the next. Each link has a splitter of its own, so those halves never mix.
class TarveloMessage : public QObject
{
    Q_OBJECT
public:
    // The most text kept while a frame waits for its closing brace. A longer frame is dropped
    // whole, up to its brace, and logged once: a box that never closes a frame can't eat the
    // memory.
    static constexpr int MaxFrameLength = 64 * 1024;

    explicit TarveloMessage(QObject *parent = nullptr);
    ~TarveloMessage() override;

    // One read of the link: decoded as UTF-8 with the state of the earlier reads kept, so that
    // a character cut between two reads arrives whole, then parsed. Bytes that are not UTF-8
    // become replacement characters.
    QStringList parseBytes(const QByteArray &bytes);
    // The messages this chunk finished, oldest first; messageReceived has been emitted for
    // each of them, in the same order, before this returns.
    QStringList parse(const QString &chunk);
    // Forgets a half message and a cut character, so that the tail of an earlier connection
    // can't join the first message of the next one.
    void reset();

signals:
    void messageReceived(const QString &msg);

private:
    void addText(const QString &text);

    std::unique_ptr<QTextDecoder> m_decoder;
    QString m_buffer;
    bool m_inside = false;
    // Inside a frame that grew too long: its rest is dropped up to its closing brace.
    bool m_dropping = false;
    QStringList m_messages;
};
