#pragma once

#include "foundation/XLSXHelper.h"

#include <QString>
#include <QStringList>

#include <functional>

class TarveloModel;
class TarveloSession;
class TarveloSettings;

// The export command of a session view, for what the view shows at the moment it is asked:
// the save dialog in the remembered folder and format, offering a name that carries the
// format's extension; the file, written whole or not at all; a message with the reason when it
// failed; and what the settings ask for afterwards. The dialog's event loop may see the next
// session start, which then isn't mixed in.
class SessionExportCommand
{
public:
    // Asks for the file: its name, or empty when cancelled; sets the chosen filter.
    using ChooseFile = std::function<QString(const QString &path, const QStringList &filters,
                                             QString *selectedFilter)>;

    // The model gives the subject and the settings; without one nothing is remembered.
    SessionExportCommand(const TarveloSession &session, const XLSXHelper::Rows &table,
                         const QString &reportHtml, const TarveloModel *model);

    // The file written, or empty when the dialog was cancelled or the write failed.
    QString run(const ChooseFile &chooseFile) const;

private:
    bool write(const QString &filter, const QString &filePath, QString *error) const;
    void openAfterExport(const QString &filePath) const;

    const TarveloSession &m_session;
    XLSXHelper::Rows m_table;
    QString m_reportHtml;
    QString m_subject;
    TarveloSettings *m_settings = nullptr;
};
