#pragma once

#include <QString>
#include <QVector>

struct ScriptStage;

// The box's own decision at the end of a stage, from the stage's error count (wrong, late and
// missed reactions) and its transfer thresholds. See tools/devsim/README.md for the rule.
class TransferRule
{
public:
    static constexpr int ScriptEnds = -1;

    struct Decision
    {
        QString action;        // the word of "stageAction="
        int next = ScriptEnds; // index of the stage to play next, or ScriptEnds
    };

    // The transfer key that applies ("stop", "s-2", ... "s+2"), or empty when none does: the
    // applied transfer with the greatest threshold not above the error count; on equal
    // thresholds the earlier key in wire order wins, so "stop" wins every tie.
    static QString applicableTransfer(const ScriptStage &stage, int errors);

    // plays[i] is how often stage i has been started so far in this run, the current one
    // included. A stage may be started at most 1 + its "rpt" times; a repeat or a step back
    // that would start one more often becomes "maxRepeats" and goes on with the next stage.
    static Decision decide(const QVector<const ScriptStage *> &stages, int index, int errors,
                           const QVector<int> &plays);
};
