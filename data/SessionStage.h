#pragma once

#include "SessionStep.h"

#include <QList>
#include <QString>

class QJsonObject;

// One run of a script stage: what the box announced and reported, the steps recorded, and
// the values derived from them. A repeated stage is a further SessionStage. The derived values
// are never stored; each addStep brings them up to date from running sums, in the same order
// for a stage read from a file as during the run, so it gets exactly the values it had then.
// The stage owns its steps.
class SessionStage
{
public:
    SessionStage() = default;
    SessionStage(const SessionStage &) = delete;
    SessionStage &operator=(const SessionStage &) = delete;
    ~SessionStage();

    int index = 0;     // stage number as the box reported it
    int stepCount = 0; // steps the box announced; only an announcement
    QString action;    // the box's word for its transfer, verbatim; empty until reported

    // Takes ownership, classes the step and updates the derived values; the cost is the same
    // whatever the stage's length.
    void addStep(SessionStep *step);
    const QList<SessionStep *> &steps() const { return m_steps; }

    double speedStep() const { return m_speedStep; }               // mean allowed time, s
    double reactionMean() const { return m_reactionMean; }         // M, s
    double reactionVariance() const { return m_reactionVariance; } // D (sample), s²; NaN for 1 step
    double reactionSigma() const { return m_reactionSigma; }       // σ, s
    int correctCount() const { return m_correctCount; }
    int lateCount() const { return m_lateCount; }
    int errorCount() const { return m_errorCount; }
    int missedCount() const { return m_missedCount; }

    QJsonObject toJson() const;
    static SessionStage *fromJson(const QJsonObject &object);

private:
    QList<SessionStep *> m_steps;
    double m_allowedTotal = 0;
    double m_reactionTotal = 0;
    double m_runningMean = 0;
    double m_squaredDeviations = 0;
    double m_speedStep = 0;
    double m_reactionMean = 0;
    double m_reactionVariance = 0;
    double m_reactionSigma = 0;
    int m_errorCount = 0;
    int m_lateCount = 0;
    int m_correctCount = 0;
    int m_missedCount = 0;
};
