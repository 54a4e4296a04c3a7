#pragma once

#include "ReportContent.h"
#include "foundation/XLSXHelper.h"

#include <QString>

class SessionSummary;
class TarveloSession;

// Everything that a view shows of a session and a spreadsheet gets of it, built in one pass
// from the session record as it stands (running, finished or read from a file): the title
// line, the report HTML, and for a finished or loaded session the export table. The HTML is
// what the report label shows and, with a heading in front, what the PDF prints; its markup,
// quirks included, is kept as operators' earlier reports have it. Texts from the box or a file
// (the script title, the box's transfer words) are escaped, so that they show as text.
class SessionReport
{
public:
    explicit SessionReport(const TarveloSession &session);

    // The heading with the report's session word.
    const QString &title() const { return m_title; }
    const QString &html() const { return m_html; }
    const ReportContent &content() const { return m_content; }
    // Finished or loaded: only then is there a table to export.
    bool isExportable() const { return m_exportable; }
    // Empty unless exportable.
    const XLSXHelper::Rows &exportTable() const { return m_exportTable; }

    // "<h3><session word> <script title> (yyyy/MM/dd HH:mm)</h3>": the title line of the view
    // and the heading of the printed report, each with its own session word.
    static QString heading(const TarveloSession &session, const QString &sessionWord);

    // The "Transfer" cell: a span whose class colours the box's word, e.g.
    // <span class="good1">+1</span>; an unknown or empty word stands as it is, class "".
    static QString transferMark(const QString &action);

    // The report HTML of the given cells.
    static QString html(const ReportContent &content);
    // The space above the stage table, and the share of the width that both tables take.
    static constexpr int StageTableMarginTop = 8;
    static constexpr double TableWidthPercent = 99.5;
    // The style block at the head of the HTML: the one statement of the report's colours.
    static const QString &styleBlock();

private:
    void makeExportTable(const TarveloSession &session, const SessionSummary &summary);

    QString m_title;
    ReportContent m_content;
    QString m_html;
    bool m_exportable = false;
    XLSXHelper::Rows m_exportTable;
};
