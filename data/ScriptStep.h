#pragma once

#include <QString>

// One stimulus of a stage with its times. The required button is never stored: every text
// form derives it from the stimulus.
struct ScriptStep
{
    int delay = 1000;    // ms after the stimulus
    int duration = 2000; // ms the stimulus lasts; a later reaction counts as late
    int stimulus = 1;    // TarveloCommon::Stimulus

    // "s=..;b=..;t=..;d=..;" as the upload sends it.
    QString wireText() const;
    // "s=..,b=..,t=..,d=.." as a script file holds it between brackets.
    QString fileText() const;
};
