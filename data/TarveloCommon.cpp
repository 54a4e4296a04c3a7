#include "TarveloCommon.h"

namespace {

// Sources for the translation files. Views show a stimulus by its key translated in
// "Stimulus", and a control by its key translated in "Generic".
[[maybe_unused]] const char *const translationSources[] = {
    //: Зелёный 1 / Green 1
    QT_TRANSLATE_NOOP("Stimulus", "LED_TOP_Green"),
    //: Белый 1 / White 1
    QT_TRANSLATE_NOOP("Stimulus", "LED_TOP_White"),
    //: Синий 1 / Blue 1
    QT_TRANSLATE_NOOP("Stimulus", "LED_TOP_Blue"),
    //: Красный 1 / Red1
    QT_TRANSLATE_NOOP("Stimulus", "LED_TOP_Red"),
    //: Жёлтый 1 / Yellow 1
    QT_TRANSLATE_NOOP("Stimulus", "LED_TOP_Yellow"),
    //: Синий 2 / Blue 2
    QT_TRANSLATE_NOOP("Stimulus", "LED_MID_Blue"),
    //: Красный 2 / Red 2
    QT_TRANSLATE_NOOP("Stimulus", "LED_MID_Red"),
    //: Жёлтый 2 / Yellow 2
    QT_TRANSLATE_NOOP("Stimulus", "LED_MID_Yellow"),
    //: Белый 2 / White 2
    QT_TRANSLATE_NOOP("Stimulus", "LED_MID_White"),
    //: Зелёный 2 / Green 2
    QT_TRANSLATE_NOOP("Stimulus", "LED_MID_Green"),
    //: Левый белый (педаль) / Left white(pedal)
    QT_TRANSLATE_NOOP("Stimulus", "LED_BOT_WhiteLeft"),
    //: Правый белый (педаль) / Right white (pedal)
    QT_TRANSLATE_NOOP("Stimulus", "LED_BOT_WhiteRight"),
    //: Низкий звук слева / Low tone left
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Left_Lo"),
    //: Высокий звук слева / High tone left
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Left_Hi"),
    //: Низкий звук справа / Low tone right
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Right_Lo"),
    //: Высокий звук справа / High tone right
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Right_Hi"),
    //: Низкий звук стерео / Low tone stereo
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Both_Lo"),
    //: Высокий звук стерео / High tone stereo
    QT_TRANSLATE_NOOP("Stimulus", "AUDIO_Both_Hi"),
    //: зел. / green
    QT_TRANSLATE_NOOP("Generic", "BTN_Green"),
    //: жёлт. / yellow
    QT_TRANSLATE_NOOP("Generic", "BTN_Yellow"),
    //: бел. / white
    QT_TRANSLATE_NOOP("Generic", "BTN_White"),
    //: кр. / red
    QT_TRANSLATE_NOOP("Generic", "BTN_Red"),
    //: син. / blue
    QT_TRANSLATE_NOOP("Generic", "BTN_Blue"),
    //: н.звук / l.tone
    QT_TRANSLATE_NOOP("Generic", "BTN_Left"),
    //: в.звук / h.tone
    QT_TRANSLATE_NOOP("Generic", "BTN_Right"),
    //: л.нога / l.foot
    QT_TRANSLATE_NOOP("Generic", "BTN_Pedal_Left"),
    //: п.нога / r.foot
    QT_TRANSLATE_NOOP("Generic", "BTN_Pedal_Right"),
};

} // namespace

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
