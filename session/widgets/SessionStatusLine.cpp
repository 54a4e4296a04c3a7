#include "SessionStatusLine.h"

#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/TarveloDevice.h"
#include "foundation/widgets/AppDialogs.h"
#include "session/SessionRecorder.h"

#include <QDir>

namespace {
QString warning(const QString &html)
{
    return QStringLiteral("<span style=\"color: #C30\">") + html + QStringLiteral("</span>");
}
} // namespace

SessionStatusLine::SessionStatusLine(TarveloModel *model, QWidget *parent)
    : QLabel(parent)
    , m_model(model)
{
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    connect(this, &QLabel::linkActivated, this, [this] {
        AppHelper::handToDesktop(DesktopShell::Action::ShowInFolder,
                                 m_model->recorder()->savePath());
    });
    m_connections << connect(m_model, &TarveloModel::sessionUpdated, this,
                             &SessionStatusLine::refresh)
                  << connect(m_model->device(), &TarveloDevice::connectedChanged, this,
                             &SessionStatusLine::refresh);
    refresh();
}

void SessionStatusLine::refresh()
{
    QStringList parts;
    if (m_model->sessionRunning() && !m_model->device()->isConnected())
        parts << warning(tr("Связь с устройством потеряна"));
    const QString save = saveText();
    if (!save.isEmpty())
        parts << save;
    setText(parts.join(QStringLiteral(" · ")));
    setVisible(!parts.isEmpty());
}

QString SessionStatusLine::saveText() const
{
    const TarveloSession *session = m_model->session();
    if (!session)
        return QString();
    if (session->doNotRecord())
        return tr("Результаты не записываются");
    const SessionRecorder *recorder = m_model->recorder();
    // The file as it stands under the data folder, where the operator finds it.
    const QString file =
        QDir::toNativeSeparators(QDir(m_model->rootFolder()).relativeFilePath(recorder->savePath()))
            .toHtmlEscaped();
    switch (recorder->saveState()) {
    case SessionRecorder::SaveState::Saved:
        return tr("Сохранено:") + QStringLiteral(" <a href=\"folder\">") + file
            + QStringLiteral("</a>");
    case SessionRecorder::SaveState::Failed:
        return warning(tr("Не сохранено:") + QLatin1Char(' ') + file + QStringLiteral(" (")
                       + recorder->saveError().toHtmlEscaped() + QLatin1Char(')'));
    case SessionRecorder::SaveState::Unsaved:
    case SessionRecorder::SaveState::NotRecorded: // and ticked back: written after the stage
        break;
    }
    return QString();
}
