#pragma once

#include "foundation/XLSXHelper.h"

#include <QString>
#include <QStringList>

class TarveloSession;

// The file side of exporting a session: names, formats and the written files. The export
// dialog and the PDF printer stay in the view; everything they need to decide is here.
namespace SessionExport {

enum class Format { Xlsx, Csv, Pdf };

// The dialog's filters, XLSX first; translated once for the process.
const QStringList &filters();
// The remembered filter when it is one of filters() (case-sensitive), else the XLSX one.
QString chosenFilter(const QString &remembered);
// Decided by the filter alone, never by the file's suffix: a name ending in ".csv" chosen
// under the XLSX filter is an XLSX workbook.
Format formatForFilter(const QString &filter);

// "subject - script - yyyy-MM-dd HH.mm", leaving out the parts that are empty.
QString defaultFileName(const TarveloSession &session, const QString &subjectName);
// The start as "yyyy-MM-dd HH.mm"; a session without a valid start uses the session word, as
// a workbook can't have a sheet without a name.
QString sheetName(const TarveloSession &session);

// The text the PDF prints: a heading with the session word, script title and start in front of
// the report, and in front of that the subject's name when one is given.
QString pdfHtml(const TarveloSession &session, const QString &reportHtml,
                const QString &subjectName);

// Writes the table as XLSX or as CSV (";" between cells, CR LF line ends). PDF isn't a table
// format and gives false.
bool writeTable(Format format, const XLSXHelper::Rows &table, const QString &filePath,
                const QString &sheetName);

} // namespace SessionExport
