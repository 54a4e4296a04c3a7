#include "SessionExport.h"

#include "ReportTexts.h"
#include "SessionReport.h"
#include "data/TarveloSession.h"
#include "foundation/FileUtilities.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QScreen>
#include <QTextCursor>
#include <QTextDocument>

namespace SessionExport {

namespace {
const QString FileDateFormat = QStringLiteral("yyyy-MM-dd HH.mm");
const QString PartSeparator = QStringLiteral(" - ");
const QString CsvSeparator = QStringLiteral(";");
const QString CsvLineEnd = QStringLiteral("\r\n");

// Laid out as QTextDocument::print() lays out its copy of a document: the page's margins (2 mm
// where it has none), 2 cm around the text and the page number under its bottom right corner.
// Laid out once, on the page itself, instead of at screen width first and then again in a copy,
// which cost the most of a long session's export. The report goes into the empty document by a
// cursor, which lays it out in one pass: setHtml() starts a paged layout in steps that lays the
// long stage table out twice, once up to its first step and again when the page count asks for
// the rest. The document comes out the same either way.
void printOnce(const QString &html, QPdfWriter &writer, qreal dpi)
{
    if (writer.pageLayout().margins().isNull())
        writer.setPageMargins(QMarginsF(2, 2, 2, 2), QPageLayout::Millimeter);
    QPainter painter(&writer);
    QTextDocument document;
    document.documentLayout()->setPaintDevice(&writer);
    const int margin = int(2 / 2.54 * dpi);
    document.setDocumentMargin(margin);
    const QRectF body(0, 0, writer.width(), writer.height());
    document.setPageSize(body.size());
    QTextCursor(&document).insertHtml(html);

    const QPointF pageNumberAt(body.width() - margin * writer.logicalDpiX() / dpi,
                               body.height() - margin * writer.logicalDpiY() / dpi
                                   + QFontMetrics(document.defaultFont(), &writer).ascent()
                                   + 5 * writer.logicalDpiY() / 72.0);
    QAbstractTextDocumentLayout::PaintContext context;
    // Black whatever the system's text colour: the page is white paper.
    context.palette.setColor(QPalette::Text, Qt::black);
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        const QRectF view(0, page * body.height(), body.width(), body.height());
        painter.save();
        painter.translate(0, -view.top());
        painter.setClipRect(view);
        context.clip = view;
        document.documentLayout()->draw(&painter, context);
        painter.setClipping(false);
        painter.setFont(document.defaultFont());
        const QString number = QString::number(page + 1);
        painter.drawText(qRound(pageNumberAt.x() - painter.fontMetrics().horizontalAdvance(number)),
                         qRound(pageNumberAt.y() + view.top()), number);
        painter.restore();
    }
}
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
        const qreal dpi = screen ? screen->logicalDotsPerInch() : 96;
        writer.setResolution(qRound(dpi));
        printOnce(html, writer, dpi);
    }
    return FileUtilities::writeAtomically(filePath, pdf.data(), error);
}

} // namespace SessionExport
