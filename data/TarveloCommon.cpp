#include "TarveloCommon.h"

TarveloCommon::Button requiredButton(int stimulus)
{
    using C = TarveloCommon;
    // The two tones from one side go to that side's button whatever their pitch; the stereo
    // tones go by pitch. Lamps of one colour share a button across rows.
    static constexpr C::Button table[C::StimulusCount] = {
        C::BTN_Green,      C::BTN_White,       C::BTN_Blue,   C::BTN_Red,   C::BTN_Yellow,
        C::BTN_Blue,       C::BTN_Red,         C::BTN_Yellow, C::BTN_White, C::BTN_Green,
        C::BTN_Pedal_Left, C::BTN_Pedal_Right, C::BTN_Left,   C::BTN_Left,  C::BTN_Right,
        C::BTN_Right,      C::BTN_Left,        C::BTN_Right,
    };
    if (unsigned(stimulus) >= unsigned(C::StimulusCount))
        return C::BTN_None;
    return table[stimulus];
}
