#pragma once

#include "foundation/NTSettings.h"

struct ScriptStage;
class TarveloScript;

// The program's one settings object, stored in Settings.xml in the data folder (the model makes
// that the working folder, so the bare file name lands there). Defaults, limits, the order of
// the file and the Settings page all follow from the declaration below. The six transfer
// thresholds are text, so that a transfer that is not applied stays empty; they are defaults
// for new stages only.
class TarveloSettings : public NTSettings
{
    Q_OBJECT
    Q_PROPERTY(QString LastScriptTitle READ getLastScriptTitle WRITE setLastScriptTitle RESET
                   resetLastScriptTitle NOTIFY changedLastScriptTitle)
    Q_CLASSINFO("LastScriptTitleEditable", "true")
    Q_CLASSINFO("LastScriptTitleDefault", "\"\"")
    Q_CLASSINFO("LastScriptTitleNotVisible", "true")

    Q_PROPERTY(QString LastUserGuid READ getLastUserGuid WRITE setLastUserGuid RESET
                   resetLastUserGuid NOTIFY changedLastUserGuid)
    Q_CLASSINFO("LastUserGuidEditable", "true")
    Q_CLASSINFO("LastUserGuidDefault", "\"\"")
    Q_CLASSINFO("LastUserGuidNotVisible", "true")

    Q_PROPERTY(bool AutoSearch READ getAutoSearch WRITE setAutoSearch RESET resetAutoSearch NOTIFY
                   changedAutoSearch)
    Q_CLASSINFO("AutoSearchEditable", "true")
    Q_CLASSINFO("AutoSearchDefault", "true")
    Q_CLASSINFO("AutoSearchCategory", "Common")

    Q_PROPERTY(
        int ComPort READ getComPort WRITE setComPort RESET resetComPort NOTIFY changedComPort)
    Q_CLASSINFO("ComPortEditable", "true")
    Q_CLASSINFO("ComPortDefault", "1")
    Q_CLASSINFO("ComPortMinimum", "1")
    Q_CLASSINFO("ComPortMaximum", "99")
    Q_CLASSINFO("ComPortStep", "1")
    Q_CLASSINFO("ComPortPrefix", "COM")
    Q_CLASSINFO("ComPortCategory", "Common")
    Q_CLASSINFO("ComPortVisibleBinded", "AutoSearch:false")

    Q_PROPERTY(int DeviceSearchTimeout READ getDeviceSearchTimeout WRITE setDeviceSearchTimeout
                   RESET resetDeviceSearchTimeout NOTIFY changedDeviceSearchTimeout)
    Q_CLASSINFO("DeviceSearchTimeoutEditable", "true")
    Q_CLASSINFO("DeviceSearchTimeoutDefault", "5")
    Q_CLASSINFO("DeviceSearchTimeoutMinimum", "1")
    Q_CLASSINFO("DeviceSearchTimeoutMaximum", "300")
    Q_CLASSINFO("DeviceSearchTimeoutStep", "1")
    Q_CLASSINFO("DeviceSearchTimeoutSuffix", "s")
    Q_CLASSINFO("DeviceSearchTimeoutCategory", "Common")

    Q_PROPERTY(bool StartMaximized READ getStartMaximized WRITE setStartMaximized RESET
                   resetStartMaximized NOTIFY changedStartMaximized)
    Q_CLASSINFO("StartMaximizedEditable", "true")
    Q_CLASSINFO("StartMaximizedDefault", "true")
    Q_CLASSINFO("StartMaximizedCategory", "Common")

    Q_PROPERTY(int DefaultToneLo READ getDefaultToneLo WRITE setDefaultToneLo RESET
                   resetDefaultToneLo NOTIFY changedDefaultToneLo)
    Q_CLASSINFO("DefaultToneLoEditable", "true")
    Q_CLASSINFO("DefaultToneLoDefault", "100")
    Q_CLASSINFO("DefaultToneLoMinimum", "10")
    Q_CLASSINFO("DefaultToneLoMaximum", "2000")
    Q_CLASSINFO("DefaultToneLoStep", "10")
    Q_CLASSINFO("DefaultToneLoSuffix", " Hz")
    Q_CLASSINFO("DefaultToneLoCategory", "Defaults")

    Q_PROPERTY(int DefaultToneHi READ getDefaultToneHi WRITE setDefaultToneHi RESET
                   resetDefaultToneHi NOTIFY changedDefaultToneHi)
    Q_CLASSINFO("DefaultToneHiEditable", "true")
    Q_CLASSINFO("DefaultToneHiDefault", "1000")
    Q_CLASSINFO("DefaultToneHiMinimum", "10")
    Q_CLASSINFO("DefaultToneHiMaximum", "2000")
    Q_CLASSINFO("DefaultToneHiStep", "10")
    Q_CLASSINFO("DefaultToneHiSuffix", " Hz")
    Q_CLASSINFO("DefaultToneHiCategory", "Defaults")

    Q_PROPERTY(bool DefaultFullTimeDuration READ getDefaultFullTimeDuration WRITE
                   setDefaultFullTimeDuration RESET resetDefaultFullTimeDuration NOTIFY
                       changedDefaultFullTimeDuration)
    Q_CLASSINFO("DefaultFullTimeDurationEditable", "true")
    Q_CLASSINFO("DefaultFullTimeDurationDefault", "false")
    Q_CLASSINFO("DefaultFullTimeDurationCategory", "Defaults")

    Q_PROPERTY(QString stop READ getstop WRITE setstop RESET resetstop NOTIFY changedstop)
    Q_CLASSINFO("stopEditable", "true")
    Q_CLASSINFO("stopDefault", "\"5\"")
    Q_CLASSINFO("stopSuffix", "err.")
    Q_CLASSINFO("stopCategory", "Defaults")

    Q_PROPERTY(QString sm2 READ getsm2 WRITE setsm2 RESET resetsm2 NOTIFY changedsm2)
    Q_CLASSINFO("sm2Editable", "true")
    Q_CLASSINFO("sm2Default", "\"4\"")
    Q_CLASSINFO("sm2Suffix", "err.")
    Q_CLASSINFO("sm2Category", "Defaults")

    Q_PROPERTY(QString sm1 READ getsm1 WRITE setsm1 RESET resetsm1 NOTIFY changedsm1)
    Q_CLASSINFO("sm1Editable", "true")
    Q_CLASSINFO("sm1Default", "\"3\"")
    Q_CLASSINFO("sm1Suffix", "err.")
    Q_CLASSINFO("sm1Category", "Defaults")

    Q_PROPERTY(QString s0 READ gets0 WRITE sets0 RESET resets0 NOTIFY changeds0)
    Q_CLASSINFO("s0Editable", "true")
    Q_CLASSINFO("s0Default", "\"2\"")
    Q_CLASSINFO("s0Suffix", "err.")
    Q_CLASSINFO("s0Category", "Defaults")

    Q_PROPERTY(QString sp1 READ getsp1 WRITE setsp1 RESET resetsp1 NOTIFY changedsp1)
    Q_CLASSINFO("sp1Editable", "true")
    Q_CLASSINFO("sp1Default", "\"1\"")
    Q_CLASSINFO("sp1Suffix", "err.")
    Q_CLASSINFO("sp1Category", "Defaults")

    Q_PROPERTY(QString sp2 READ getsp2 WRITE setsp2 RESET resetsp2 NOTIFY changedsp2)
    Q_CLASSINFO("sp2Editable", "true")
    Q_CLASSINFO("sp2Default", "\"0\"")
    Q_CLASSINFO("sp2Suffix", "err.")
    Q_CLASSINFO("sp2Category", "Defaults")

    Q_PROPERTY(int maxRepeats READ getmaxRepeats WRITE setmaxRepeats RESET resetmaxRepeats NOTIFY
                   changedmaxRepeats)
    Q_CLASSINFO("maxRepeatsEditable", "true")
    Q_CLASSINFO("maxRepeatsDefault", "3")
    Q_CLASSINFO("maxRepeatsMinimum", "1")
    Q_CLASSINFO("maxRepeatsMaximum", "10")
    Q_CLASSINFO("maxRepeatsStep", "1")
    Q_CLASSINFO("maxRepeatsCategory", "Defaults")

    Q_PROPERTY(QString LastExportFolder READ getLastExportFolder WRITE setLastExportFolder RESET
                   resetLastExportFolder NOTIFY changedLastExportFolder)
    Q_CLASSINFO("LastExportFolderEditable", "true")
    Q_CLASSINFO("LastExportFolderDefault", "\"\"")
    Q_CLASSINFO("LastExportFolderNotVisible", "true")

    Q_PROPERTY(QString LastExportFilter READ getLastExportFilter WRITE setLastExportFilter RESET
                   resetLastExportFilter NOTIFY changedLastExportFilter)
    Q_CLASSINFO("LastExportFilterEditable", "true")
    Q_CLASSINFO("LastExportFilterDefault", "\"\"")
    Q_CLASSINFO("LastExportFilterNotVisible", "true")

    Q_PROPERTY(ExportBehaviorOption ExportBehavior READ getExportBehavior WRITE setExportBehavior
                   RESET resetExportBehavior NOTIFY changedExportBehavior)
    Q_CLASSINFO("ExportBehaviorEditable", "true")
    Q_CLASSINFO("ExportBehaviorDefault", "ExportBehaviorOption::OnExport_OpenFile")
    Q_CLASSINFO("ExportBehaviorCategory", "Common")
public:
    enum ExportBehaviorOption {
        OnExport_OpenFile = 0,
        OnExport_OpenFolder = 1,
        OnExport_DoNothing = 2
    };
    Q_ENUM(ExportBehaviorOption)

    explicit TarveloSettings(QObject *parent = nullptr);

    static QString fileName();

    // New scripts take their tones and step timing from the defaults here, new stages their
    // thresholds (only "0" to "10"; anything else leaves the transfer off) and repeats.
    void applyScriptDefaults(TarveloScript &script) const;
    void applyStageDefaults(ScriptStage &stage) const;

signals:
    void changedLastScriptTitle(const QString &value);
    void changedLastUserGuid(const QString &value);
    void changedAutoSearch(bool value);
    void changedComPort(int value);
    void changedDeviceSearchTimeout(int value);
    void changedStartMaximized(bool value);
    void changedDefaultToneLo(int value);
    void changedDefaultToneHi(int value);
    void changedDefaultFullTimeDuration(bool value);
    void changedstop(const QString &value);
    void changedsm2(const QString &value);
    void changedsm1(const QString &value);
    void changeds0(const QString &value);
    void changedsp1(const QString &value);
    void changedsp2(const QString &value);
    void changedmaxRepeats(int value);
    void changedLastExportFolder(const QString &value);
    void changedLastExportFilter(const QString &value);
    void changedExportBehavior(TarveloSettings::ExportBehaviorOption value);

public:
    // getX, setX and resetX of the properties declared above.
    NT_SETTING(QString, LastScriptTitle)
    NT_SETTING(QString, LastUserGuid)
    NT_SETTING(bool, AutoSearch)
    NT_INT_SETTING(ComPort)
    NT_INT_SETTING(DeviceSearchTimeout)
    NT_SETTING(bool, StartMaximized)
    NT_INT_SETTING(DefaultToneLo)
    NT_INT_SETTING(DefaultToneHi)
    NT_SETTING(bool, DefaultFullTimeDuration)
    NT_SETTING(QString, stop)
    NT_SETTING(QString, sm2)
    NT_SETTING(QString, sm1)
    NT_SETTING(QString, s0)
    NT_SETTING(QString, sp1)
    NT_SETTING(QString, sp2)
    NT_INT_SETTING(maxRepeats)
    NT_SETTING(QString, LastExportFolder)
    NT_SETTING(QString, LastExportFilter)
    NT_SETTING(ExportBehaviorOption, ExportBehavior)
};
