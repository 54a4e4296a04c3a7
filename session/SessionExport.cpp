#include "SessionExport.h"

#include "ReportTexts.h"
#include "SessionReport.h"
#include "data/TarveloSession.h"

#include <QCoreApplication>

namespace SessionExport {

namespace {
const QString FileDateFormat = QStringLiteral("yyyy-MM-dd HH.mm");
const QString PartSeparator = QStringLiteral(" - ");
const QString CsvSeparator = QStringLiteral(";");
const QString CsvLineEnd = QStringLiteral("\r\n");
} // namespace

const QStringList &filters()
{
    return ReportTexts::instance().fileFilters;
}

QString chosenFilter(const QString &remembered)
{
    return filters().contains(remembered) ? remembered : filters().first();
}

Format formatForFilter(const QString &filter)
{
    if (filter.contains(QLatin1String("*.csv")))
        return Format::Csv;
    if (filter.contains(QLatin1String("*.pdf")))
        return Format::Pdf;
    return Format::Xlsx;
}

QString defaultFileName(const TarveloSession &session, const QString &subjectName)
{
    QString name = session.start().toString(FileDateFormat);
    if (!session.scriptTitle().isEmpty())
        name = session.scriptTitle() + PartSeparator + name;
    if (!subjectName.isEmpty())
        name = subjectName + PartSeparator + name;
    return name;
}

QString sheetName(const TarveloSession &session)
{
    const QString name = session.start().toString(FileDateFormat);
    return name.isEmpty() ? ReportTexts::instance().sessionWord : name;
}

QString pdfHtml(const TarveloSession &session, const QString &reportHtml,
                const QString &subjectName)
{
    // The view's own session word, which a translation may word apart from the report's.
    QString html = SessionReport::heading(
                       session, QCoreApplication::translate("TarveloSessionWidget", "Сессия"))
        + reportHtml;
    if (!subjectName.isEmpty())
        html = QStringLiteral("<h3>") + subjectName + QStringLiteral("</h3>") + html;
    return html;
}

bool writeTable(Format format, const XLSXHelper::Rows &table, const QString &filePath,
                const QString &sheetName)
{
    switch (format) {
    case Format::Xlsx:
        return XLSXHelper::dataToXLSX(table, filePath, sheetName);
    case Format::Csv:
        return XLSXHelper::dataToCSV(table, filePath, sheetName, CsvSeparator, CsvLineEnd);
    case Format::Pdf:
        break;
    }
    return false;
}

} // namespace SessionExport
