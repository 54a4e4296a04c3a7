#include "SimulatedSubject.h"

#include "data/TarveloCommon.h"

#include <QtMath>

namespace {
constexpr double MedianMs = 400.0;
constexpr double Spread = 0.25; // sigma of the logarithm: most reactions within 250..650 ms
constexpr int FastestMs = 150;  // quicker than this is anticipation, not reaction
} // namespace

SimulatedSubject::SimulatedSubject(quint32 seed, const Rates &rates)
    : m_random(seed)
    , m_rates(rates)
{
}

Reaction SimulatedSubject::react(int stimulus, int duration, int delay)
{
    const int required = requiredButton(stimulus);
    const double draw = m_random.generateDouble();
    Reaction reaction;
    if (draw < m_rates.miss) {
        reaction.kind = Reaction::Missed;
        reaction.time = qMax(0, duration) + qMax(0, delay);
        reaction.button = TarveloCommon::NoReportedButton;
    } else if (draw < m_rates.miss + m_rates.late) {
        reaction.kind = Reaction::Late;
        // Somewhere in the delay after the stimulus went off.
        reaction.time = qMax(0, duration) + 1 + int(m_random.bounded(qMax(1, delay - 1)));
        reaction.button = required;
    } else if (draw < m_rates.miss + m_rates.late + m_rates.wrong) {
        reaction.kind = Reaction::Wrong;
        reaction.time = reactionTime(duration);
        // Any control of the box but the right one.
        const int controls = TarveloCommon::BTN_None;
        if (required >= controls) {
            reaction.button = int(m_random.bounded(controls));
        } else {
            const int pick = int(m_random.bounded(controls - 1));
            reaction.button = pick >= required ? pick + 1 : pick;
        }
    } else {
        reaction.kind = Reaction::Correct;
        reaction.time = reactionTime(duration);
        reaction.button = required;
    }
    return reaction;
}

int SimulatedSubject::reactionTime(int limit)
{
    const int drawn = qRound(MedianMs * qExp(Spread * standardNormal()));
    // In time by definition: reactions past the limit are the "late" rate's business.
    return qBound(0, qMax(FastestMs, drawn), qMax(0, limit));
}

double SimulatedSubject::standardNormal()
{
    // Box-Muller; 1 - u keeps the logarithm away from zero.
    const double u = 1.0 - m_random.generateDouble();
    const double v = m_random.generateDouble();
    return qSqrt(-2.0 * qLn(u)) * qCos(2.0 * M_PI * v);
}
