#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {
constexpr int WinMs = 8000;

// A box whose calendar stands still, for the serial numbers it writes.
class FixedDateDevice : public TarveloDevice
{
public:
    explicit FixedDateDevice(const QDate &date)
        : TarveloDevice(-1)
        , m_date(date)
    {
    }

protected:
    QDate currentDate() const override { return m_date; }

private:
    QDate m_date;
};

const QDate November2026(2026, 11, 20);

using Operation = std::function<void(TarveloDevice &)>;
} // namespace

Q_DECLARE_METATYPE(Operation)

class DeviceProtocolTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void framesOverTheChunkSizeAreCut_data();
    void framesOverTheChunkSizeAreCut();
    void serialNumberRule_data();
    void serialNumberRule();
    void boxWithoutSerialNumberGetsOneFromTheDate();
    void settingsFlags_data();
    void settingsFlags();
    void stateReports_data();
    void stateReports();
    void operationsSendTheirCommands_data();
    void operationsSendTheirCommands();
    void reportSignalsComeBeforeOnMessage();
    void commandsWithoutALinkAreDropped();

private:
    // A device linked to m_box; the box's commands so far are cleared.
    void link(TarveloDevice *device);

    std::unique_ptr<FakeBox> m_box;
};

void DeviceProtocolTest::init()
{
    m_box = std::make_unique<FakeBox>();
    QVERIFY(m_box->open());
    setExtraPorts({m_box->path()});
}

void DeviceProtocolTest::cleanup()
{
    m_box.reset();
}

void DeviceProtocolTest::link(TarveloDevice *device)
{
    QTRY_VERIFY_WITH_TIMEOUT(device->isConnected(), WinMs);
    QTRY_VERIFY(m_box->commands().contains(DeviceProtocol::AskVersion));
    m_box->clearCommands();
}

void DeviceProtocolTest::framesOverTheChunkSizeAreCut_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QList<int>>("sizes");
    QTest::newRow("126 characters make 128 bytes: one write")
        << QString(126, 'a') << QList<int> {128};
    QTest::newRow("129 bytes: 128 and 1") << QString(127, 'a') << QList<int> {128, 1};
    QTest::newRow("300 bytes") << QString(298, 'a') << QList<int> {128, 128, 44};
    QTest::newRow("two-byte characters, cut inside one")
        << QString(70, QChar(0x0416)) << QList<int> {128, 14};
    QTest::newRow("empty command") << QString() << QList<int> {2};
}

void DeviceProtocolTest::framesOverTheChunkSizeAreCut()
{
    QFETCH(QString, command);
    QFETCH(QList<int>, sizes);
    const QList<QByteArray> pieces = DeviceProtocol::framePieces(command);
    QList<int> got;
    QByteArray joined;
    for (const QByteArray &piece : pieces) {
        got << piece.size();
        joined += piece;
    }
    QCOMPARE(got, sizes);
    QCOMPARE(joined, QByteArray("{" + command.toUtf8() + "}"));
}

void DeviceProtocolTest::serialNumberRule_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<bool>("writes");
    QTest::newRow("six zeros") << "sn=000000" << true;
    QTest::newRow("yy prefix") << "sn=yy1234" << true;
    QTest::newRow("single y") << "sn=y1234" << false;
    QTest::newRow("seven zeros") << "sn=0000000" << false;
    QTest::newRow("own number") << "sn=240315" << false;
}

void DeviceProtocolTest::serialNumberRule()
{
    QFETCH(QString, report);
    QFETCH(bool, writes);
    FixedDateDevice device(November2026);
    link(&device);
    QSignalSpy serial(&device, &TarveloDevice::gotSerialNumber);

    m_box->send(report);
    QVERIFY(serial.wait());
    // The value shows as reported, also when a new one is on its way.
    QCOMPARE(serial.at(0).at(0).toString(), report.mid(3));
    QCOMPARE(device.serialNumber(), report.mid(3));
    // A marker after the report: whatever the rule sent stands before it.
    device.sendCommand(QStringLiteral("marker"));
    QTRY_VERIFY(m_box->commands().contains(QStringLiteral("marker")));
    const QStringList commands = m_box->commands();
    if (!writes) {
        QCOMPARE(commands, QStringList {"marker"});
        return;
    }
    QCOMPARE(commands.size(), 3);
    const QRegularExpression written(QStringLiteral("^writesn=2611(\\d\\d)$"));
    const QRegularExpressionMatch match = written.match(commands.at(0));
    QVERIFY2(match.hasMatch(), qPrintable(commands.at(0)));
    const int suffix = match.captured(1).toInt();
    QVERIFY(suffix >= 10 && suffix <= 98);
    QCOMPARE(commands.at(1), DeviceProtocol::AskSerialNumber);
}

void DeviceProtocolTest::boxWithoutSerialNumberGetsOneFromTheDate()
{
    m_box.reset();
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--no-serial"}));
    setExtraPorts({emulator.path()});
    FixedDateDevice device(November2026);
    QSignalSpy serial(&device, &TarveloDevice::gotSerialNumber);
    QTRY_VERIFY_WITH_TIMEOUT(device.serialNumber().startsWith(QLatin1String("2611")), WinMs);
    QCOMPARE(serial.at(0).at(0).toString(), QStringLiteral("000000"));
    const QStringList commands = emulator.commands();
    const int write = commands.indexOf(QRegularExpression(QStringLiteral("^writesn=2611\\d\\d$")));
    QVERIFY(write > 0);
    QCOMPARE(commands.at(write).mid(8), device.serialNumber());
    QCOMPARE(commands.count(DeviceProtocol::AskSerialNumber), 2);
}

void DeviceProtocolTest::settingsFlags_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QList<bool>>("flags");
    QTest::newRow("pedals alone") << "settings:audioInvert=0;pedalInvert=1"
                                  << QList<bool> {false, true, false, false};
    QTest::newRow("all on") << "settings:audioInvert=1;pedalInvert=1;flashAll=1;soundErrors=1"
                            << QList<bool> {true, true, true, true};
    QTest::newRow("nothing said is off") << "settings:" << QList<bool> {false, false, false, false};
    QTest::newRow("order and neighbours don't matter")
        << "settings:x=2;soundErrors=1;flashAll=1" << QList<bool> {false, false, true, true};
}

void DeviceProtocolTest::settingsFlags()
{
    QFETCH(QString, report);
    QFETCH(QList<bool>, flags);
    TarveloDevice device(-1);
    link(&device);
    QSignalSpy settings(&device, &TarveloDevice::gotSettings);
    m_box->send(report);
    QVERIFY(settings.wait());
    const QList<QVariant> arguments = settings.at(0);
    for (int i = 0; i < flags.size(); ++i)
        QCOMPARE(arguments.at(i).toBool(), flags.at(i));
    QCOMPARE((QList<bool> {device.audioInvert(), device.pedalInvert(), device.flashAll(),
                           device.soundErrors()}),
             flags);
}

void DeviceProtocolTest::stateReports_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QList<bool>>("lamps");
    QTest::addColumn<QList<int>>("pressed"); // -1: no btnChanged at all

    QTest::newRow("first lamp and left pedal")
        << "state=100000000000;btns=000000010"
        << QList<bool> {true,  false, false, false, false, false,
                        false, false, false, false, false, false}
        << QList<int> {7};
    QTest::newRow("three lamps, no buttons piece")
        << "state=101" << QList<bool> {true, false, true} << QList<int> {-1};
    QTest::newRow("short buttons piece")
        << "state=1;btns=101" << QList<bool> {true} << QList<int> {0, 2};
    QTest::newRow("other second piece")
        << "state=1x1;foo=1" << QList<bool> {true, false, true} << QList<int> {-1};
    QTest::newRow("empty lamps, empty buttons")
        << "state=;btns=" << QList<bool> {} << QList<int> {};
}

void DeviceProtocolTest::stateReports()
{
    QFETCH(QString, report);
    QFETCH(QList<bool>, lamps);
    QFETCH(QList<int>, pressed);
    TarveloDevice device(-1);
    link(&device);
    QSignalSpy leds(&device, &TarveloDevice::ledChanged);
    QSignalSpy buttons(&device, &TarveloDevice::btnChanged);
    m_box->send(report);
    QVERIFY(leds.wait());
    QCOMPARE(leds.count(), 1);
    QCOMPARE(leds.at(0).at(0).value<QList<bool>>(), lamps);
    if (pressed == QList<int> {-1}) {
        QCOMPARE(buttons.count(), 0);
        return;
    }
    QCOMPARE(buttons.count(), DeviceProtocol::ReportedButtons);
    for (int i = 0; i < buttons.count(); ++i) {
        QCOMPARE(buttons.at(i).at(0).toInt(), i);
        QCOMPARE(buttons.at(i).at(1).toBool(), pressed.contains(i));
    }
}

void DeviceProtocolTest::operationsSendTheirCommands_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("command"); // empty: nothing is sent

    using Op = Operation;
    QTest::newRow("status on") << Op([](TarveloDevice &d) { d.setStatusReports(true); })
                               << "statusOn";
    QTest::newRow("status off") << Op([](TarveloDevice &d) { d.setStatusReports(false); })
                                << "statusOff";
    QTest::newRow("lamp test") << Op([](TarveloDevice &d) { d.testLamp(3); }) << "led=3";
    QTest::newRow("lamp test above 11 is ignored")
        << Op([](TarveloDevice &d) { d.testLamp(12); }) << "";
    QTest::newRow("tone test") << Op([](TarveloDevice &d) { d.testStimulus(14, true); })
                               << "stim=14";
    QTest::newRow("lamp on") << Op([](TarveloDevice &d) { d.testStimulus(5, true); }) << "led_5=1";
    QTest::newRow("lamp off") << Op([](TarveloDevice &d) { d.testStimulus(11, false); })
                              << "led_11=0";
    QTest::newRow("option") << Op([](TarveloDevice &d) {
        d.sendCommand(DeviceProtocol::SetSettings + QStringLiteral("pedalInvert=1;"));
    }) << "settings=pedalInvert=1;";
    QTest::newRow("long command in pieces")
        << Op([](TarveloDevice &d) { d.sendCommand(QString(300, 'x'), 13); }) << QString(300, 'x');
}

void DeviceProtocolTest::operationsSendTheirCommands()
{
    QFETCH(Operation, operation);
    QFETCH(QString, command);
    TarveloDevice device(-1);
    link(&device);
    operation(device);
    device.sendCommand(QStringLiteral("marker"));
    QTRY_VERIFY(m_box->commands().contains(QStringLiteral("marker")));
    const QStringList expected =
        command.isEmpty() ? QStringList {"marker"} : QStringList {command, "marker"};
    QCOMPARE(m_box->commands(), expected);
}

void DeviceProtocolTest::reportSignalsComeBeforeOnMessage()
{
    TarveloDevice device(-1);
    link(&device);
    QStringList order;
    connect(&device, &TarveloDevice::gotVersion, this,
            [&order](const QString &v) { order << "version " + v; });
    connect(&device, &TarveloDevice::onMessage, this,
            [&order](const QString &msg) { order << "message " + msg; });
    m_box->send(QStringLiteral("version=5.0"));
    m_box->send(QStringLiteral("stageAction=+1"));
    m_box->send(QStringLiteral("version"));
    QTRY_COMPARE(order.size(), 4);
    QCOMPARE(order,
             (QStringList {"version 5.0", "message version=5.0", "message stageAction=+1",
                           "message version"}));
}

void DeviceProtocolTest::commandsWithoutALinkAreDropped()
{
    m_box->close();
    setExtraPorts({});
    TarveloDevice device(-1);
    QVERIFY(!device.isConnected());
    device.sendCommand(DeviceProtocol::GetSettings);
    device.testLamp(1);
    device.setStatusReports(true);
    TarveloDevice::sendText(DeviceProtocol::Stop, nullptr, 13);
    QVERIFY(device.portName().isEmpty());
}

QTEST_GUILESS_MAIN(DeviceProtocolTest)
#include "tst_deviceprotocol.moc"
