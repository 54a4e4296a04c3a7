#pragma once

#include <QObject>
#include <QString>

#include <functional>

class TarveloScript;

// Sends a script to the box as paced commands. Nothing is acknowledged, so the pacing alone
// keeps the box up: each command waits for its bytes, then an event pass keeps the window alive
// and a further pause follows. The first command that doesn't go out ends the upload: the rest
// would go nowhere, and the box must not be started on half a script. Refuses to start while an
// upload is under way, as the event passes could start a second one from the interface and two
// interleaved uploads would garble both scripts on the box.
class ScriptUploader : public QObject
{
    Q_OBJECT
public:
    // Writes one command to the box and waits up to delayMs for its bytes; false when it
    // didn't go out.
    using Send = std::function<bool(const QString &command, int delayMs)>;

    explicit ScriptUploader(Send send, QObject *parent = nullptr);

    bool isUploading() const { return m_uploading; }
    // Blocks the calling thread in short paced waits and, when start is set, sends "startScript"
    // a second after the last command.
    void upload(const TarveloScript &script, int saveSlot, bool start);

signals:
    // Percent done, or -1 once the total is reached. The total counts the header as one item
    // although each of its entries ticks, so an upload always ends on -1.
    void progress(int percent);
    // The upload stopped at a command that didn't go out; nothing more is sent.
    void failed();

private:
    void tick();

    Send m_send;
    int m_counter = 0;
    int m_total = 1;
    bool m_uploading = false;
};
