#include "ReportContent.h"

#include "ReportTexts.h"
#include "SessionSummary.h"
#include "data/StageTransfer.h"
#include "data/TarveloSession.h"

#include <QCoreApplication>

#include <cmath>

namespace {
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

QString countText(int count)
{
    return count == 0 ? Dash : QString::number(count);
}

QString rowNumber(int n)
{
    return QString::number(n).rightJustified(2, QLatin1Char('0'));
}
} // namespace

ReportContent::Transfer ReportContent::transfer(const QString &action)
{
    for (const TransferKind &kind : TransferKinds) {
        if (action == kind.action)
            return {kind.text ? QCoreApplication::translate("TarveloSessionWidget", kind.text)
                              : action,
                    QLatin1String(kind.cssClass)};
    }
    return {action, QString()};
}

ReportContent::ReportContent(const TarveloSession &session, const SessionSummary &summary)
    : finished(session.finished())
{
    const ReportTexts &texts = ReportTexts::instance();
    const QList<SessionStage *> &played = session.stages();
    stages.reserve(played.size());
    for (int i = 0; i < played.size(); ++i) {
        const SessionStage &stage = *played.at(i);
        const Transfer mark = transfer(stage.action);
        // A single step's D is NaN and shows as Qt prints it; only the session figures dash it.
        stages.append(
            {{rowNumber(i + 1), texts.stageWord + QLatin1Char(' ') + QString::number(stage.index),
              QString::number(stage.steps().size()) + QLatin1Char('/')
                  + QString::number(stage.stepCount),
              QString::number(stage.correctCount()), QString::number(stage.lateCount()),
              QString::number(stage.errorCount()), QString::number(stage.missedCount()),
              fixed(stage.reactionMean(), 3), fixed(stage.reactionVariance(), 3),
              QString::number(stage.index) + QStringLiteral(" - ") + fixed(stage.speedStep(), 3),
              mark.text},
             mark.cssClass});
    }

    for (int column = 0; column < SessionSummary::SummedColumnCount; ++column)
        sums << fixedOrDash(summary.columnSum(SessionSummary::Column(column)), 0);
    using Figures = SessionSummary::Figures;
    for (const double Figures::*member : {&Figures::m, &Figures::d, &Figures::sigma}) {
        QStringList row;
        for (int column = 0; column < SessionSummary::ColumnCount; ++column)
            row << fixedOrDash(summary.figures(SessionSummary::Column(column)).*member, 2);
        statistics << row;
    }

    // Button 9 (none) is counted but not shown.
    const int shown = SessionSummary::ButtonSlots - 1;
    for (int i = 0; i < shown; ++i) {
        requiredCounts << countText(summary.requiredCounts()[i]);
        QStringList row;
        for (int j = 0; j < shown; ++j)
            row << countText(summary.reactionMatrix()[i][j]);
        matrix << row;
    }
}
