#include "ScriptPlayer.h"

#include "TransferRule.h"
#include "data/ReportedReaction.h"
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"

#include <QtMath>

using namespace DeviceProtocol;

namespace {
// How long the subject's finger stays on a control, in script ms: longer than the period of
// the status reports, so that each press shows in at least one.
constexpr int PressMs = 250;
} // namespace

ScriptPlayer::ScriptPlayer(quint32 seed, const SimulatedSubject::Rates &rates, double speed,
                           QObject *parent)
    : QObject(parent)
    , m_subject(seed, rates)
    , m_speed(speed)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        // Taken out first: the action may arm the next one.
        const std::function<void()> action = std::move(m_next);
        m_next = nullptr;
        if (action)
            action();
    });
}

void ScriptPlayer::play(const QSharedPointer<TarveloScript> &script)
{
    m_timer.stop();
    m_script = script;
    m_stages.clear();
    const QList<ScriptStage *> stages = script->stages();
    for (const ScriptStage *stage : stages)
        m_stages << stage;
    m_plays.fill(0, m_stages.size());
    emit report(ScriptStarted + script->title());
    if (m_stages.isEmpty())
        finish();
    else
        startStage(0);
}

void ScriptPlayer::stop()
{
    if (isPlaying())
        finish();
}

void ScriptPlayer::startStage(int index)
{
    m_stage = index;
    m_step = 0;
    m_errors = 0;
    ++m_plays[index];
    // Stages are numbered by their place in the uploaded list, from 0.
    emit report(StageStarted + QString::number(index));
    emit report(StageItems + QString::number(m_stages.at(index)->steps.size()));
    runStep();
}

void ScriptPlayer::runStep()
{
    const QList<ScriptStep *> &steps = m_stages.at(m_stage)->steps;
    if (m_step >= steps.size()) {
        endStage();
        return;
    }
    const ScriptStep step = *steps.at(m_step);
    const Reaction reaction = m_subject.react(step.stimulus, step.duration, step.delay);
    const int duration = qMax(0, step.duration);
    const int window = duration + qMax(0, step.delay);
    const bool answered = reaction.kind != Reaction::Missed;
    // Without "full step time" the stimulus goes off at the reaction and the delay runs from
    // there; with it, every step lasts its duration and delay whatever the subject does.
    const bool full = m_script->fullDuration();
    const int lampMs = full || !answered ? duration : qMin(duration, reaction.time);
    const int stepEnd =
        full || !answered ? qMax(window, reaction.time) : reaction.time + qMax(0, step.delay);
    emit stimulusShown(step.stimulus, wall(lampMs));

    if (reaction.isError())
        ++m_errors;
    ReportedReaction reported;
    reported.reaction = answered ? reaction.time : -reaction.time;
    reported.button = reaction.button;
    reported.required = requiredButton(step.stimulus);
    reported.stimulus = step.stimulus;
    reported.allowed = step.duration;
    reported.delay = step.delay;
    const QString text = reported.toText();
    after(reaction.time, [this, text, answered, reaction, stepEnd] {
        if (answered)
            emit buttonPressed(reaction.button, wall(PressMs));
        emit report(text);
        ++m_step;
        after(stepEnd - reaction.time, [this] { runStep(); });
    });
}

void ScriptPlayer::endStage()
{
    const TransferRule::Decision decision =
        TransferRule::decide(m_stages, m_stage, m_errors, m_plays);
    emit report(StageAction + decision.action);
    if (decision.next == TransferRule::ScriptEnds)
        finish();
    else
        startStage(decision.next);
}

void ScriptPlayer::finish()
{
    m_timer.stop();
    m_next = nullptr;
    m_script.reset();
    m_stages.clear();
    emit report(ScriptFinished);
}

void ScriptPlayer::after(int scriptMs, std::function<void()> action)
{
    m_next = std::move(action);
    m_timer.start(wall(scriptMs));
}

int ScriptPlayer::wall(int scriptMs) const
{
    return qMax(0, qRound(scriptMs / m_speed));
}
