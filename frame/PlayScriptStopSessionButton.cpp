#include "PlayScriptStopSessionButton.h"

#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "device/TarveloDevice.h"
#include "foundation/widgets/AppDialogs.h"
#include "foundation/widgets/MediaHelper.h"
#include "foundation/widgets/WidgetBuilders.h"

#include <QPushButton>

PlayScriptStopSessionButton::PlayScriptStopSessionButton(TarveloModel *model, QWidget *parent)
    : QStackedWidget(parent)
    , m_model(model)
{
    setContentsMargins(0, 0, 0, 0);
    if (!m_model)
        return;
    static const QIcon playIcon = MediaHelper::icon(QStringLiteral(":/resources/Images/play.svg"));
    static const QIcon stopIcon =
        MediaHelper::icon(QStringLiteral(":/resources/Images/stop-circle.svg"));
    m_stop = makeIconButton(stopIcon, QString(), tr("Прервать сессию"), QStringLiteral("negative"),
                            QSize(24, 24));
    m_play =
        makeIconButton(playIcon, QString(), QString(), QStringLiteral("positive"), QSize(24, 24));
    addWidget(m_stop);
    addWidget(m_play);

    connect(m_play, &QPushButton::clicked, this, &PlayScriptStopSessionButton::play);
    connect(m_stop, &QPushButton::clicked, this, &PlayScriptStopSessionButton::stop);
    m_connections << connect(m_model, &TarveloModel::sessionStarted, this,
                             &PlayScriptStopSessionButton::updateState)
                  << connect(m_model, &TarveloModel::sessionFinished, this,
                             &PlayScriptStopSessionButton::updateState)
                  << connect(m_model, &TarveloModel::scriptChanged, this,
                             &PlayScriptStopSessionButton::updateState)
                  << connect(m_model->device(), &TarveloDevice::connectedChanged, this,
                             &PlayScriptStopSessionButton::updateState);
    updateState();
}

void PlayScriptStopSessionButton::updateState()
{
    // The stop button stays while a session runs, also when the link is lost meanwhile.
    if (m_model->sessionRunning()) {
        setCurrentWidget(m_stop);
        return;
    }
    setCurrentWidget(m_play);
    const QString problem = playProblem();
    m_play->setEnabled(problem.isEmpty());
    m_play->setToolTip(problem.isEmpty() ? tr("Воспроизвести сценарий") : problem);
}

void PlayScriptStopSessionButton::setLock(const QString &reason)
{
    m_lock = reason;
    if (m_model)
        updateState();
}

QString PlayScriptStopSessionButton::playProblem() const
{
    if (!m_lock.isEmpty())
        return m_lock;
    const TarveloScript *script = m_model->currentScript();
    if (!script)
        return tr("Сценарий не выбран");
    // An empty or unreadable file loads as a script without stages.
    if (!script->hasSteps())
        return tr("В сценарии нет ни одного шага");
    if (!m_model->device()->isConnected())
        return tr("Устройство не подключено");
    return QString();
}

void PlayScriptStopSessionButton::play()
{
    if (playProblem().isEmpty())
        m_model->device()->uploadScript(m_model->currentScript(), -1, true);
}

void PlayScriptStopSessionButton::stop()
{
    if (!AppHelper::confirmDialog(tr("Прервать сессию"),
                                  tr("Прервать сессию? Записанные этапы сохраняются."),
                                  QMessageBox::Question, {tr("Прервать"), tr("Продолжить")}))
        return;
    // The box may have ended the run while the question was open.
    if (m_model->sessionRunning())
        m_model->abortSession();
}
