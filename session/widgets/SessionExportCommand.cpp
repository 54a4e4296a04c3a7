#include "SessionExportCommand.h"

#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "foundation/FileUtilities.h"
#include "foundation/widgets/AppDialogs.h"
#include "session/SessionExport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

SessionExportCommand::SessionExportCommand(const TarveloSession &session,
                                           const XLSXHelper::Rows &table, const QString &reportHtml,
                                           const TarveloModel *model)
    : m_session(session)
    , m_table(table)
    , m_reportHtml(reportHtml)
    , m_subject(model && model->currentUser() ? model->currentUser()->fullName(false) : QString())
    , m_settings(model ? model->settings() : nullptr)
{
}

QString SessionExportCommand::run(const ChooseFile &chooseFile) const
{
    QString folder = m_settings ? m_settings->getLastExportFolder() : QString();
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString filter =
        SessionExport::chosenFilter(m_settings ? m_settings->getLastExportFilter() : QString());
    const QString offered = FileUtilities::FolderSlash(folder)
        + SessionExport::defaultFileName(m_session, m_subject)
        + SessionExport::extension(SessionExport::formatForFilter(filter));
    const QString filePath = chooseFile(offered, SessionExport::filters(), &filter);
    if (filePath.isEmpty())
        return QString();

    // Remembered before writing, so a failed write still moves the folder.
    if (m_settings) {
        m_settings->setLastExportFolder(QFileInfo(filePath).absoluteDir().absolutePath());
        m_settings->setLastExportFilter(filter);
    }
    QString error;
    if (!write(filter, filePath, &error)) {
        AppHelper::warningMessage(
            QCoreApplication::translate("TarveloSessionWidget", "Ошибка сохранения")
                + QStringLiteral(" \"") + filePath + QStringLiteral("\": ") + error,
            QString(), QMessageBox::Warning);
        return QString();
    }
    openAfterExport(filePath);
    return filePath;
}

bool SessionExportCommand::write(const QString &filter, const QString &filePath,
                                 QString *error) const
{
    const SessionExport::Format format = SessionExport::formatForFilter(filter);
    // The PDF prints the report as it was shown, not rebuilt.
    if (format == SessionExport::Format::Pdf)
        return SessionExport::writePdf(SessionExport::pdfHtml(m_session, m_reportHtml, m_subject),
                                       filePath, error);
    return SessionExport::writeTable(format, m_table, filePath, SessionExport::sheetName(m_session),
                                     error);
}

void SessionExportCommand::openAfterExport(const QString &filePath) const
{
    switch (m_settings ? m_settings->getExportBehavior() : TarveloSettings::OnExport_OpenFile) {
    case TarveloSettings::OnExport_OpenFile:
        AppHelper::handToDesktop(DesktopShell::Action::OpenFile, filePath);
        break;
    case TarveloSettings::OnExport_OpenFolder:
        AppHelper::handToDesktop(DesktopShell::Action::ShowInFolder, filePath);
        break;
    case TarveloSettings::OnExport_DoNothing:
        break;
    }
}
