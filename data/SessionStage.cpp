#include "SessionStage.h"

#include "foundation/Statistics.h"

#include <QJsonArray>
#include <QJsonObject>

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
    recompute();
}

void SessionStage::recompute()
{
    m_correctCount = m_lateCount = m_errorCount = m_missedCount = 0;
    double allowedTotal = 0;
    QList<double> reactions;
    reactions.reserve(m_steps.size());
    for (const SessionStep *step : qAsConst(m_steps)) {
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
        allowedTotal += step->t / 1000.0;
        // Every step enters M and D, missed ones too: M is the plain mean of all reactions.
        reactions.append(step->r / 1000.0);
    }
    m_speedStep = m_steps.isEmpty() ? 0.0 : allowedTotal / m_steps.size();
    m_d_cko(reactions, &m_reactionMean, &m_reactionVariance, &m_reactionSigma);
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
