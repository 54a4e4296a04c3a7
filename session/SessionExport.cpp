#include "SessionExport.h"

#include "ReportTexts.h"
#include "SessionReport.h"
#include "data/TarveloSession.h"
#include "foundation/FileUtilities.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPdfWriter>
#include <QScreen>
#include <QTextDocument>

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

QString extension(Format format)
{
    switch (format) {
    case Format::Csv:
        return QStringLiteral(".csv");
    case Format::Pdf:
        return QStringLiteral(".pdf");
    case Format::Xlsx:
        break;
    }
    return QStringLiteral(".xlsx");
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
        html =
            QStringLiteral("<h3>") + subjectName.toHtmlEscaped() + QStringLiteral("</h3>") + html;
    return html;
}

bool writeTable(Format format, const XLSXHelper::Rows &table, const QString &filePath,
                const QString &sheetName, QString *error)
{
    switch (format) {
    case Format::Xlsx:
        return XLSXHelper::dataToXLSX(table, filePath, sheetName, error);
    case Format::Csv:
        return XLSXHelper::dataToCSV(table, filePath, sheetName, CsvSeparator, CsvLineEnd, error);
    case Format::Pdf:
        break;
    }
    return false;
}

bool writePdf(const QString &html, const QString &filePath, QString *error)
{
    // Printed into memory, where nothing fails, and then written as one file that either is
    // whole or isn't there; a printer writing straight to disk reports no failure at all.
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setPageSize(QPageSize(QPageSize::A4));
        // The resolution a screen printer has, which the report's pixel sizes are made for.
        const QScreen *screen = QGuiApplication::primaryScreen();
        writer.setResolution(screen ? qRound(screen->logicalDotsPerInch()) : 96);
        QTextDocument document;
        document.setHtml(html);
        document.print(&writer);
    }
    return FileUtilities::writeAtomically(filePath, pdf.data(), error);
}

} // namespace SessionExport
