#include "device/DeviceProtocol.h"
#include "device/PortCatalog.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"

#include <QFileInfo>
#include <QProcess>
#include <QSerialPort>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// The greeting goes out a second after a port opened; a win takes a little more than that.
constexpr int WinMs = 8000;
// A search interval that leaves the greeting time to be answered.
constexpr int ShortIntervalS = 2;
} // namespace

class DeviceSearchTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { setExtraPorts({}); }
    void winsAgainstTheEmulatorAndAsksWhoItIs();
    void otherAnswersDontWin_data();
    void otherAnswersDontWin();
    void answerAmongOtherFramesWinsAndTheRestIsLost();
    void portFilterTriesOnlyThatNumber();
    void lostLinkThenANewWinAsksAgain();
    void killedEmulatorWhileLinkedMeansLostAndSearchGoesOn();
    void garbageFromACandidateDoesNotStopTheSearch();
    void garbageOnTheLiveLinkIsDropped();
    void searchOffReleasesThePortAndOnFindsItAgain();
    void watchAsksUntilSerialAndVersionAreKnown();
    void vanishedCandidateIsSkipped();
    void searchOnWhileSearchingStartsAPassAtOnce();
    void symlinkedPortIsFoundAndRemovedOnTerm();
};

void DeviceSearchTest::winsAgainstTheEmulatorAndAsksWhoItIs()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--serial", "250101", "--firmware-version", "3.1"}));
    setExtraPorts({emulator.path()});

    TarveloDevice device(-1);
    QSignalSpy connected(&device, &TarveloDevice::connectedChanged);
    QSignalSpy onConnected(&device, &TarveloDevice::onConnected);
    QSignalSpy portName(&device, &TarveloDevice::gotPortName);
    QTRY_COMPARE_WITH_TIMEOUT(portName.count(), 1, WinMs);
    QVERIFY(device.isConnected());
    QCOMPARE(connected.count(), 1);
    QCOMPARE(connected.at(0).at(0).toBool(), true);
    QCOMPARE(onConnected.count(), 1);
    QVERIFY(emulator.path().endsWith(portName.at(0).at(0).toString()));
    QCOMPARE(device.portName(), portName.at(0).at(0).toString());

    QTRY_COMPARE(device.serialNumber(), QStringLiteral("250101"));
    QTRY_COMPARE(device.version(), QStringLiteral("3.1"));
    QCOMPARE(emulator.commands().mid(0, 3), (QStringList {"tarvelo", "sn", "version"}));
}

void DeviceSearchTest::otherAnswersDontWin_data()
{
    QTest::addColumn<QString>("answer");
    QTest::newRow("longer word") << "iamtarveloX";
    QTest::newRow("other case") << "IamTarvelo";
    QTest::newRow("echo of the greeting") << "tarvelo";
    QTest::newRow("padded") << " iamtarvelo";
    QTest::newRow("silent") << "";
}

void DeviceSearchTest::otherAnswersDontWin()
{
    QFETCH(QString, answer);
    FakeBox box(answer);
    QVERIFY(box.open());
    setExtraPorts({box.path()});

    TarveloDevice device(-1);
    device.setSearchInterval(ShortIntervalS);
    QSignalSpy connected(&device, &TarveloDevice::connectedChanged);
    // A second greeting means a second pass: the first answer didn't win.
    QTRY_COMPARE_WITH_TIMEOUT(box.commands().count(DeviceProtocol::Greeting), 2, WinMs);
    QCOMPARE(connected.count(), 0);
    QVERIFY(!device.isConnected());
    QCOMPARE(box.commands(), (QStringList {"tarvelo", "tarvelo"}));
}

void DeviceSearchTest::answerAmongOtherFramesWinsAndTheRestIsLost()
{
    FakeBox box {QString()};
    QVERIFY(box.open());
    connect(&box, &FakeBox::commandReceived, this, [&box](const QString &command) {
        if (command == DeviceProtocol::Greeting)
            box.sendRaw("boot\r\n{hello}{iamtarvelo}{version=9.9}");
    });
    setExtraPorts({box.path()});

    TarveloDevice device(-1);
    QSignalSpy messages(&device, &TarveloDevice::onMessage);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QTRY_COMPARE(box.commands(), (QStringList {"tarvelo", "sn", "version"}));
    // The frames that came with the answer went with the candidate's splitter.
    QCOMPARE(messages.count(), 0);
    QVERIFY(device.version().isEmpty());
}

void DeviceSearchTest::portFilterTriesOnlyThatNumber()
{
    EmulatorProcess other;
    EmulatorProcess chosen;
    QVERIFY(other.start());
    QVERIFY(chosen.start());
    const int number = PortCatalog::portNumber(chosen.path());
    QVERIFY(PortCatalog::portNumber(other.path()) != number);
    setExtraPorts({other.path(), chosen.path()});

    TarveloDevice device(number);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QVERIFY(chosen.path().endsWith(device.portName()));
    QVERIFY(chosen.commands().contains(DeviceProtocol::Greeting));
    QVERIFY(other.commands().isEmpty());
}

void DeviceSearchTest::lostLinkThenANewWinAsksAgain()
{
    EmulatorProcess first;
    // "iamtarvelo", "sn=", "version=", then the cable goes.
    QVERIFY(first.start({"--drop-after", "3", "--serial", "111111"}));
    setExtraPorts({first.path()});

    TarveloDevice device(-1);
    device.setSearchInterval(ShortIntervalS);
    QSignalSpy connected(&device, &TarveloDevice::connectedChanged);
    QSignalSpy disconnected(&device, &TarveloDevice::onDisconnected);
    QSignalSpy serial(&device, &TarveloDevice::gotSerialNumber);
    QSignalSpy version(&device, &TarveloDevice::gotVersion);
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.count(), 1, WinMs);
    QVERIFY(!device.isConnected());
    QVERIFY(first.waitForExit());

    EmulatorProcess second;
    QVERIFY(second.start({"--serial", "222222"}));
    setExtraPorts({first.path(), second.path()});
    QTRY_COMPARE_WITH_TIMEOUT(connected.count(), 3, WinMs);
    QVERIFY(device.isConnected());
    QVERIFY(second.path().endsWith(device.portName()));
    QTRY_COMPARE(device.serialNumber(), QStringLiteral("222222"));
    QTRY_COMPARE(second.commands().mid(0, 3), (QStringList {"tarvelo", "sn", "version"}));
    QTRY_VERIFY(!version.isEmpty() && !serial.isEmpty());
    QCOMPARE(serial.constLast().at(0).toString(), QStringLiteral("222222"));
    QCOMPARE(connected.at(1).at(0).toBool(), false);
    QCOMPARE(connected.at(2).at(0).toBool(), true);
}

void DeviceSearchTest::killedEmulatorWhileLinkedMeansLostAndSearchGoesOn()
{
    EmulatorProcess first;
    QVERIFY(first.start());
    setExtraPorts({first.path()});
    TarveloDevice device(-1);
    device.setSearchInterval(ShortIntervalS);
    QSignalSpy disconnected(&device, &TarveloDevice::onDisconnected);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QTRY_VERIFY(!device.version().isEmpty());

    first.kill();
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.count(), 1, WinMs);
    QVERIFY(!device.isConnected());
    // Commands to the dead link go nowhere and harm nothing.
    device.sendCommand(DeviceProtocol::GetSettings);
    device.setStatusReports(true);

    EmulatorProcess second;
    QVERIFY(second.start());
    setExtraPorts({first.path(), second.path()});
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QVERIFY(second.path().endsWith(device.portName()));
}

void DeviceSearchTest::garbageFromACandidateDoesNotStopTheSearch()
{
    FakeBox noisy {QString()};
    QVERIFY(noisy.open());
    connect(&noisy, &FakeBox::commandReceived, this, [&noisy] {
        noisy.sendRaw(QByteArray("\xff\xfe}}\x00{iamtarvel", 15));
        noisy.sendRaw(QByteArray("\xc3\r\n{half frame without end \xd0", 28));
    });
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({noisy.path(), emulator.path()});

    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QVERIFY(emulator.path().endsWith(device.portName()));
    QCOMPARE(noisy.commands(), QStringList {"tarvelo"});
}

void DeviceSearchTest::garbageOnTheLiveLinkIsDropped()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QSignalSpy messages(&device, &TarveloDevice::onMessage);

    box.sendRaw(QByteArray("\x00\xff\xfe}garbage\r\n{ver", 17));
    box.sendRaw("sion=1.\xe2\x82");
    box.sendRaw(QByteArray("\x00\x00", 2));
    box.sendRaw("}\n\n{}{state=1}{version=2.0}");
    QTRY_COMPARE(device.version(), QStringLiteral("2.0"));
    QCOMPARE(messages.count(), 4);
    // A cut character and NUL bytes inside a frame stay in its text.
    QCOMPARE(messages.at(0).at(0).toString(),
             QStringLiteral("version=1.\uFFFD\uFFFD") + QChar(0) + QChar(0));
    QCOMPARE(messages.at(1).at(0).toString(), QString());
    QVERIFY(device.isConnected());
}

void DeviceSearchTest::searchOffReleasesThePortAndOnFindsItAgain()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QSignalSpy disconnected(&device, &TarveloDevice::onDisconnected);

    device.setSearchEnabled(false);
    QCOMPARE(disconnected.count(), 1);
    QVERIFY(!device.isConnected());
    {
        // Free for an outside tool now.
        QSerialPort flasher(emulator.path());
        QVERIFY(flasher.open(QIODevice::ReadWrite));
    }
    device.sendCommand(DeviceProtocol::AskVersion);

    device.setSearchEnabled(true);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QCOMPARE(emulator.count(DeviceProtocol::Greeting), 2);
}

void DeviceSearchTest::watchAsksUntilSerialAndVersionAreKnown()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    // Watching needs no time for a greeting: a fast tick is fine now.
    device.setSearchInterval(1);
    QTRY_COMPARE_WITH_TIMEOUT(box.commands().count(DeviceProtocol::AskSerialNumber), 3, WinMs);
    QVERIFY(box.commands().count(DeviceProtocol::AskVersion) >= 2);

    box.send(QStringLiteral("version=1.0"));
    QTRY_COMPARE(device.version(), QStringLiteral("1.0"));
    const int versions = box.commands().count(DeviceProtocol::AskVersion);
    const int serials = box.commands().count(DeviceProtocol::AskSerialNumber);
    QTRY_COMPARE_WITH_TIMEOUT(box.commands().count(DeviceProtocol::AskSerialNumber), serials + 2,
                              WinMs);
    QCOMPARE(box.commands().count(DeviceProtocol::AskVersion), versions);
}

void DeviceSearchTest::vanishedCandidateIsSkipped()
{
    FakeBox gone;
    QVERIFY(gone.open());
    const QString path = gone.path();
    gone.close();
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({path, QStringLiteral("/nonexistent/port"), emulator.path()});

    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QVERIFY(emulator.path().endsWith(device.portName()));
}

void DeviceSearchTest::searchOnWhileSearchingStartsAPassAtOnce()
{
    FakeBox box {QString()};
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloDevice device(-1);
    device.setSearchInterval(60);
    QTRY_COMPARE_WITH_TIMEOUT(box.commands().size(), 1, WinMs);
    device.setSearchEnabled(true);
    // Far sooner than the minute of the interval.
    QTRY_COMPARE_WITH_TIMEOUT(box.commands().size(), 2, WinMs);
    QVERIFY(!device.isConnected());
}

void DeviceSearchTest::symlinkedPortIsFoundAndRemovedOnTerm()
{
    QTemporaryDir dir;
    const QString link = dir.filePath(QStringLiteral("tarvelo-box"));
    QProcess emulator;
    emulator.start(QStringLiteral(TARVELO_DEVSIM), {"--link", link});
    QVERIFY(emulator.waitForReadyRead(WinMs));
    QVERIFY(QFileInfo(link).isSymLink());
    setExtraPorts({link});
    {
        TarveloDevice device(-1);
        QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
        QCOMPARE(device.portName(), link);
    }
    emulator.terminate();
    QVERIFY(emulator.waitForFinished(WinMs));
    QCOMPARE(emulator.exitStatus(), QProcess::NormalExit);
    QVERIFY(!QFileInfo::exists(link) && !QFileInfo(link).isSymLink());
}

QTEST_GUILESS_MAIN(DeviceSearchTest)
#include "tst_devicesearch.moc"
