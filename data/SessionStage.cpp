#include "SessionStage.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

namespace {
const QString KeyAction = QStringLiteral("action");
const QString KeyIndex = QStringLiteral("index");
const QString KeyStepCount = QStringLiteral("stepCount");
const QString KeySteps = QStringLiteral("steps");
} // namespace

SessionStage::~SessionStage()
{
    qDeleteAll(m_steps);
}

void SessionStage::addStep(SessionStep *step)
{
    if (!step)
        return;
    m_steps.append(step);
    switch (step->outcome()) {
    case SessionStep::Missed:
        ++m_missedCount;
        break;
    case SessionStep::Late:
        ++m_lateCount;
        break;
    case SessionStep::Error:
        ++m_errorCount;
        break;
    case SessionStep::Correct:
        ++m_correctCount;
        break;
    }
    const double n = m_steps.size();
    // The sums grow in step order, as a pass over all steps would add them: the means come out
    // to the last bit as a full recomputation gives them.
    m_allowedTotal += step->t / 1000.0;
    m_speedStep = m_allowedTotal / n;
    // Every step enters M and D, missed ones too: M is the plain mean of all reactions.
    const double reaction = step->r / 1000.0;
    m_reactionTotal += reaction;
    m_reactionMean = m_reactionTotal / n;
    // Welford's update keeps D as exact as the two-pass sum without visiting the steps again;
    // one step gives 0 / 0, a NaN, as the sample variance of one value does.
    const double delta = reaction - m_runningMean;
    m_runningMean += delta / n;
    m_squaredDeviations += delta * (reaction - m_runningMean);
    m_reactionVariance = m_squaredDeviations / (n - 1);
    m_reactionSigma = std::sqrt(m_reactionVariance);
}

QJsonObject SessionStage::toJson() const
{
    QJsonArray steps;
    for (const SessionStep *step : m_steps)
        steps.append(step->toJson());
    return QJsonObject {
        {KeyAction, action},
        {KeyIndex, index},
        {KeyStepCount, stepCount},
        {KeySteps, steps},
    };
}

SessionStage *SessionStage::fromJson(const QJsonObject &object)
{
    auto *stage = new SessionStage;
    stage->action = object.value(KeyAction).toString();
    stage->index = object.value(KeyIndex).toInt(0);
    stage->stepCount = object.value(KeyStepCount).toInt(0);
    const QJsonValue steps = object.value(KeySteps);
    if (steps.isArray()) {
        // A step entry that isn't an object still makes a step, of defaults only.
        const QJsonArray entries = steps.toArray();
        for (const QJsonValue &entry : entries)
            stage->addStep(SessionStep::fromJson(entry.toObject()));
    }
    return stage;
}
