#include "TarveloSettings.h"

#include "KeyValueText.h"
#include "TarveloScript.h"

namespace {

// Sources for the translation files. The Settings page labels each property with its name
// translated in "Generic", and translates categories and suffixes there as well; the export
// choices show by their keys in "ExportBehaviorOption". The hidden properties need no label.
[[maybe_unused]] const char *const translationSources[] = {
    //: Авто поиск устройства / Auto search device
    QT_TRANSLATE_NOOP("Generic", "AutoSearch"),
    //: COM-порт / COM port
    QT_TRANSLATE_NOOP("Generic", "ComPort"),
    //: Интервал поиска устройств / Device search interval
    QT_TRANSLATE_NOOP("Generic", "DeviceSearchTimeout"),
    //: Запуск на полный экран / Start maximized
    QT_TRANSLATE_NOOP("Generic", "StartMaximized"),
    //: Низкий тон / Low tone
    QT_TRANSLATE_NOOP("Generic", "DefaultToneLo"),
    //: Высокий тон / High tone
    QT_TRANSLATE_NOOP("Generic", "DefaultToneHi"),
    //: Полное время шагов / Full step time
    QT_TRANSLATE_NOOP("Generic", "DefaultFullTimeDuration"),
    //: Остановить / Stop
    QT_TRANSLATE_NOOP("Generic", "stop"),
    //: -2 этапа / -2 stages
    QT_TRANSLATE_NOOP("Generic", "sm2"),
    //: -1 этап / -1 stage
    QT_TRANSLATE_NOOP("Generic", "sm1"),
    //: Повтор этапа / Repeat stage
    QT_TRANSLATE_NOOP("Generic", "s0"),
    //: +1 этап / +1 stage
    QT_TRANSLATE_NOOP("Generic", "sp1"),
    //: +2 этапа / +2 stages
    QT_TRANSLATE_NOOP("Generic", "sp2"),
    //: Макс. повторов / Max repeats
    QT_TRANSLATE_NOOP("Generic", "maxRepeats"),
    //: При экспорте / On export
    QT_TRANSLATE_NOOP("Generic", "ExportBehavior"),
    //: Общее / Common
    QT_TRANSLATE_NOOP("Generic", "Common"),
    //: Значения по умолчанию / Default settings
    QT_TRANSLATE_NOOP("Generic", "Defaults"),
    //: ош. / err.
    QT_TRANSLATE_NOOP("Generic", "err."),
    //: " Гц" / " Hz"
    QT_TRANSLATE_NOOP("Generic", " Hz"),
    //: " с" / " s"
    QT_TRANSLATE_NOOP("Generic", " s"),
    //: с / s
    QT_TRANSLATE_NOOP("Generic", "s"),
    //: COM / COM
    QT_TRANSLATE_NOOP("Generic", "COM"),
    //: Открыть файл / Open file
    QT_TRANSLATE_NOOP("ExportBehaviorOption", "OnExport_OpenFile"),
    //: Открыть папку / Open folder
    QT_TRANSLATE_NOOP("ExportBehaviorOption", "OnExport_OpenFolder"),
    //: Ничего не делать / Do nothing
    QT_TRANSLATE_NOOP("ExportBehaviorOption", "OnExport_DoNothing"),
};

} // namespace

TarveloSettings::TarveloSettings(QObject *parent)
    : NTSettings(fileName(), true, parent, XML)
{
    qRegisterMetaType<ExportBehaviorOption>(); // so that the file shows the choice by its key
    applyDeclaredDefaults();
}

QString TarveloSettings::fileName()
{
    return QStringLiteral("Settings.xml");
}

void TarveloSettings::applyScriptDefaults(TarveloScript &script) const
{
    script.setToneLo(quint16(getDefaultToneLo()));
    script.setToneHi(quint16(getDefaultToneHi()));
    script.setFullDuration(getDefaultFullTimeDuration());
}

void TarveloSettings::applyStageDefaults(ScriptStage &stage) const
{
    stage.stop = validThreshold(getstop());
    stage.sm2 = validThreshold(getsm2());
    stage.sm1 = validThreshold(getsm1());
    stage.s0 = validThreshold(gets0());
    stage.sp1 = validThreshold(getsp1());
    stage.sp2 = validThreshold(getsp2());
    stage.maxRepeats = getmaxRepeats();
}
