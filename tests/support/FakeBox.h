#pragma once

#include "device/TarveloMessage.h"
#include "tools/devsim/PseudoTerminal.h"

#include <QTextDecoder>

#include <memory>

// A box that the test speaks for itself, on a real pseudo-terminal: it answers the greeting
// with a chosen text and otherwise only records the commands; the test sends what it likes.
class FakeBox : public QObject
{
    Q_OBJECT
public:
    // An empty answer leaves the greeting unanswered.
    explicit FakeBox(const QString &greetingAnswer = QStringLiteral("iamtarvelo"),
                     QObject *parent = nullptr);

    bool open() { return m_terminal.open(); }
    QString path() const { return m_terminal.slavePath(); }
    QStringList commands() const { return m_commands; }
    void clearCommands() { m_commands.clear(); }
    void send(const QString &message);
    void sendRaw(const QByteArray &bytes) { m_terminal.write(bytes); }
    void close() { m_terminal.close(); }

signals:
    void commandReceived(const QString &command);

private:
    PseudoTerminal m_terminal;
    std::unique_ptr<QTextDecoder> m_decoder;
    TarveloMessage m_splitter;
    QString m_greetingAnswer;
    QStringList m_commands;
};
