#pragma once

#include "TarveloCommon.h"

#include <QString>

// One reaction as the box reports it: "r=<ms>;b=<button>;b2=<required>;s=<stimulus>;t=<ms>;d=<ms>".
// The whole report is this list, so it begins with the "r=" by which it is told from the box's
// other reports. The box emulator writes it and the session record reads it, both through here.
struct ReportedReaction
{
    static inline const QString KeyReaction = QStringLiteral("r");
    static inline const QString KeyButton = QStringLiteral("b");
    static inline const QString KeyRequired = QStringLiteral("b2");
    static inline const QString KeyStimulus = QStringLiteral("s");
    static inline const QString KeyAllowed = QStringLiteral("t");
    static inline const QString KeyDelay = QStringLiteral("d");

    // The defaults are what a report that lacks the key gives.
    int reaction = 0;                               // ms; negative when the subject missed
    int button = TarveloCommon::NoReportedButton;   // control used
    int required = TarveloCommon::NoReportedButton; // control the stimulus requires
    int stimulus = TarveloCommon::LED_TOP_White;    // TarveloCommon::Stimulus
    int allowed = 0;                                // time allowed, ms
    int delay = 0;                                  // delay, ms

    QString toText() const;
    // Numbers that don't parse are 0; nothing is range-checked here.
    static ReportedReaction fromText(const QString &text);
};
