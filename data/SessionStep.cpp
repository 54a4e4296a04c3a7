#include "SessionStep.h"

#include "ReportedReaction.h"

#include <QJsonObject>

#include <climits>

namespace {
const QString KeyStimulus = QStringLiteral("s");
const QString KeyButton = QStringLiteral("b");
const QString KeyRequired = QStringLiteral("b2");
const QString KeyValid = QStringLiteral("v");
const QString KeyReaction = QStringLiteral("r");
const QString KeyAllowed = QStringLiteral("t");
const QString KeyDelay = QStringLiteral("d");
} // namespace

SessionStep::Outcome SessionStep::outcome() const
{
    if (!v)
        return Missed;
    if (r > t)
        return Late;
    if (b != b2)
        return Error;
    return Correct;
}

QJsonObject SessionStep::toJson() const
{
    return QJsonObject {
        {KeyButton, b},   {KeyRequired, int(requiredButton(s))},
        {KeyDelay, d},    {KeyReaction, r},
        {KeyStimulus, s}, {KeyAllowed, t},
        {KeyValid, v},
    };
}

SessionStep *SessionStep::fromJson(const QJsonObject &object)
{
    auto *step = new SessionStep;
    step->s = object.value(KeyStimulus).toInt(0);
    step->b = object.value(KeyButton).toInt(TarveloCommon::BTN_None);
    step->b2 = object.value(KeyRequired).toInt(TarveloCommon::BTN_None);
    step->r = object.value(KeyReaction).toInt(0);
    step->t = object.value(KeyAllowed).toInt(0);
    step->d = object.value(KeyDelay).toInt(0);
    step->v = object.value(KeyValid).toBool(false);
    return step;
}

SessionStep *SessionStep::fromReport(const QString &message)
{
    const ReportedReaction reported = ReportedReaction::fromText(message);
    // Out-of-range codes fall back to "no button" and the first stimulus, as the box's own
    // firmware never sends them.
    const uint button = reported.button;
    const uint stimulus = reported.stimulus;
    const qint64 reaction = reported.reaction;

    auto *step = new SessionStep;
    step->s = stimulus > TarveloCommon::StimulusCount ? 0 : int(stimulus);
    step->b =
        button > TarveloCommon::NoReportedButton ? TarveloCommon::NoReportedButton : int(button);
    step->b2 = requiredButton(step->s);
    // The sign only flags a missed reaction; the time itself is its magnitude.
    step->v = reaction >= 0;
    step->r = int(qMin<qint64>(qAbs(reaction), INT_MAX));
    step->t = reported.allowed;
    step->d = reported.delay;
    return step;
}
