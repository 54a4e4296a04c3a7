#include "SessionReport.h"

#include "ReportTexts.h"
#include "SessionSummary.h"
#include "data/TarveloSession.h"

#include <cmath>

namespace {
const QString StyleBlock = QStringLiteral(
    "<style>td, th { padding: 3px; text-align: left; border: 1px solid #999; min-height: 30px; "
    "} th { font-size: 12px; background: #CCC } .bbg { background: #cee1f0 } .r { text-align: "
    "right } .lg { background: #F0F0F0 } .err { color: #C30 } .b { font-weight: bold; } .bad2 { "
    "color: #F30 } .bad1 { color: #F60 } .bad0 { color: #F90 } .good1 { color: #89c423 } .good2 "
    "{ color: #5d9202 } table { border-collapse: collapse; border: 0; } </style>");
const QString HeadingDateFormat = QStringLiteral("yyyy/MM/dd HH:mm");
const QString Dash = QStringLiteral("-");

QVariant numberOrDash(double value)
{
    return std::isnan(value) ? QVariant(Dash) : QVariant(value);
}

QString td(const QString &content)
{
    return QStringLiteral("<td class=\"r\">") + content + QStringLiteral("</td>");
}

QString greyTd(const QString &content)
{
    return QStringLiteral("<td class=\"r lg\">") + content + QStringLiteral("</td>");
}

QString emptyGreyCells(int count)
{
    return QStringLiteral("<td class=\"lg\"></td>").repeated(count);
}

QString span(const QString &text, const QString &cssClass)
{
    return QStringLiteral("<span class=\"") + cssClass + QStringLiteral("\">")
        + text.toHtmlEscaped() + QStringLiteral("</span>");
}
} // namespace

SessionReport::SessionReport(const TarveloSession &session)
    : m_exportable(session.finished() || session.loaded())
{
    m_title = heading(session, ReportTexts::instance().sessionWord);
    const SessionSummary summary(session);
    m_content = ReportContent(session, summary);
    m_html = html(m_content);
    if (m_exportable)
        makeExportTable(session, summary);
}

QString SessionReport::heading(const TarveloSession &session, const QString &sessionWord)
{
    return QStringLiteral("<h3>") + sessionWord + QLatin1Char(' ')
        + session.scriptTitle().toHtmlEscaped() + QStringLiteral(" (")
        + session.start().toString(HeadingDateFormat) + QStringLiteral(")</h3>");
}

QString SessionReport::transferMark(const QString &action)
{
    const ReportContent::Transfer mark = ReportContent::transfer(action);
    return span(mark.text, mark.cssClass);
}

const QString &SessionReport::styleBlock()
{
    return StyleBlock;
}

QString SessionReport::html(const ReportContent &content)
{
    const ReportTexts &texts = ReportTexts::instance();
    QString html = StyleBlock;

    // The header row is never closed: reports have always been shown and printed that way.
    const QString tableOpening = QStringLiteral("<table width=\"")
        + QString::number(TableWidthPercent) + QStringLiteral("%\"");
    html += tableOpening + QStringLiteral(" style=\"margin-top: ")
        + QString::number(StageTableMarginTop) + QStringLiteral("px\"><tr>");
    for (int i = 0; i < texts.headers.size(); ++i) {
        const QString attribute = i == 0 ? QStringLiteral(" width=\"1%\"")
            : i == 1                     ? QString()
                                         : QStringLiteral(" class=\"r\"");
        html += QStringLiteral("<th") + attribute + QLatin1Char('>') + texts.headers.at(i)
            + QStringLiteral("</th>");
    }
    for (const ReportContent::StageRow &row : content.stages) {
        const QStringList &cells = row.cells;
        html += QStringLiteral("<tr><td>") + cells.at(0) + QStringLiteral("</td><td>") + cells.at(1)
            + QStringLiteral("</td>");
        for (int i = 2; i < cells.size() - 1; ++i)
            html += td(cells.at(i));
        html += td(span(cells.constLast(), row.transferClass)) + QStringLiteral("</tr>");
    }

    html += QStringLiteral("<tr><td colspan=2 class=\"r lg\">Σ</td>");
    for (const QString &sum : content.sums)
        html += greyTd(sum);
    html += emptyGreyCells(4) + QStringLiteral("</tr>");
    for (int k = 0; k < content.statistics.size(); ++k) {
        html += QStringLiteral("<tr><td colspan=2 class=\"r lg\">") + texts.statisticLabels.at(k)
            + QStringLiteral("</td>");
        for (const QString &value : content.statistics.at(k))
            html += greyTd(value);
        html += emptyGreyCells(3) + QStringLiteral("</tr>");
    }
    html += QStringLiteral("</table>");

    const int shown = content.matrix.size();
    html += QStringLiteral("<br>") + tableOpening
        + QStringLiteral("><tr><th rowspan=\"2\"></th><th colspan=\"") + QString::number(shown)
        + QStringLiteral("\">") + texts.matrixHeading + QStringLiteral("</th></tr><tr>");
    for (int i = 0; i < shown; ++i)
        html += QStringLiteral("<th class=r>") + texts.buttonNames.at(i) + QStringLiteral("</th>");
    html += QStringLiteral("</tr><tr><th class=\"r\">") + texts.matrixRowLabel
        + QStringLiteral("</th>");
    for (const QString &count : content.requiredCounts)
        html += QStringLiteral("<th class=r>") + count + QStringLiteral("</th>");
    html += QStringLiteral("</tr>");
    for (int i = 0; i < shown; ++i) {
        html +=
            QStringLiteral("<tr><th class=r>") + texts.buttonNames.at(i) + QStringLiteral("</th>");
        for (int j = 0; j < shown; ++j)
            html += QStringLiteral("<td class=\"r ") + (i == j ? QStringLiteral(" bbg") : QString())
                + QStringLiteral("\">") + content.matrix.at(i).at(j) + QStringLiteral("</td>");
        html += QStringLiteral("</tr>");
    }
    html += QStringLiteral("</table>");

    if (content.finished)
        html += QStringLiteral("<br><h3>") + texts.finishLine + QStringLiteral("</h3>");
    return html;
}

void SessionReport::makeExportTable(const TarveloSession &session, const SessionSummary &summary)
{
    const ReportTexts &texts = ReportTexts::instance();
    m_exportTable.append(XLSXHelper::Row(texts.headers.cbegin(), texts.headers.cend()));

    const QList<SessionStage *> &stages = session.stages();
    for (int i = 0; i < stages.size(); ++i) {
        const SessionStage &stage = *stages.at(i);
        const QStringList &cells = m_content.stages.at(i).cells;
        m_exportTable.append({i + 1, cells.at(1), int(stage.steps().size()),
                              double(stage.correctCount()), double(stage.lateCount()),
                              double(stage.errorCount()), double(stage.missedCount()),
                              numberOrDash(stage.reactionMean()),
                              numberOrDash(stage.reactionVariance()), cells.at(9), stage.action});
    }

    XLSXHelper::Row sumRow {QString(), QString()};
    for (int column = 0; column < SessionSummary::SummedColumnCount; ++column)
        sumRow << summary.roundedColumnSum(SessionSummary::Column(column));
    m_exportTable.append(sumRow);
    using Figures = SessionSummary::Figures;
    const double Figures::*const members[] = {&Figures::m, &Figures::d, &Figures::sigma};
    for (int k = 0; k < texts.statisticLabels.size(); ++k) {
        XLSXHelper::Row row {QString(), texts.statisticLabels.at(k)};
        for (int column = 0; column < SessionSummary::ColumnCount; ++column)
            row << numberOrDash(summary.figures(SessionSummary::Column(column)).*members[k]);
        m_exportTable.append(row);
    }

    m_exportTable.append(XLSXHelper::Row());
    m_exportTable.append(XLSXHelper::Row {texts.matrixHeading});
    const int shown = m_content.matrix.size();
    XLSXHelper::Row namesRow {QString()};
    for (int i = 0; i < shown; ++i)
        namesRow << texts.buttonNames.at(i);
    m_exportTable.append(namesRow);
    XLSXHelper::Row requiredRow {texts.matrixRowLabel};
    for (const QString &count : m_content.requiredCounts)
        requiredRow << count;
    m_exportTable.append(requiredRow);
    for (int i = 0; i < shown; ++i) {
        XLSXHelper::Row row {texts.buttonNames.at(i)};
        for (const QString &count : m_content.matrix.at(i))
            row << count;
        m_exportTable.append(row);
    }
}
