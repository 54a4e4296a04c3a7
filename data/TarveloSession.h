#pragma once

#include "SessionStage.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

class QJsonObject;

// The record of one run of a script for one subject, filled live by the model or read from a
// ".session" file. Owns its stages. Only the header and the stages go to the file; the three
// flags describe this object's life in the program.
class TarveloSession : public QObject
{
    Q_OBJECT
public:
    explicit TarveloSession(QObject *parent = nullptr);
    ~TarveloSession() override;

    // Reads the file into session, or into a new object when it is null, and returns it; never
    // null. An unreadable or broken file leaves the object as it was (a new one is empty, with
    // an invalid start); content problems take defaults.
    static TarveloSession *load(const QString &path, TarveloSession *session = nullptr);
    // The same from the bytes of a session file.
    static TarveloSession *fromJson(const QByteArray &bytes, TarveloSession *session = nullptr);
    // Writes "<folder>/<start as yyyy.MM.dd-hh.mm.ss>.session", creating the folder. The file
    // is replaced atomically, so a failed save leaves an earlier file whole; error, when given,
    // gets the system's reason.
    bool save(const QString &folder, QString *error = nullptr) const;
    // The file's name for this session; an invalid start means the current time.
    QString fileName() const;
    // ".session", the ending of every session file.
    static QString fileSuffix();

    QJsonObject toJson() const;
    // The same with an empty "stages" array.
    QJsonObject headerJson() const;

    QList<SessionStage *> stages() const { return m_stages; }
    // Takes ownership; stages stand in playing order, a repeat being a further entry.
    void addStage(SessionStage *stage);

    QString scriptTitle() const { return m_scriptTitle; }
    void setScriptTitle(const QString &title) { m_scriptTitle = title; }
    QString userName() const { return m_userName; }
    void setUserName(const QString &name) { m_userName = name; }
    QString userGUID() const { return m_userGUID; }
    void setUserGUID(const QString &guid) { m_userGUID = guid; }
    QDateTime start() const { return m_start; }
    void setStart(const QDateTime &start) { m_start = start; }
    QDateTime end() const { return m_end; }
    void setEnd(const QDateTime &end) { m_end = end; }

    // Set by the model when the run ended.
    bool finished() const { return m_finished; }
    void setFinished(bool finished) { m_finished = finished; }
    // Set by whoever read the session from a file.
    bool loaded() const { return m_loaded; }
    void setLoaded(bool loaded) { m_loaded = loaded; }
    // The operator's choice during the run; keeps the model from saving the session.
    bool doNotRecord() const { return m_doNotRecord; }
    void setDoNotRecord(bool doNotRecord) { m_doNotRecord = doNotRecord; }

private:
    void readJson(const QJsonObject &object);

    QString m_scriptTitle;
    QString m_userName;
    QString m_userGUID;
    QDateTime m_start;
    bool m_finished = false;
    bool m_loaded = false;
    bool m_doNotRecord = false;
    QDateTime m_end;
    QList<SessionStage *> m_stages;
};
