#include "data/TarveloSettings.h"
#include "foundation/AbstractMetaDescriptor.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString goldenPath()
{
    return QStringLiteral(TARVELO_TEST_DATA "/Settings.xml");
}

} // namespace

class TarveloSettingsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void settingsFileIsWrittenExactly();
    void settingsFileReadsBack();
    void missingFileGivesTheDefaultsAndNoFile();
    void declaration_data();
    void declaration();
    void hiddenPropertiesAndTheComPortBinding();
    void intLimitsMatchTheDeclaration();
    void resetsReturnToTheDeclaredDefaults();

private:
    QTemporaryDir m_dir;
};

void TarveloSettingsTest::init()
{
    QVERIFY(m_dir.isValid());
    // The file name is relative: it lands in the working folder, as the model arranges.
    QVERIFY(QDir::setCurrent(m_dir.path()));
    QFile::remove(TarveloSettings::fileName());
}

void TarveloSettingsTest::settingsFileIsWrittenExactly()
{
    TarveloSettings settings;
    QCOMPARE(settings.getFilepath(), QStringLiteral("Settings.xml"));
    settings.setLastUserGuid(QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    settings.setLastScriptTitle(QStringLiteral("Проба"));
    QCOMPARE(TestFiles::read(m_dir.filePath(QStringLiteral("Settings.xml"))),
             TestFiles::read(goldenPath()));
}

void TarveloSettingsTest::settingsFileReadsBack()
{
    QFile::copy(goldenPath(), TarveloSettings::fileName());
    TarveloSettings settings;
    QVERIFY(settings.reload());
    QCOMPARE(settings.getLastScriptTitle(), QStringLiteral("Проба"));
    QCOMPARE(settings.getLastUserGuid(), QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"));
    QCOMPARE(settings.saveToString().toUtf8(), TestFiles::read(goldenPath()));
}

void TarveloSettingsTest::missingFileGivesTheDefaultsAndNoFile()
{
    TarveloSettings settings;
    QSignalSpy reloaded(&settings, &NTSettings::reloaded);
    QVERIFY(settings.reload());
    QCOMPARE(reloaded.count(), 1);
    QVERIFY(settings.getLastScriptTitle().isEmpty());
    QVERIFY(settings.getLastUserGuid().isEmpty());
    QCOMPARE(settings.getAutoSearch(), true);
    QCOMPARE(settings.getComPort(), 1);
    QCOMPARE(settings.getDeviceSearchTimeout(), 5);
    QCOMPARE(settings.getStartMaximized(), true);
    QCOMPARE(settings.getDefaultToneLo(), 100);
    QCOMPARE(settings.getDefaultToneHi(), 1000);
    QCOMPARE(settings.getDefaultFullTimeDuration(), false);
    QCOMPARE(settings.getstop(), QStringLiteral("5"));
    QCOMPARE(settings.getsm2(), QStringLiteral("4"));
    QCOMPARE(settings.getsm1(), QStringLiteral("3"));
    QCOMPARE(settings.gets0(), QStringLiteral("2"));
    QCOMPARE(settings.getsp1(), QStringLiteral("1"));
    QCOMPARE(settings.getsp2(), QStringLiteral("0"));
    QCOMPARE(settings.getmaxRepeats(), 3);
    QVERIFY(settings.getLastExportFolder().isEmpty());
    QVERIFY(settings.getLastExportFilter().isEmpty());
    QCOMPARE(settings.getExportBehavior(), TarveloSettings::OnExport_OpenFile);
    // The file comes into being with the first change, not before.
    QVERIFY(!QFile::exists(TarveloSettings::fileName()));
}

void TarveloSettingsTest::declaration_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("defaultValue");
    QTest::addColumn<QString>("limits"); // minimum/maximum/step, empty for none
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("category");
    QTest::addColumn<bool>("visible");
    const auto row = [](const char *name, const char *type, const char *defaultValue,
                        const char *limits, const char *suffix, const char *prefix,
                        const char *category, bool visible) {
        QTest::newRow(name) << name << type << defaultValue << limits << suffix << prefix
                            << category << visible;
    };
    row("LastScriptTitle", "QString", "", "", "", "", "", false);
    row("LastUserGuid", "QString", "", "", "", "", "", false);
    row("AutoSearch", "bool", "true", "", "", "", "Common", true);
    row("ComPort", "int", "1", "1/99/1", "", "COM", "Common", true);
    row("DeviceSearchTimeout", "int", "5", "1/300/1", "s", "", "Common", true);
    row("StartMaximized", "bool", "true", "", "", "", "Common", true);
    row("DefaultToneLo", "int", "100", "10/2000/10", " Hz", "", "Defaults", true);
    row("DefaultToneHi", "int", "1000", "10/2000/10", " Hz", "", "Defaults", true);
    row("DefaultFullTimeDuration", "bool", "false", "", "", "", "Defaults", true);
    row("stop", "QString", "5", "", "err.", "", "Defaults", true);
    row("sm2", "QString", "4", "", "err.", "", "Defaults", true);
    row("sm1", "QString", "3", "", "err.", "", "Defaults", true);
    row("s0", "QString", "2", "", "err.", "", "Defaults", true);
    row("sp1", "QString", "1", "", "err.", "", "Defaults", true);
    row("sp2", "QString", "0", "", "err.", "", "Defaults", true);
    row("maxRepeats", "int", "3", "1/10/1", "", "", "Defaults", true);
    row("LastExportFolder", "QString", "", "", "", "", "", false);
    row("LastExportFilter", "QString", "", "", "", "", "", false);
    row("ExportBehavior", "Enum", "OnExport_OpenFile", "", "", "", "Common", true);
}

void TarveloSettingsTest::declaration()
{
    QFETCH(QString, name);
    QFETCH(QString, type);
    QFETCH(QString, defaultValue);
    QFETCH(QString, limits);
    QFETCH(QString, suffix);
    QFETCH(QString, prefix);
    QFETCH(QString, category);
    QFETCH(bool, visible);
    TarveloSettings settings;
    const AbstractMetaDescription *description = settings.metaDescriptor()->propertyByName(name);
    QVERIFY(description);
    QVERIFY(description->editable());
    QCOMPARE(description->type(), type);
    QVERIFY(description->hasDefault());
    QCOMPARE(description->defaultValue(), defaultValue);
    QCOMPARE(settings.getTextValue(name), defaultValue);
    QCOMPARE(description->suffix(), suffix);
    QCOMPARE(description->prefix(), prefix);
    QCOMPARE(description->category(), category);
    QCOMPARE(description->visible(), visible);
    QCOMPARE(description->displayName(), name);
    QVERIFY(description->showDefault());
    QVERIFY(!description->readOnly());

    const bool limited = !limits.isEmpty();
    QCOMPARE(description->hasMinimum(), limited);
    QCOMPARE(description->hasMaximum(), limited);
    QCOMPARE(description->hasStep(), limited);
    if (limited) {
        const QStringList parts = limits.split(QLatin1Char('/'));
        QCOMPARE(description->minimum(), parts[0].toDouble());
        QCOMPARE(description->maximum(), parts[1].toDouble());
        QCOMPARE(description->step(), parts[2].toDouble());
    }
}

void TarveloSettingsTest::hiddenPropertiesAndTheComPortBinding()
{
    TarveloSettings settings;
    QStringList bound;
    const QList<AbstractMetaDescription *> descriptions =
        settings.metaDescriptor()->getProperties();
    for (const AbstractMetaDescription *description : descriptions) {
        if (!description->visibleBound().isEmpty())
            bound << description->name();
    }
    QCOMPARE(bound, QStringList {"ComPort"});
    QCOMPARE(settings.getPropertyByName(QStringLiteral("ComPort"))->visibleBound(),
             (QMap<QString, QString> {{"AutoSearch", "false"}}));
    QCOMPARE(settings.metaDescriptor()->categories(), (QStringList {"Common", "Defaults"}));
}

void TarveloSettingsTest::intLimitsMatchTheDeclaration()
{
    TarveloSettings settings;
    const QList<QPair<QString, NTIntLimits>> limits = {
        {"ComPort", settings.getComPortLimits()},
        {"DeviceSearchTimeout", settings.getDeviceSearchTimeoutLimits()},
        {"DefaultToneLo", settings.getDefaultToneLoLimits()},
        {"DefaultToneHi", settings.getDefaultToneHiLimits()},
        {"maxRepeats", settings.getmaxRepeatsLimits()},
    };
    for (const auto &[name, limit] : limits) {
        const AbstractMetaDescription *description = settings.getPropertyByName(name);
        QCOMPARE(double(limit.minimum), description->minimum());
        QCOMPARE(double(limit.maximum), description->maximum());
        QCOMPARE(double(limit.step), description->step());
        QCOMPARE(QString::number(limit.defaultValue), description->defaultValue());
        QCOMPARE(limit.bounded(limit.maximum + 1), limit.maximum);
        QCOMPARE(limit.bounded(limit.minimum - 1), limit.minimum);
    }
}

void TarveloSettingsTest::resetsReturnToTheDeclaredDefaults()
{
    TarveloSettings settings;
    settings.setAutoSave(false);
    settings.setExportBehavior(TarveloSettings::OnExport_DoNothing);
    settings.setsp2(QString());
    settings.setDefaultToneHi(1500);
    QSignalSpy changed(&settings, &TarveloSettings::changedExportBehavior);
    settings.resetExportBehavior();
    settings.resetsp2();
    settings.resetDefaultToneHi();
    QCOMPARE(settings.getExportBehavior(), TarveloSettings::OnExport_OpenFile);
    QCOMPARE(settings.getsp2(), QStringLiteral("0"));
    QCOMPARE(settings.getDefaultToneHi(), 1000);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).value<TarveloSettings::ExportBehaviorOption>(),
             TarveloSettings::OnExport_OpenFile);
}

QTEST_GUILESS_MAIN(TarveloSettingsTest)
#include "tst_tarvelosettings.moc"
