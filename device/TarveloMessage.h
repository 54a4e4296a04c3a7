#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

// Turns the decoded byte stream of one link back into whole "{...}" messages. Whatever stands
// between two frames (boot noise, line ends) is dropped; braces don't nest and can't be escaped.
// Only the half message now being received survives from one chunk to the next.
class TarveloMessage : public QObject
{
    Q_OBJECT
public:
    explicit TarveloMessage(QObject *parent = nullptr);

    // The messages this chunk finished, oldest first; messageReceived has been emitted for
    // each of them, in the same order, before this returns.
    QStringList parse(const QString &chunk);
    // Forgets a half message, so that the tail of an earlier connection can't join the first
    // message of the next one.
    void reset();

signals:
    void messageReceived(const QString &msg);

private:
    void addText(const QString &text);

    QString m_buffer;
    bool m_inside = false;
    QStringList m_messages;
};
