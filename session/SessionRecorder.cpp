#include "SessionRecorder.h"

#include "data/SessionFileWriter.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"
#include "foundation/FileUtilities.h"
#include "foundation/WriteFailures.h"

#include <QDateTime>
#include <QFile>

#include <utility>

SessionRecorder::SessionRecorder(FolderOf folderOf, QObject *parent)
    : QObject(parent)
    , m_folderOf(std::move(folderOf))
{
}

SessionRecorder::~SessionRecorder() = default;

SessionStage *SessionRecorder::lastStage() const
{
    return m_session && !m_session->stages().isEmpty() ? m_session->stages().constLast() : nullptr;
}

void SessionRecorder::handleReport(const QString &message, const QString &scriptTitle,
                                   const TarveloUser *subject)
{
    using namespace DeviceProtocol;
    // Tested in this order, case-sensitively; the first prefix that fits decides.
    if (message.startsWith(ScriptStarted)) {
        const QString title = message.mid(ScriptStarted.size());
        start(title.isEmpty() ? scriptTitle : title, subject);
    } else if (message.startsWith(ScriptFinished)) {
        finish(subject);
    } else if (!m_session) {
        // Stage reports before the first session of the program's life have nowhere to go.
        return;
    } else if (message.startsWith(StageStarted)) {
        addStage(message.mid(StageStarted.size()).toInt());
    } else if (message.startsWith(StageAction)) {
        if (SessionStage *stage = lastStage()) {
            stage->action = message.mid(StageAction.size());
            // The stage is over: on disk from now on.
            if (m_running)
                store(subject);
            emit sessionUpdated();
        }
    } else if (message.startsWith(StageItems)) {
        if (!lastStage())
            addStage(0);
        lastStage()->stepCount = message.mid(StageItems.size()).toInt();
        emit sessionUpdated();
    } else if (message.startsWith(ReactionReport)) {
        if (SessionStage *stage = lastStage()) {
            stage->addStep(SessionStep::fromReport(message));
            emit sessionUpdated();
        }
    }
}

void SessionRecorder::start(const QString &title, const TarveloUser *subject)
{
    // A session still running is dropped as it is, neither finished nor saved.
    m_session = new TarveloSession;
    m_file = std::make_unique<SessionFileWriter>(*m_session);
    m_session->setScriptTitle(title);
    m_session->setStart(QDateTime::currentDateTime());
    if (subject) {
        m_session->setUserName(subject->fullName(false));
        m_session->setUserGUID(subject->getGUID());
    }
    m_running = true;
    m_writtenPath.clear();
    setSaveState(SaveState::Unsaved, QString(), QString());
    emit sessionUpdated();
    emit sessionStarted();
}

void SessionRecorder::addStage(int index)
{
    auto *stage = new SessionStage;
    stage->index = index;
    m_session->addStage(stage);
    emit sessionUpdated();
}

void SessionRecorder::finish(const TarveloUser *subject)
{
    if (!m_session)
        return;
    m_session->setFinished(true);
    m_session->setEnd(QDateTime::currentDateTime());
    store(subject);
    m_running = false;
    emit sessionUpdated();
    emit sessionFinished();
}

void SessionRecorder::store(const TarveloUser *subject)
{
    if (m_session->doNotRecord()) {
        // The operator's choice takes back what this run has written so far.
        if (!m_writtenPath.isEmpty() && QFile::remove(m_writtenPath))
            m_writtenPath.clear();
        setSaveState(SaveState::NotRecorded, QString(), QString());
        return;
    }
    const QString folder = m_folderOf(subject);
    const QString path = FileUtilities::FolderSlash(folder) + m_session->fileName();
    QString error;
    if (!m_file->save(folder, &error)) {
        // Said once; the view keeps showing it while the following stages fail as well.
        if (m_saveState != SaveState::Failed)
            WriteFailures::report(path, error);
        setSaveState(SaveState::Failed, path, error);
        return;
    }
    // A subject chosen during the run takes the file along into its own folder.
    if (!m_writtenPath.isEmpty() && m_writtenPath != path)
        QFile::remove(m_writtenPath);
    m_writtenPath = path;
    setSaveState(SaveState::Saved, path, QString());
}

void SessionRecorder::setSaveState(SaveState state, const QString &path, const QString &error)
{
    m_saveState = state;
    m_savePath = path;
    m_saveError = error;
}
