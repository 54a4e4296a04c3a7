#pragma once

#include <QByteArray>
#include <QString>

class SessionStage;
class TarveloSession;

// Makes a session's file, the indented JSON document of TarveloSession::toJson, for a session
// that grows and is written again after each stage. A stage that another follows can't change
// any more (the box reports to the stage under way only), so its part of the file is made once
// and kept: a write costs the last stage and the copying of the rest, whatever the session's
// length.
class SessionFileWriter
{
public:
    // The session outlives the writer.
    explicit SessionFileWriter(const TarveloSession &session);

    // The file's bytes for the session as it stands.
    QByteArray bytes();
    // Writes them as "<folder>/<TarveloSession::fileName>", creating the folder and replacing
    // any earlier file atomically; error, when given, gets the system's reason for a failure.
    bool save(const QString &folder, QString *error = nullptr);

private:
    static QByteArray stageBlock(const SessionStage &stage);

    const TarveloSession &m_session;
    // The blocks of the stages that can't change any more, each followed by its comma.
    QByteArray m_settled;
    int m_settledCount = 0;
};
