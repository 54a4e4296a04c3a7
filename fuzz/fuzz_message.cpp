// The frame splitter of the serial link. The input is the byte stream of the box; it goes
// through the splitter whole and cut into chunks at lengths taken from the input itself, and
// both ways must find the same messages.
#include "FuzzSupport.h"
#include "device/TarveloMessage.h"

#include <QRegularExpression>

using namespace FuzzSupport;

namespace {

const QChar OpenBrace = QLatin1Char('{');
const QChar CloseBrace = QLatin1Char('}');

// Every message stands in the stream as a whole frame, in the order of the stream.
bool framedInOrder(const QString &stream, const QStringList &messages)
{
    int from = 0;
    for (const QString &message : messages) {
        const int at = stream.indexOf(OpenBrace + message + CloseBrace, from);
        if (at < 0)
            return false;
        from = at + message.size() + 1;
    }
    return true;
}

// Feeds the pieces one by one and checks that the signal reports exactly what parse returns.
QStringList splitPieces(const QStringList &pieces)
{
    TarveloMessage splitter;
    QStringList signalled;
    QObject::connect(&splitter, &TarveloMessage::messageReceived,
                     [&signalled](const QString &message) { signalled << message; });
    QStringList returned;
    for (const QString &piece : pieces)
        returned << splitter.parse(piece);
    check(returned == signalled, "messageReceived reports every returned message once, in order");

    // A reset drops any half message: the next frame stands alone.
    splitter.reset();
    check(splitter.parse(QStringLiteral("{x}")) == QStringList {QStringLiteral("x")},
          "after reset a fresh frame is read alone");
    return returned;
}

QStringList withOneReplacementPerRun(QStringList messages)
{
    static const QRegularExpression run(QStringLiteral("\uFFFD+"));
    for (QString &message : messages)
        message.replace(run, QString(QChar::ReplacementCharacter));
    return messages;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray stream = bytes(data, size);
    const QString text = QString::fromUtf8(stream.constData(), stream.size());

    const QStringList whole = splitPieces({text});
    for (const QString &message : whole)
        check(!message.contains(CloseBrace), "no message holds a closing brace");
    check(framedInOrder(text, whole), "every message is a frame of the stream, in order");

    // The same text in chunks gives the same messages.
    QStringList textPieces;
    Cuts textCuts(data, size);
    for (int from = 0; from < text.size();) {
        const int length = textCuts.next();
        textPieces << text.mid(from, length);
        from += length;
    }
    check(splitPieces(textPieces) == whole, "chunks of the text give the messages of the whole");

    // The bytes in chunks, as the port's reads come: the splitter keeps a character cut between
    // two reads, so reads cut anywhere give exactly the messages of the whole stream.
    TarveloMessage splitter;
    QStringList fromReads;
    Cuts byteCuts(data, size);
    for (int from = 0; from < stream.size();) {
        const int length = byteCuts.next();
        fromReads << splitter.parseBytes(stream.mid(from, length));
        from += length;
    }
    // Bytes that are no UTF-8 become replacement characters, and how many of them a broken
    // sequence gives may depend on where a read ends; the messages are the same otherwise.
    check(withOneReplacementPerRun(fromReads) == withOneReplacementPerRun(whole),
          "reads cut anywhere give the messages of the whole stream");
    return 0;
}
