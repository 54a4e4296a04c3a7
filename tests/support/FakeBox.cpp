#include "FakeBox.h"

#include "device/DeviceProtocol.h"

FakeBox::FakeBox(const QString &greetingAnswer, QObject *parent)
    : QObject(parent)
    , m_decoder(QTextCodec::codecForName("UTF-8")->makeDecoder())
    , m_greetingAnswer(greetingAnswer)
{
    // A box reads bytes: a character cut between two writes joins up again.
    connect(&m_terminal, &PseudoTerminal::received, this,
            [this](const QByteArray &bytes) { m_splitter.parse(m_decoder->toUnicode(bytes)); });
    connect(&m_splitter, &TarveloMessage::messageReceived, this, [this](const QString &command) {
        m_commands << command;
        if (command == DeviceProtocol::Greeting && !m_greetingAnswer.isEmpty())
            send(m_greetingAnswer);
        emit commandReceived(command);
    });
}

void FakeBox::send(const QString &message)
{
    m_terminal.write(QByteArray(1, '{') + message.toUtf8() + '}');
}
