#include "SessionReport.h"

#include "ReportTexts.h"
#include "SessionSummary.h"
#include "data/StageTransfer.h"
#include "data/TarveloSession.h"

#include <QCoreApplication>

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

// The box's transfer words, their shown text (translated when it is a word) and colour class.
struct TransferKind
{
    const QString &action;
    const char *text;
    const char *cssClass;
};
const TransferKind TransferKinds[] = {
    {StageTransfer::Action::Stop, QT_TRANSLATE_NOOP("TarveloSessionWidget", "Стоп"), "err"},
    {StageTransfer::Action::MaxRepeats, QT_TRANSLATE_NOOP("TarveloSessionWidget", "Макс.повторов"),
     "err"},
    {StageTransfer::Action::Repeat, QT_TRANSLATE_NOOP("TarveloSessionWidget", "Повтор"), "bad0"},
    {StageTransfer::Action::BackTwo, nullptr, "bad2"},
    {StageTransfer::Action::BackOne, nullptr, "bad1"},
    {StageTransfer::Action::NextOne, nullptr, "good1"},
    {StageTransfer::Action::NextTwo, nullptr, "good2"},
};

QString fixed(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

// Session-level cells put "-" where a figure doesn't exist, such as D over a single stage.
QString fixedOrDash(double value, int decimals)
{
    return std::isnan(value) ? Dash : fixed(value, decimals);
}

QVariant numberOrDash(double value)
{
    return std::isnan(value) ? QVariant(Dash) : QVariant(value);
}

QString countText(int count)
{
    return count == 0 ? Dash : QString::number(count);
}

QString rowNumber(int n)
{
    return QString::number(n).rightJustified(2, QLatin1Char('0'));
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
} // namespace

SessionReport::SessionReport(const TarveloSession &session)
    : m_exportable(session.finished() || session.loaded())
{
    const ReportTexts &texts = ReportTexts::instance();
    m_title = heading(session, texts.sessionWord);
    const SessionSummary summary(session);
    m_html = StyleBlock;
    addStageTable(session, summary);
    addReactionMatrix(summary);
    if (session.finished())
        m_html += QStringLiteral("<br><h3>") + texts.finishLine + QStringLiteral("</h3>");
}

QString SessionReport::heading(const TarveloSession &session, const QString &sessionWord)
{
    return QStringLiteral("<h3>") + sessionWord + QLatin1Char(' ')
        + session.scriptTitle().toHtmlEscaped() + QStringLiteral(" (")
        + session.start().toString(HeadingDateFormat) + QStringLiteral(")</h3>");
}

QString SessionReport::transferMark(const QString &action)
{
    QString text = action;
    QString cssClass;
    for (const TransferKind &kind : TransferKinds) {
        if (action == kind.action) {
            if (kind.text)
                text = QCoreApplication::translate("TarveloSessionWidget", kind.text);
            cssClass = QLatin1String(kind.cssClass);
            break;
        }
    }
    return QStringLiteral("<span class=\"") + cssClass + QStringLiteral("\">")
        + text.toHtmlEscaped() + QStringLiteral("</span>");
}

void SessionReport::addExportRow(const XLSXHelper::Row &row)
{
    if (m_exportable)
        m_exportTable.append(row);
}

void SessionReport::addStageTable(const TarveloSession &session, const SessionSummary &summary)
{
    const ReportTexts &texts = ReportTexts::instance();
    QString &html = m_html;

    // The header row is never closed: reports have always been shown and printed that way.
    html += QStringLiteral("<table width=\"99.5%\" style=\"margin-top: 8px\"><tr>");
    XLSXHelper::Row headerRow;
    for (int i = 0; i < texts.headers.size(); ++i) {
        const QString attribute = i == 0 ? QStringLiteral(" width=\"1%\"")
            : i == 1                     ? QString()
                                         : QStringLiteral(" class=\"r\"");
        html += QStringLiteral("<th") + attribute + QLatin1Char('>') + texts.headers.at(i)
            + QStringLiteral("</th>");
        headerRow << texts.headers.at(i);
    }
    addExportRow(headerRow);

    const QList<SessionStage *> stages = session.stages();
    for (int i = 0; i < stages.size(); ++i) {
        const SessionStage &stage = *stages.at(i);
        const int n = i + 1;
        const QString stageName = texts.stageWord + QLatin1Char(' ') + QString::number(stage.index);
        const QString speed =
            QString::number(stage.index) + QStringLiteral(" - ") + fixed(stage.speedStep(), 3);
        // A single step's D is NaN and shows as Qt prints it; only the session figures dash it.
        html += QStringLiteral("<tr><td>") + rowNumber(n) + QStringLiteral("</td><td>") + stageName
            + QStringLiteral("</td>")
            + td(QString::number(stage.steps().size()) + QLatin1Char('/')
                 + QString::number(stage.stepCount))
            + td(QString::number(stage.correctCount())) + td(QString::number(stage.lateCount()))
            + td(QString::number(stage.errorCount())) + td(QString::number(stage.missedCount()))
            + td(fixed(stage.reactionMean(), 3)) + td(fixed(stage.reactionVariance(), 3))
            + td(speed) + td(transferMark(stage.action)) + QStringLiteral("</tr>");
        addExportRow({n, stageName, int(stage.steps().size()), double(stage.correctCount()),
                      double(stage.lateCount()), double(stage.errorCount()),
                      double(stage.missedCount()), numberOrDash(stage.reactionMean()),
                      numberOrDash(stage.reactionVariance()), speed, stage.action});
    }

    html += QStringLiteral("<tr><td colspan=2 class=\"r lg\">Σ</td>");
    XLSXHelper::Row sumRow {QString(), QString()};
    for (int column = 0; column < SessionSummary::SummedColumnCount; ++column) {
        const auto c = SessionSummary::Column(column);
        html += greyTd(fixedOrDash(summary.columnSum(c), 0));
        sumRow << summary.roundedColumnSum(c);
    }
    html += emptyGreyCells(4) + QStringLiteral("</tr>");
    addExportRow(sumRow);

    using Figures = SessionSummary::Figures;
    const double Figures::*const members[] = {&Figures::m, &Figures::d, &Figures::sigma};
    for (int k = 0; k < texts.statisticLabels.size(); ++k) {
        const QString &label = texts.statisticLabels.at(k);
        html +=
            QStringLiteral("<tr><td colspan=2 class=\"r lg\">") + label + QStringLiteral("</td>");
        XLSXHelper::Row row {QString(), label};
        for (int column = 0; column < SessionSummary::ColumnCount; ++column) {
            const double value = summary.figures(SessionSummary::Column(column)).*members[k];
            html += greyTd(fixedOrDash(value, 2));
            row << numberOrDash(value);
        }
        html += emptyGreyCells(3) + QStringLiteral("</tr>");
        addExportRow(row);
    }
    html += QStringLiteral("</table>");
}

void SessionReport::addReactionMatrix(const SessionSummary &summary)
{
    const ReportTexts &texts = ReportTexts::instance();
    QString &html = m_html;
    // Button 9 (none) is counted but not shown.
    const int shown = SessionSummary::ButtonSlots - 1;

    html += QStringLiteral("<br><table width=\"99.5%\"><tr><th rowspan=\"2\"></th><th colspan=\"")
        + QString::number(shown) + QStringLiteral("\">") + texts.matrixHeading
        + QStringLiteral("</th></tr><tr>");
    addExportRow({});
    addExportRow({texts.matrixHeading});

    XLSXHelper::Row namesRow {QString()};
    for (int i = 0; i < shown; ++i) {
        html += QStringLiteral("<th class=r>") + texts.buttonNames.at(i) + QStringLiteral("</th>");
        namesRow << texts.buttonNames.at(i);
    }
    addExportRow(namesRow);

    html += QStringLiteral("</tr><tr><th class=\"r\">") + texts.matrixRowLabel
        + QStringLiteral("</th>");
    XLSXHelper::Row requiredRow {texts.matrixRowLabel};
    for (int i = 0; i < shown; ++i) {
        const QString count = countText(summary.requiredCounts()[i]);
        html += QStringLiteral("<th class=r>") + count + QStringLiteral("</th>");
        requiredRow << count;
    }
    html += QStringLiteral("</tr>");
    addExportRow(requiredRow);

    for (int i = 0; i < shown; ++i) {
        html +=
            QStringLiteral("<tr><th class=r>") + texts.buttonNames.at(i) + QStringLiteral("</th>");
        XLSXHelper::Row row {texts.buttonNames.at(i)};
        for (int j = 0; j < shown; ++j) {
            const QString count = countText(summary.reactionMatrix()[i][j]);
            html += QStringLiteral("<td class=\"r ") + (i == j ? QStringLiteral(" bbg") : QString())
                + QStringLiteral("\">") + count + QStringLiteral("</td>");
            row << count;
        }
        html += QStringLiteral("</tr>");
        addExportRow(row);
    }
    html += QStringLiteral("</table>");
}
