#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/PortCatalog.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestFiles.h"

#include <QSerialPort>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

using namespace DeviceProtocol;

namespace {
// The greeting goes out a second after a port opened; a win takes a little more than that.
constexpr int WinMs = 8000;

// A device whose calendar stands still, for the serial numbers it writes.
class FixedDateDevice : public TarveloDevice
{
public:
    FixedDateDevice()
        : TarveloDevice(-1)
    {
    }

protected:
    QDate currentDate() const override { return QDate(2026, 11, 20); }
};

using Operation = std::function<void(TarveloDevice &)>;

QList<int> values(const QSignalSpy &spy, int argument = 0)
{
    QList<int> list;
    for (const QList<QVariant> &arguments : spy)
        list << arguments.at(argument).toInt();
    return list;
}

QList<int> ends(int count)
{
    return QVector<int>(count, -1).toList();
}

std::unique_ptr<TarveloScript> scriptOf(const QString &title, const QStringList &stages)
{
    auto script = std::make_unique<TarveloScript>();
    script->setTitle(title);
    for (const QString &line : stages)
        script->addStage(ScriptStage::fromText(line));
    return script;
}

const QString TwoSteps = QStringLiteral("rpt=1;[s=1,t=1,d=1][s=2,t=1,d=1]");
} // namespace

Q_DECLARE_METATYPE(Operation)

class DeviceTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { setExtraPorts({}); }

    // The stream and the frames, without a port.
    void splitterGivesTheFramesMessages_data();
    void splitterGivesTheFramesMessages();
    void everyCutOfAStreamGivesTheSameMessages();
    void framesOverTheChunkSizeAreCut_data();
    void framesOverTheChunkSizeAreCut();
    void portNumber_data();
    void portNumber();
    void portsOfTheSystemAndTheEnvironment();
    void uploadProgress_data();
    void uploadProgress();
    void uploadAskedForDuringAnUploadIsRefused();

    // One link to a box that the test speaks for.
    void linkAsksUntilSerialNumberAndVersionAreKnown();
    void serialNumberRule_data();
    void serialNumberRule();
    void reports_data();
    void reports();
    void operationsSendTheirCommands_data();
    void operationsSendTheirCommands();
    void garbageOnTheLinkIsDropped();
    void searchOffReleasesThePortAndOnFindsItAgain();

    // The search.
    void searchWinsTheBoxAmongOtherPorts();
    void otherAnswersDontWin();
    void portFilterTriesOnlyThatNumber();
    void lostLinkThenANewWinAsksAgain();
    void uploadSendsTheGoldenFramesAndStartsLater();

private:
    FakeBox m_box;
    std::unique_ptr<FixedDateDevice> m_device;
};

void DeviceTest::splitterGivesTheFramesMessages_data()
{
    QTest::addColumn<QStringList>("chunks");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("two frames in one chunk")
        << QStringList {"{sn=123}{version=1.2}"} << QStringList {"sn=123", "version=1.2"};
    QTest::newRow("half frames wait for their ends")
        << QStringList {"{sta", "te=1", "", "01}{v"} << QStringList {"state=101"};
    QTest::newRow("a closing brace without opening is dropped")
        << QStringList {"abc}{x}"} << QStringList {"x"};
    QTest::newRow("an empty frame is a message") << QStringList {"{}"} << QStringList {""};
    QTest::newRow("an opening brace inside stays in the text")
        << QStringList {"{a{b}"} << QStringList {"a{b"};
    QTest::newRow("noise between frames vanishes, inside them it stays")
        << QStringList {"{ a }rst}}\r\n\x01{b\r\nc}"} << QStringList {" a ", "b\r\nc"};
    QTest::newRow("invalid UTF-8 is replaced")
        << QStringList {QString::fromUtf8("\xff{a\xfe\xc3}")} << QStringList {"a\uFFFD\uFFFD"};
}

void DeviceTest::splitterGivesTheFramesMessages()
{
    QFETCH(QStringList, chunks);
    QFETCH(QStringList, expected);
    TarveloMessage splitter;
    QSignalSpy spy(&splitter, &TarveloMessage::messageReceived);
    QStringList returned;
    for (const QString &chunk : qAsConst(chunks))
        returned += splitter.parse(chunk);
    QCOMPARE(returned, expected);
    QStringList signalled;
    for (const QList<QVariant> &arguments : qAsConst(spy))
        signalled << arguments.at(0).toString();
    QCOMPARE(signalled, expected);
    splitter.parse(QStringLiteral("{half"));
    splitter.reset();
    QCOMPARE(splitter.parse(QStringLiteral("rest}{x}")), QStringList {"x"});
}

void DeviceTest::everyCutOfAStreamGivesTheSameMessages()
{
    const QString stream = QStringLiteral(
        "\r\nboot}{iamtarvelo}{sn=240315}\n{version=2.4.1}{}{scriptStarted=Проба}junk"
        "{r=-350;b=10;b2=3;s=3;t=2000;d=1000}{a{b}\r\n{stageAction=+1}");
    const QStringList expected {"iamtarvelo",
                                "sn=240315",
                                "version=2.4.1",
                                "",
                                QStringLiteral("scriptStarted=Проба"),
                                "r=-350;b=10;b2=3;s=3;t=2000;d=1000",
                                "a{b",
                                "stageAction=+1"};
    for (int first = 0; first <= stream.size(); ++first) {
        for (int second = first; second <= stream.size(); second += 7) {
            TarveloMessage splitter;
            QStringList got = splitter.parse(stream.left(first));
            got += splitter.parse(stream.mid(first, second - first));
            got += splitter.parse(stream.mid(second));
            QVERIFY2(got == expected,
                     qPrintable(QStringLiteral("cut at %1, %2").arg(first).arg(second)));
        }
    }
}

void DeviceTest::framesOverTheChunkSizeAreCut_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QList<int>>("sizes");
    QTest::newRow("128 bytes: one write") << QString(126, 'a') << QList<int> {128};
    QTest::newRow("129 bytes: 128 and 1") << QString(127, 'a') << QList<int> {128, 1};
    QTest::newRow("cut inside a two-byte character")
        << QString(70, QChar(0x0416)) << QList<int> {128, 14};
    QTest::newRow("empty command") << QString() << QList<int> {2};
}

void DeviceTest::framesOverTheChunkSizeAreCut()
{
    QFETCH(QString, command);
    QFETCH(QList<int>, sizes);
    QList<int> got;
    QByteArray joined;
    for (const QByteArray &piece : framePieces(command)) {
        got << piece.size();
        joined += piece;
    }
    QCOMPARE(got, sizes);
    QCOMPARE(joined, "{" + command.toUtf8() + "}");
}

void DeviceTest::portNumber_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("COM12") << "COM12" << 12;
    QTest::newRow("COM without digits") << "COM" << 0;
    QTest::newRow("ttyUSB3") << "ttyUSB3" << 3;
    QTest::newRow("two-digit pts") << "/dev/pts/42" << 42;
    QTest::newRow("digits not at the end") << "tty3x" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("too long for a number") << "tty99999999999999" << 0;
}

void DeviceTest::portNumber()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QCOMPARE(PortCatalog::portNumber(name), number);
}

void DeviceTest::portsOfTheSystemAndTheEnvironment()
{
    QVERIFY(PortCatalog::isExcluded(QStringLiteral("Последовательный порт (COM1)")));
    QVERIFY(PortCatalog::isExcluded(QStringLiteral("Standard Serial over Bluetooth link")));
    QVERIFY(!PortCatalog::isExcluded(QStringLiteral("bluetooth USB-SERIAL CH340")));
    setExtraPorts({QStringLiteral("/dev/pts/3"), QString(), QStringLiteral("/tmp/box")});
    QCOMPARE(PortCatalog::extraPorts(), (QStringList {"/dev/pts/3", "/tmp/box"}));
    QCOMPARE(PortCatalog::candidates().constLast().name, QStringLiteral("/tmp/box"));
}

void DeviceTest::uploadProgress_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("stages");
    QTest::addColumn<int>("saveSlot");
    QTest::addColumn<bool>("start");
    QTest::addColumn<QList<int>>("progress");
    // Total 2 * 1 + 1 + 2 = 5; the counter starts at 1 and each tick first adds 1. The header
    // counts as one item, but each of its seven entries ticks.
    QTest::newRow("one stage, two steps")
        << "a" << QStringList {TwoSteps} << -1 << true << QList<int> {40, 60, 80} + ends(9);
    // Total 2 * 2 + 1 + 4 = 9.
    QTest::newRow("two stages") << "a" << QStringList {TwoSteps, TwoSteps} << -1 << true
                                << QList<int> {22, 33, 44, 55, 66, 77, 88} + ends(9);
    QTest::newRow("no stages: every tick is at the end")
        << "a" << QStringList {} << -1 << true << ends(8);
    QTest::newRow("a \";\" in the title makes an eighth entry")
        << "a;b" << QStringList {TwoSteps} << -1 << true << QList<int> {40, 60, 80} + ends(10);
    QTest::newRow("save slot, no start")
        << "a" << QStringList {TwoSteps} << 0 << false << QList<int> {40, 60, 80} + ends(9);
}

void DeviceTest::uploadProgress()
{
    QFETCH(QString, title);
    QFETCH(QStringList, stages);
    QFETCH(int, saveSlot);
    QFETCH(bool, start);
    QFETCH(QList<int>, progress);
    TarveloDevice device(-1);
    QSignalSpy spy(&device, &TarveloDevice::loadProgress);
    device.uploadScript(scriptOf(title, stages).get(), saveSlot, start);
    QCOMPARE(values(spy), progress);
}

void DeviceTest::uploadAskedForDuringAnUploadIsRefused()
{
    const std::unique_ptr<TarveloScript> script = scriptOf(QStringLiteral("a"), {TwoSteps});
    TarveloDevice device(-1);
    QSignalSpy spy(&device, &TarveloDevice::loadProgress);
    // The interface runs during the upload's event passes, and could ask for another one.
    int askedAt = -1;
    QTimer::singleShot(0, &device, [&] {
        askedAt = spy.count();
        device.uploadScript(script.get());
    });
    device.uploadScript(script.get());
    QVERIFY(askedAt > 0);
    QCOMPARE(values(spy), QList<int>({40, 60, 80}) + ends(9));
}

void DeviceTest::linkAsksUntilSerialNumberAndVersionAreKnown()
{
    QVERIFY(m_box.open());
    setExtraPorts({m_box.path()});
    m_device = std::make_unique<FixedDateDevice>();
    QSignalSpy connected(m_device.get(), &TarveloDevice::connectedChanged);
    QSignalSpy portName(m_device.get(), &TarveloDevice::gotPortName);
    QTRY_COMPARE_WITH_TIMEOUT(portName.count(), 1, WinMs);
    QCOMPARE(values(connected), QList<int> {true});
    QVERIFY(m_box.path().endsWith(m_device->portName()));
    QCOMPARE(m_box.commands(), (QStringList {"tarvelo", "sn", "version"}));

    // Watching needs no time for a greeting: a fast tick is fine now.
    m_device->setSearchInterval(1);
    QTRY_COMPARE_WITH_TIMEOUT(m_box.commands().count(AskSerialNumber), 3, WinMs);
    QTRY_COMPARE(m_box.commands().count(AskVersion), 3);
    m_box.send(QStringLiteral("version=1.0"));
    QTRY_COMPARE(m_device->version(), QStringLiteral("1.0"));
    const int versions = m_box.commands().count(AskVersion);
    const int serials = m_box.commands().count(AskSerialNumber);
    QTRY_COMPARE_WITH_TIMEOUT(m_box.commands().count(AskSerialNumber), serials + 1, WinMs);
    QCOMPARE(m_box.commands().count(AskVersion), versions);
    m_box.send(QStringLiteral("sn=240315"));
    QTRY_COMPARE(m_device->serialNumber(), QStringLiteral("240315"));
    m_device->setSearchInterval(60);
}

void DeviceTest::serialNumberRule_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<bool>("writes");
    QTest::newRow("six zeros") << "sn=000000" << true;
    QTest::newRow("yy prefix") << "sn=yy1234" << true;
    QTest::newRow("single y") << "sn=y1234" << false;
    QTest::newRow("seven zeros") << "sn=0000000" << false;
}

void DeviceTest::serialNumberRule()
{
    QFETCH(QString, report);
    QFETCH(bool, writes);
    m_box.clearCommands();
    QSignalSpy serial(m_device.get(), &TarveloDevice::gotSerialNumber);
    m_box.send(report);
    QVERIFY(serial.wait());
    // The value shows as reported, also while a new one is on its way.
    QCOMPARE(m_device->serialNumber(), report.mid(3));
    m_device->sendCommand(QStringLiteral("marker"));
    QTRY_VERIFY(m_box.commands().contains(QStringLiteral("marker")));
    const QStringList commands = m_box.commands();
    QCOMPARE(commands.size(), writes ? 3 : 1);
    if (!writes)
        return;
    const QRegularExpressionMatch written =
        QRegularExpression(QStringLiteral("^writesn=2611(\\d\\d)$")).match(commands.at(0));
    QVERIFY2(written.hasMatch(), qPrintable(commands.at(0)));
    QVERIFY(written.captured(1).toInt() >= 10 && written.captured(1).toInt() <= 98);
    QCOMPARE(commands.at(1), AskSerialNumber);
}

void DeviceTest::reports_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("emitted");
    QTest::newRow("options") << "settings:audioInvert=0;pedalInvert=1"
                             << "settings 0 1 0 0";
    QTest::newRow("all options") << "settings:audioInvert=1;pedalInvert=1;flashAll=1;soundErrors=1"
                                 << "settings 1 1 1 1";
    QTest::newRow("order and neighbours of options don't matter")
        << "settings:x=2;soundErrors=1;flashAll=1"
        << "settings 0 0 1 1";
    QTest::newRow("lamps and controls") << "state=100;btns=000000010"
                                        << "lamps 100 buttons 000000010";
    QTest::newRow("lamps alone") << "state=1x1;foo=1"
                                 << "lamps 101";
    QTest::newRow("a short controls piece is filled up") << "state=;btns=101"
                                                         << "lamps  buttons 101000000";
    QTest::newRow("version") << "version=5.0"
                             << "version 5.0";
    QTest::newRow("anything else is only passed on") << "stageAction=+1"
                                                     << "";
}

// Each report gives its own signal first, then onMessage; nothing more.
void DeviceTest::reports()
{
    QFETCH(QString, report);
    QFETCH(QString, emitted);
    QStringList heard;
    const auto bits = [](const QList<bool> &list) {
        QString text;
        for (bool on : list)
            text += on ? '1' : '0';
        return text;
    };
    QString buttons;
    ConnectionHelper connections;
    TarveloDevice *device = m_device.get();
    connections << connect(
        device, &TarveloDevice::gotSettings, this, [&](bool a, bool p, bool f, bool s) {
            heard << QStringLiteral("settings %1 %2 %3 %4").arg(a).arg(p).arg(f).arg(s);
            QCOMPARE((QList<bool> {a, p, f, s}),
                     (QList<bool> {device->audioInvert(), device->pedalInvert(), device->flashAll(),
                                   device->soundErrors()}));
        });
    connections << connect(device, &TarveloDevice::ledChanged, this,
                           [&](const QList<bool> &lamps) { heard << "lamps " + bits(lamps); });
    connections << connect(device, &TarveloDevice::btnChanged, this, [&](int index, bool on) {
        if (index == buttons.size())
            buttons += on ? '1' : '0';
        if (buttons.size() == ReportedButtons)
            heard.last() += " buttons " + buttons;
    });
    connections << connect(device, &TarveloDevice::gotVersion, this,
                           [&](const QString &version) { heard << "version " + version; });
    connections << connect(device, &TarveloDevice::onMessage, this,
                           [&](const QString &message) { heard << "message " + message; });
    m_box.send(report);
    QTRY_VERIFY(!heard.isEmpty() && heard.last().startsWith(QLatin1String("message")));
    QCOMPARE(heard.constLast(), "message " + report);
    QCOMPARE(heard.mid(0, heard.size() - 1).join(QString()), emitted);
}

void DeviceTest::operationsSendTheirCommands_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("command"); // empty: nothing is sent
    using Op = Operation;
    QTest::newRow("status on") << Op([](TarveloDevice &d) { d.setStatusReports(true); })
                               << "statusOn";
    QTest::newRow("status off") << Op([](TarveloDevice &d) { d.setStatusReports(false); })
                                << "statusOff";
    QTest::newRow("lamp test") << Op([](TarveloDevice &d) { d.testLamp(11); }) << "led=11";
    QTest::newRow("no lamp above 11") << Op([](TarveloDevice &d) { d.testLamp(12); }) << "";
    QTest::newRow("tone test") << Op([](TarveloDevice &d) { d.testStimulus(12, true); })
                               << "stim=12";
    QTest::newRow("lamp on") << Op([](TarveloDevice &d) { d.testStimulus(5, true); }) << "led_5=1";
    QTest::newRow("lamp off") << Op([](TarveloDevice &d) { d.testStimulus(11, false); })
                              << "led_11=0";
    QTest::newRow("a long command goes in pieces")
        << Op([](TarveloDevice &d) { d.sendCommand(QString(300, 'x'), 13); }) << QString(300, 'x');
}

void DeviceTest::operationsSendTheirCommands()
{
    QFETCH(Operation, operation);
    QFETCH(QString, command);
    m_box.clearCommands();
    operation(*m_device);
    m_device->sendCommand(QStringLiteral("marker"));
    QTRY_VERIFY(m_box.commands().contains(QStringLiteral("marker")));
    QCOMPARE(m_box.commands(),
             (command.isEmpty() ? QStringList {"marker"} : QStringList {command, "marker"}));
}

void DeviceTest::garbageOnTheLinkIsDropped()
{
    QSignalSpy messages(m_device.get(), &TarveloDevice::onMessage);
    m_box.sendRaw(QByteArray("\x00\xff\xfe}garbage\r\n{ver", 17));
    m_box.sendRaw("sion=1.\xe2\x82");
    m_box.sendRaw(QByteArray("\x00\x00", 2));
    m_box.sendRaw("}\n\n{}{state=1}{version=2.0}");
    QTRY_COMPARE(m_device->version(), QStringLiteral("2.0"));
    QCOMPARE(messages.count(), 4);
    // A character cut by two reads and NUL bytes inside a frame stay in its text.
    QCOMPARE(messages.at(0).at(0).toString(),
             QStringLiteral("version=1.\uFFFD\uFFFD") + QChar(0) + QChar(0));
    QVERIFY(m_device->isConnected());
}

void DeviceTest::searchOffReleasesThePortAndOnFindsItAgain()
{
    QSignalSpy connected(m_device.get(), &TarveloDevice::connectedChanged);
    m_device->setSearchEnabled(false);
    QCOMPARE(values(connected), QList<int> {false});
    {
        // Free for an outside tool now, and commands go nowhere.
        QSerialPort flasher(m_box.path());
        QVERIFY(flasher.open(QIODevice::ReadWrite));
    }
    m_box.clearCommands();
    m_device->sendCommand(AskVersion);
    setExtraPorts({m_box.path()});
    m_device->setSearchEnabled(true);
    QTRY_VERIFY_WITH_TIMEOUT(m_device->isConnected(), WinMs);
    QCOMPARE(m_box.commands().mid(0, 1), QStringList {Greeting});
    m_device.reset();
    m_box.close();
}

void DeviceTest::searchWinsTheBoxAmongOtherPorts()
{
    // A box that answers with noise, one that answers with the wrong word, a port that went
    // away and one that never was, and behind them the emulator.
    FakeBox noisy {QString()};
    QVERIFY(noisy.open());
    connect(&noisy, &FakeBox::commandReceived, this, [&noisy] {
        noisy.sendRaw(QByteArray("\xff\xfe}}\x00{iamtarvel", 15));
        noisy.sendRaw(QByteArray("\xc3\r\n{half frame without end \xd0", 28));
    });
    FakeBox wrong(QStringLiteral("IamTarvelo"));
    FakeBox gone;
    QVERIFY(wrong.open() && gone.open());
    const QString gonePath = gone.path();
    gone.close();
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--serial", "250101", "--firmware-version", "3.1"}));
    setExtraPorts({noisy.path(), wrong.path(), gonePath, "/nonexistent/port", emulator.path()});

    TarveloDevice device(-1);
    QSignalSpy portName(&device, &TarveloDevice::gotPortName);
    QTRY_COMPARE_WITH_TIMEOUT(portName.count(), 1, WinMs);
    QVERIFY(emulator.path().endsWith(device.portName()));
    QTRY_COMPARE(device.version(), QStringLiteral("3.1"));
    QCOMPARE(device.serialNumber(), QStringLiteral("250101"));
    QCOMPARE(emulator.commands().mid(0, 3), (QStringList {"tarvelo", "sn", "version"}));
    QCOMPARE(noisy.commands(), QStringList {"tarvelo"});
    QCOMPARE(wrong.commands(), QStringList {"tarvelo"});
}

void DeviceTest::otherAnswersDontWin()
{
    std::vector<std::unique_ptr<FakeBox>> boxes;
    QStringList paths;
    for (const char *answer : {"iamtarveloX", "tarvelo", " iamtarvelo", ""}) {
        boxes.push_back(std::make_unique<FakeBox>(QString::fromLatin1(answer)));
        QVERIFY(boxes.back()->open());
        paths << boxes.back()->path();
    }
    // The right word among other frames of the same read wins; the rest of the read is lost.
    FakeBox chatty {QString()};
    QVERIFY(chatty.open());
    connect(&chatty, &FakeBox::commandReceived, this, [&chatty](const QString &command) {
        if (command == Greeting)
            chatty.sendRaw("boot\r\n{hello}{iamtarvelo}{version=9.9}");
    });
    setExtraPorts(paths);
    TarveloDevice device(-1);
    device.setSearchInterval(60);
    QTRY_COMPARE_WITH_TIMEOUT(boxes.back()->commands().size(), 1, WinMs);
    // Switching the search on while it searches starts a pass at once, not a minute later.
    device.setSearchEnabled(true);
    QTRY_COMPARE_WITH_TIMEOUT(boxes.back()->commands().size(), 2, WinMs);
    QVERIFY(!device.isConnected());
    for (const auto &box : boxes)
        QVERIFY(!box->commands().contains(AskSerialNumber));

    setExtraPorts({chatty.path()});
    QSignalSpy messages(&device, &TarveloDevice::onMessage);
    device.setSearchEnabled(true);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QTRY_COMPARE(chatty.commands().mid(1), (QStringList {"sn", "version"}));
    QCOMPARE(messages.count(), 0);
    QVERIFY(device.version().isEmpty());
}

void DeviceTest::portFilterTriesOnlyThatNumber()
{
    FakeBox other;
    FakeBox chosen;
    QVERIFY(other.open() && chosen.open());
    const int number = PortCatalog::portNumber(chosen.path());
    QVERIFY(PortCatalog::portNumber(other.path()) != number);
    setExtraPorts({other.path(), chosen.path()});
    TarveloDevice device(number);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QVERIFY(chosen.path().endsWith(device.portName()));
    QVERIFY(other.commands().isEmpty());
}

void DeviceTest::lostLinkThenANewWinAsksAgain()
{
    EmulatorProcess first;
    // "iamtarvelo", "sn=", "version=", then the cable goes.
    QVERIFY(first.start({"--drop-after", "3", "--serial", "111111"}));
    setExtraPorts({first.path()});
    TarveloDevice device(-1);
    // Two seconds leave the greeting, which goes out a second after a port opened, its answer.
    device.setSearchInterval(2);
    QSignalSpy connected(&device, &TarveloDevice::connectedChanged);
    QTRY_COMPARE_WITH_TIMEOUT(connected.count(), 2, WinMs);
    QVERIFY(first.waitForExit());
    // Commands to the dead link go nowhere and harm nothing.
    device.sendCommand(GetSettings);

    EmulatorProcess second;
    QVERIFY(second.start({"--serial", "222222"}));
    setExtraPorts({first.path(), second.path()});
    QTRY_COMPARE_WITH_TIMEOUT(connected.count(), 3, WinMs);
    QCOMPARE(values(connected), (QList<int> {true, false, true}));
    QVERIFY(second.path().endsWith(device.portName()));
    QTRY_COMPARE(device.serialNumber(), QStringLiteral("222222"));
}

void DeviceTest::uploadSendsTheGoldenFramesAndStartsLater()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(!device.version().isEmpty(), WinMs);

    // A ";" in the title splits its entry; the description is longer than one write.
    const std::unique_ptr<TarveloScript> script = scriptOf(
        QStringLiteral("Проба; вторая часть"),
        {"stop=5;s-2=4;s-1=3;s-0=2;s+1=1;s+2=0;rpt=3;[s=3,t=2000,d=1000][s=13,t=1500,d=700]",
         "s+2=0;rpt=1;[s=10,t=2000,d=1000]"});
    script->setDescription(QStringLiteral("Длинное описание, которое одно занимает больше ста "
                                          "двадцати восьми байт в кодировке UTF-8."));
    script->setMessage(QStringLiteral("Нажимайте кнопку цвета лампы"));
    device.uploadScript(script.get());
    QVERIFY(!emulator.commands().contains(StartScript));
    QTRY_VERIFY_WITH_TIMEOUT(emulator.commands().contains(StartScript), WinMs);
    const QStringList commands = emulator.commands();
    const QStringList upload =
        commands.mid(commands.indexOf(QRegularExpression("scriptHeader=.*")));
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("upload_frames.txt"),
                                     upload.join('\n').toUtf8() + '\n'));
    // The box took the title up to the ";" and plays what it got.
    QTRY_VERIFY(emulator.reports().contains(QStringLiteral("scriptStarted=Проба")));
}

QTEST_GUILESS_MAIN(DeviceTest)
#include "tst_device.moc"
