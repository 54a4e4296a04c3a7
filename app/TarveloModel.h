#pragma once

#include "foundation/ConnectionHelper.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class SessionRecorder;
class TarveloDevice;
class TarveloScript;
class TarveloSession;
class TarveloSettings;
class TarveloUser;

// The one central object: lays out the data folder, owns the settings and the device link, knows
// all scripts and subjects, holds the current selections and the session of the moment, and
// tells the pages of every change. Its recorder turns the box's reports into a session record;
// the box plays the script and decides the transfers, the model only writes them down.
//
// Replaced scripts, sessions and subjects are deliberately not destroyed: views keep pointers to
// them after they have dropped out of the model.
class TarveloModel : public QObject
{
    Q_OBJECT
public:
    explicit TarveloModel(QObject *parent = nullptr);
    ~TarveloModel() override;

    // The process-wide model; null until the constructor has finished.
    static TarveloModel *instance();

    QString rootFolder() const { return m_rootFolder; }
    // Empty when the data folder takes files; otherwise the system's reason why it doesn't.
    // Nothing goes anywhere else then: every save fails, and says so.
    QString dataFolderProblem() const { return m_dataFolderProblem; }
    QString recordsFolder() const { return m_recordsFolder; }
    QString scriptsFolder() const { return m_scriptsFolder; }
    TarveloSettings *settings() const { return m_settings; }
    TarveloDevice *device() const { return m_device; }
    TarveloSession *session() const;
    bool sessionRunning() const;
    // Where the session of the moment stands on disk.
    const SessionRecorder *recorder() const { return m_recorder; }
    QList<TarveloUser *> users() const { return m_users; }
    TarveloUser *currentUser() const { return m_currentUser; }
    TarveloScript *currentScript() const { return m_currentScript; }
    QString currentScriptTitle() const { return m_currentScriptTitle; }
    QStringList scriptTitles() const { return m_scriptTitles; }

    void setCurrentScriptTitle(const QString &title) { m_currentScriptTitle = title; }
    void reloadScripts();
    void selectScript(const QString &title);
    // Save writes the current script under its (possibly new, trimmed) title; both ways the
    // list and the script are read again, which is all that cancelling takes. A save that
    // fails (a refused title, a file that can't be written) changes nothing on disk, keeps
    // the edited object and gives false.
    bool commitScript(bool save);
    // Files a newly made script under its title and selects it; false, with nothing written,
    // when the title is refused or the file can't be written.
    bool addScript(const TarveloScript &script);
    void removeCurrentScript(bool refresh);
    bool isTitleFree(const QString &title, const QString &own) const;
    // Why a script can't be saved under this title (taken trimmed), in the words the pages
    // show; empty when it can. own is the title the script is stored under now.
    QString titleProblem(const QString &title, const QString &own) const;
    static QString emptyTitleText();
    static QString usedTitleText();

    void reloadUsers();
    void selectUser(const QString &guid);
    // The folder that holds a subject's User.xml and sessions, with a slash: where a subject
    // read from disk was found, whatever its name says now; for a new one, its folderName()
    // in the records folder. Never outside the records folder.
    QString userFolder(const TarveloUser *user) const;
    // Files a new subject (its folder and User.xml) and makes it the current one.
    void addUser(TarveloUser *user);
    // Takes the edits of the subject that had the GUID guid: a changed folder name moves its
    // folder, then User.xml is written and the subject selected anew. False when the folder
    // could not be moved; the edits then go into the old folder, which keeps the sessions.
    bool updateUser(const QString &guid, TarveloUser *edited);
    // Moves a subject's folder, sessions and all, to the desktop's trash. False if it stays.
    bool removeUser(const QString &guid);

public slots:
    // Sends "stop" to the box and ends a running session as if it had finished.
    void abortSession();
    // The single entrance for the box's reports during a run.
    void handleDeviceMessage(const QString &message);

signals:
    void sessionUpdated();
    void sessionStarted();
    void sessionFinished();
    void usersUpdated();
    void userSelected();
    void scriptChanged();
    void scriptsUpdated();

private:
    void finishSession();
    void followPortSetting();
    void followSearchInterval();
    TarveloUser *findUser(const QString &guid) const;

    QString scriptPath(const QString &title) const;
    QString rememberedScriptTitle() const;
    void rememberScriptTitle();

    QString m_rootFolder;
    QString m_dataFolderProblem;
    QString m_recordsFolder;
    QString m_scriptsFolder;
    TarveloSettings *m_settings = nullptr;
    TarveloDevice *m_device = nullptr;
    SessionRecorder *m_recorder = nullptr;
    ConnectionHelper m_connections;
    QList<TarveloUser *> m_users;
    TarveloScript *m_currentScript = nullptr;
    QString m_currentScriptTitle;
    QStringList m_scriptTitles;
    TarveloUser *m_currentUser = nullptr;
};
