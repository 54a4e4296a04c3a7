#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

namespace {
constexpr int WinMs = 8000;

// Stages as script file lines; the upload must send the same content.
void addStages(TarveloScript &script, const QStringList &lines)
{
    for (const QString &line : lines)
        script.addStage(ScriptStage::fromText(line));
}

QList<int> progressOf(const QSignalSpy &spy)
{
    QList<int> values;
    for (const QList<QVariant> &arguments : spy)
        values << arguments.at(0).toInt();
    return values;
}

QList<int> ends(int count)
{
    return QVector<int>(count, -1).toList();
}
} // namespace

class UploadTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { setExtraPorts({}); }
    void sendsTheGoldenSequenceAndStartsASecondLater();
    void scriptWithoutStagesSendsHeaderAndStart();
    void saveSlotGoesLastAndNoStartFollows();
    void progressTicks_data();
    void progressTicks();
    void uploadOverALostLinkStopsAtOnceOnMinusOne();
    void uploadStartedFromAnEventPassIsRefused();
};

void UploadTest::sendsTheGoldenSequenceAndStartsASecondLater()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QTRY_VERIFY(!device.version().isEmpty());

    TarveloScript script;
    script.setTitle(QStringLiteral("Проба; вторая часть"));
    const QString description = QStringLiteral("Длинное описание, которое одно занимает больше "
                                               "ста двадцати восьми байт в кодировке UTF-8.");
    script.setDescription(description);
    script.setMessage(QStringLiteral("Нажимайте кнопку цвета лампы"));
    addStages(script,
              {"stop=5;s-2=4;s-1=3;s-0=2;s+1=1;s+2=0;rpt=3;[s=3,b=3,t=2000,d=1000]"
               "[s=13,b=5,t=1500,d=700]",
               "stop=;s-2=;s-1=;s-0=;s+1=;s+2=0;rpt=1;[s=10,b=7,t=2000,d=1000]"});
    const QStringList golden {
        QStringLiteral("scriptHeader=title=Проба;"),
        QStringLiteral("scriptHeader= вторая часть;"),
        QStringLiteral("scriptHeader=description=") + description + QLatin1Char(';'),
        QStringLiteral("scriptHeader=message=Нажимайте кнопку цвета лампы;"),
        "scriptHeader=fullDuration=0;",
        "scriptHeader=toneLo=100;",
        "scriptHeader=toneHi=1000;",
        "scriptHeader=stages=2;",
        "startAddStage=stop=5;s-2=4;s-1=3;s-0=2;s+1=1;s+2=0;rpt=3;",
        "addItem=s=3;b=3;t=2000;d=1000;",
        "addItem=s=13;b=5;t=1500;d=700;",
        "stopAddStage",
        "startAddStage=stop=;s-2=;s-1=;s-0=;s+1=;s+2=0;rpt=1;",
        "addItem=s=10;b=7;t=2000;d=1000;",
        "stopAddStage",
        "startScript",
    };
    QVERIFY(DeviceProtocol::framePieces(golden.at(2)).size() > 1);

    device.uploadScript(&script);
    QElapsedTimer sinceUpload;
    sinceUpload.start();
    QVERIFY(!emulator.commands().contains(DeviceProtocol::StartScript));
    QTRY_VERIFY_WITH_TIMEOUT(emulator.commands().contains(DeviceProtocol::StartScript), 5000);
    QVERIFY(sinceUpload.elapsed() >= DeviceProtocol::StartScriptDelayMs - 50);

    const QStringList commands = emulator.commands();
    // indexOf with an expression wants the whole entry to match.
    QCOMPARE(commands.mid(commands.indexOf(QRegularExpression("scriptHeader=.*"))), golden);
    // The box took the title up to the ";" and plays what it got.
    QTRY_VERIFY(emulator.reports().contains(QStringLiteral("scriptStarted=Проба")));
}

void UploadTest::scriptWithoutStagesSendsHeaderAndStart()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);

    TarveloScript script;
    script.setTitle(QStringLiteral("empty"));
    device.uploadScript(&script);
    QTRY_VERIFY_WITH_TIMEOUT(emulator.commands().contains(DeviceProtocol::StartScript), 5000);
    const QStringList commands = emulator.commands();
    QCOMPARE(commands.mid(commands.indexOf("scriptHeader=title=empty;")),
             (QStringList {"scriptHeader=title=empty;", "scriptHeader=description=;",
                           "scriptHeader=message=;", "scriptHeader=fullDuration=0;",
                           "scriptHeader=toneLo=100;", "scriptHeader=toneHi=1000;",
                           "scriptHeader=stages=0;", "startScript"}));
    QTRY_COMPARE(emulator.reports().mid(emulator.reports().indexOf("scriptStarted=empty")),
                 (QStringList {"scriptStarted=empty", "scriptFinished"}));
}

void UploadTest::saveSlotGoesLastAndNoStartFollows()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);

    TarveloScript script;
    addStages(script, {"rpt=1;[s=1,b=2,t=100,d=100]"});
    device.uploadScript(&script, 4, false);
    QTRY_VERIFY(emulator.commands().contains("saveScript=4"));
    const QStringList commands = emulator.commands();
    QCOMPARE(commands.mid(commands.size() - 4),
             (QStringList {"startAddStage=stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=1;",
                           "addItem=s=1;b=2;t=100;d=100;", "stopAddStage", "saveScript=4"}));
}

void UploadTest::progressTicks_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("stages");
    QTest::addColumn<int>("saveSlot");
    QTest::addColumn<bool>("start");
    QTest::addColumn<QList<int>>("progress");

    // Total 2 * 1 + 1 + 2 = 5; the counter starts at 1 and each tick first adds 1.
    QTest::newRow("one stage, two steps")
        << "a" << QStringList {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1]"} << -1 << true
        << QList<int> {40, 60, 80} + ends(9);
    // Total 2 * 2 + 1 + 6 = 11.
    QTest::newRow("two stages, three steps each")
        << "a"
        << QStringList {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1][s=3,b=2,t=1,d=1]",
                        "rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1][s=3,b=2,t=1,d=1]"}
        << -1 << true << QList<int> {18, 27, 36, 45, 54, 63, 72, 81, 90} + ends(9);
    // Total 1: every tick is already at the end.
    QTest::newRow("no stages") << "a" << QStringList {} << -1 << true << ends(8);
    // A ";" in the title makes an eighth header entry and one tick more.
    QTest::newRow("title with a semicolon")
        << "a;b" << QStringList {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1]"} << -1 << true
        << QList<int> {40, 60, 80} + ends(10);
    QTest::newRow("save slot, no start")
        << "a" << QStringList {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1]"} << 0 << false
        << QList<int> {40, 60, 80} + ends(9);
}

void UploadTest::progressTicks()
{
    QFETCH(QString, title);
    QFETCH(QStringList, stages);
    QFETCH(int, saveSlot);
    QFETCH(bool, start);
    QFETCH(QList<int>, progress);

    TarveloScript script;
    script.setTitle(title);
    addStages(script, stages);
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QSignalSpy spy(&device, &TarveloDevice::loadProgress);
    device.uploadScript(&script, saveSlot, start);
    QCOMPARE(progressOf(spy), progress);
}

void UploadTest::uploadOverALostLinkStopsAtOnceOnMinusOne()
{
    EmulatorProcess emulator;
    // "iamtarvelo", "sn=", "version=", then the cable goes.
    QVERIFY(emulator.start({"--drop-after", "3"}));
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QSignalSpy disconnected(&device, &TarveloDevice::onDisconnected);
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.count(), 1, WinMs);

    TarveloScript script;
    addStages(script, {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1]"});
    QSignalSpy spy(&device, &TarveloDevice::loadProgress);
    QSignalSpy failed(&device, &TarveloDevice::uploadFailed);
    device.uploadScript(&script);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.constLast().at(0).toInt(), -1);
    QCOMPARE(failed.count(), 1);
    QVERIFY(!device.isConnected());
}

void UploadTest::uploadStartedFromAnEventPassIsRefused()
{
    TarveloScript script;
    addStages(script, {"rpt=1;[s=1,b=2,t=1,d=1][s=2,b=2,t=1,d=1]"});
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QSignalSpy spy(&device, &TarveloDevice::loadProgress);
    // The interface runs during the upload's event passes and could ask for another one.
    QTimer::singleShot(0, &device, [&] { device.uploadScript(&script); });
    device.uploadScript(&script);
    QCOMPARE(progressOf(spy), QList<int>({40, 60, 80}) + ends(9));
}

QTEST_GUILESS_MAIN(UploadTest)
#include "tst_upload.moc"
