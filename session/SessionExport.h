#pragma once

#include "foundation/XLSXHelper.h"

#include <QString>
#include <QStringList>

class TarveloSession;

// The file side of exporting a session: names, formats and the written files. The export
// dialog stays in the view; everything it needs to decide is here. Every file is made whole
// before it replaces an earlier one of that name, so a failed export leaves that one as it was.
namespace SessionExport {

enum class Format { Xlsx, Csv, Pdf };

// The dialog's filters, XLSX first; translated once for the process.
const QStringList &filters();
// The remembered filter when it is one of filters() (case-sensitive), else the XLSX one.
QString chosenFilter(const QString &remembered);
// Decided by the filter alone, never by the file's suffix: a name ending in ".csv" chosen
// under the XLSX filter is an XLSX workbook.
Format formatForFilter(const QString &filter);
// ".xlsx", ".csv" or ".pdf". The offered name carries it, so that a dialog never takes the
// minutes of the date ("08.42") for a suffix to replace.
QString extension(Format format);

// "subject - script - yyyy-MM-dd HH.mm", leaving out the parts that are empty.
QString defaultFileName(const TarveloSession &session, const QString &subjectName);
// The start as "yyyy-MM-dd HH.mm"; a session without a valid start uses the session word, as
// a workbook can't have a sheet without a name.
QString sheetName(const TarveloSession &session);

// The text the PDF prints: a heading with the session word, script title and start in front of
// the report, and in front of that the subject's name, escaped, when one is given.
QString pdfHtml(const TarveloSession &session, const QString &reportHtml,
                const QString &subjectName);

// Writes the table as XLSX or as CSV (";" between cells, CR LF line ends). PDF isn't a table
// format and gives false. On failure error, when given, gets the reason.
bool writeTable(Format format, const XLSXHelper::Rows &table, const QString &filePath,
                const QString &sheetName, QString *error = nullptr);
// Prints the HTML on A4 pages at the screen's resolution, default margins and fonts.
bool writePdf(const QString &html, const QString &filePath, QString *error = nullptr);

} // namespace SessionExport
