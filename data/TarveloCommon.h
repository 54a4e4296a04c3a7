#pragma once

#include <QObject>

// The vocabulary the whole program speaks in: what the box presents and what the subject
// answers with. Keys double as translation sources ("Stimulus" and "Generic" contexts).
class TarveloCommon
{
    Q_GADGET
public:
    enum Stimulus {
        LED_TOP_Green = 0,
        LED_TOP_White,
        LED_TOP_Blue,
        LED_TOP_Red,
        LED_TOP_Yellow,
        LED_MID_Blue,
        LED_MID_Red,
        LED_MID_Yellow,
        LED_MID_White,
        LED_MID_Green,
        LED_BOT_WhiteLeft,
        LED_BOT_WhiteRight,
        AUDIO_Left_Lo,
        AUDIO_Left_Hi,
        AUDIO_Right_Lo,
        AUDIO_Right_Hi,
        AUDIO_Both_Lo,
        AUDIO_Both_Hi,
    };
    Q_ENUM(Stimulus)

    enum Button {
        BTN_Green = 0,
        BTN_Yellow,
        BTN_White,
        BTN_Red,
        BTN_Blue,
        BTN_Left,
        BTN_Right,
        BTN_Pedal_Left,
        BTN_Pedal_Right,
        BTN_None,
    };
    Q_ENUM(Button)

    static constexpr int StimulusCount = AUDIO_Both_Hi + 1;
    // The button value of a reaction report that names no control; not part of Button.
    static constexpr int NoReportedButton = 10;
};

// The control that the right reaction to a stimulus needs. The only source of that mapping:
// scripts, uploads and session files all derive the button from the stimulus through it.
TarveloCommon::Button requiredButton(int stimulus);
