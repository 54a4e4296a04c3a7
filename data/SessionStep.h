#pragma once

#include "TarveloCommon.h"

class QJsonObject;

// One step of a played stage as the box reported it. Named by the keys of the session file.
struct SessionStep
{
    // How a reaction is judged; the first rule that holds decides (see outcome()).
    enum Outcome { Correct, Late, Error, Missed };

    int s = 0;                        // TarveloCommon::Stimulus
    int b = TarveloCommon::BTN_None;  // control used; 10 when the report named none
    int b2 = TarveloCommon::BTN_None; // control the stimulus requires
    bool v = false;                   // false when the box reported a negative time
    int r = 0;                        // reaction time, ms
    int t = 0;                        // time allowed, ms
    int d = 0;                        // delay, ms

    // Missed before late before error: a wrong control used too late is late, and a step
    // without a valid time is missed whatever control it names. Equal to t is in time.
    Outcome outcome() const;

    // "b2" is written as the stimulus' required button, never as the stored field.
    QJsonObject toJson() const;
    // Every key takes its default when absent; a non-object reads as an empty one.
    static SessionStep *fromJson(const QJsonObject &object);
    // A reaction report "r=..;b=..;b2=..;s=..;t=..;d=..". The required button is derived from
    // the stimulus, never taken from the report.
    static SessionStep *fromReport(const QString &message);
};
