#include "FakeBox.h"

#include "device/DeviceProtocol.h"

FakeBox::FakeBox(const QString &greetingAnswer, QObject *parent)
    : QObject(parent)
    , m_greetingAnswer(greetingAnswer)
{
    connect(&m_terminal, &PseudoTerminal::received, this,
            [this](const QByteArray &bytes) { m_splitter.parse(DeviceProtocol::decode(bytes)); });
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
