#pragma once

#include "ScriptStep.h"

#include <QList>
#include <QString>

// A stage: its steps and the transfer rules that the box applies by its error count at the
// end of the stage. The six thresholds are decimal text or empty, where empty means that the
// transfer is not applied. The stage owns its steps.
struct ScriptStage
{
    ScriptStage() = default;
    ScriptStage(const ScriptStage &) = delete;
    ScriptStage &operator=(const ScriptStage &) = delete;
    ~ScriptStage();

    QList<ScriptStep *> steps;
    QString stop;       // "stop": stops the script
    QString s0;         // "s-0": repeats the stage
    QString sp1;        // "s+1": goes on one stage
    QString sp2;        // "s+2": goes on two stages
    QString sm1;        // "s-1": goes back one stage
    QString sm2;        // "s-2": goes back two stages
    int maxRepeats = 3; // "rpt"

    // By the keys of StageTransfer; "rpt" as decimal text, any other key gives the empty text.
    QString value(const QString &key) const;
    void setValue(const QString &key, const QString &text);

    // The seven key=value pairs, each closed by ";"; also the body of "startAddStage=".
    QString headerText() const;
    // The whole line of a script file: the pairs, then one bracketed group per step.
    QString toText() const;
    static ScriptStage *fromText(const QString &line);

    // A random stage of count steps. Times are drawn in whole hundreds of ms from
    // [base, base + jitter); two equal stimuli never follow each other.
    static ScriptStage *generate(int count, const QList<int> &stimuli, int duration, int delay,
                                 int durationJitter, int delayJitter);
};
