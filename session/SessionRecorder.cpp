#include "SessionRecorder.h"

#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"

#include <QDateTime>
#include <QDebug>

#include <utility>

SessionRecorder::SessionRecorder(FolderOf folderOf, QObject *parent)
    : QObject(parent)
    , m_folderOf(std::move(folderOf))
{
}

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
    m_session->setScriptTitle(title);
    m_session->setStart(QDateTime::currentDateTime());
    if (subject) {
        m_session->setUserName(subject->fullName(false));
        m_session->setUserGUID(subject->getGUID());
    }
    m_running = true;
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
    if (!m_session->doNotRecord()) {
        const QString folder = m_folderOf(subject);
        if (!m_session->save(folder))
            qDebug() << "Session not saved in" << folder;
    }
    m_running = false;
    emit sessionUpdated();
    emit sessionFinished();
}
