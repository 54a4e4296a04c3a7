#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class SessionFileWriter;
class SessionStage;
class TarveloSession;
class TarveloUser;

// Turns the box's reports during a run into a session record and keeps it on disk: the file is
// rewritten atomically after every finished stage, so that a crash or a closed window loses
// at most the stage under way, and once more when the run ends. The box plays the script and
// decides the transfers; the recorder only writes them down and checks nothing. The subject
// and the script title of the moment come with each call, as the model has them then.
//
// A replaced session is deliberately not destroyed: views keep pointers to it.
class SessionRecorder : public QObject
{
    Q_OBJECT
public:
    // Where the session of the moment stands on disk.
    enum class SaveState {
        Unsaved,     // nothing written yet: no session, or no stage finished
        Saved,       // savePath holds the session as far as it has gone
        Failed,      // the last write of savePath failed, for saveError
        NotRecorded, // the operator chose not to record it, and no file of it is left
    };
    Q_ENUM(SaveState)

    // The folder that a subject's sessions go to; null stands for no subject.
    using FolderOf = std::function<QString(const TarveloUser *subject)>;

    explicit SessionRecorder(FolderOf folderOf, QObject *parent = nullptr);
    ~SessionRecorder() override;

    // The session of the moment: null until the first run, kept after its end for the views.
    TarveloSession *session() const { return m_session; }
    // Between the start report and the finish.
    bool isRunning() const { return m_running; }

    SaveState saveState() const { return m_saveState; }
    QString savePath() const { return m_savePath; }
    QString saveError() const { return m_saveError; }

    // One report of the box. A start takes the subject's name and GUID, and scriptTitle when
    // the box names no script.
    void handleReport(const QString &message, const QString &scriptTitle,
                      const TarveloUser *subject);
    // Ends the session and, unless the operator said not to record it, files it in the
    // subject's folder: the subject of this moment, which may differ from the one at the start.
    void finish(const TarveloUser *subject);

signals:
    void sessionUpdated();
    void sessionStarted();
    void sessionFinished();

private:
    void start(const QString &title, const TarveloUser *subject);
    void addStage(int index);
    SessionStage *lastStage() const;
    void store(const TarveloUser *subject);
    void setSaveState(SaveState state, const QString &path, const QString &error);

    FolderOf m_folderOf;
    TarveloSession *m_session = nullptr;
    // Keeps the finished stages' part of the file, so that a stage's write doesn't cost more
    // as the session grows.
    std::unique_ptr<SessionFileWriter> m_file;
    bool m_running = false;
    SaveState m_saveState = SaveState::Unsaved;
    QString m_savePath;
    QString m_saveError;
    // The file that holds this session now, to be taken back or moved.
    QString m_writtenPath;
};
