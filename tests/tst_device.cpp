#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/FirmwareFlasher.h"
#include "device/FirmwarePackage.h"
#include "device/PortCatalog.h"
#include "device/TarveloDevice.h"
#include "device/TarveloMessage.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestFiles.h"

#include <QtTest>

#include <memory>

using namespace DeviceProtocol;

namespace {
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

QList<int> values(const QSignalSpy &spy, int argument = 0)
{
    QList<int> list;
    for (const QList<QVariant> &arguments : spy)
        list << arguments.at(argument).toInt();
    return list;
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

class DeviceTest : public QObject
{
    Q_OBJECT
private slots:
    void firmwareToolArgumentsOfBothBoardTypes();
    void init() { setExtraPorts({}); }

    // The stream and the frames, without a port. The fuzz corpora replayed by the test
    // fuzz_corpus check that any cut of a stream gives the same messages.
    void splitterGivesTheFramesMessages_data()
    {
        TestFiles::addRows(QStringLiteral("tables/device_frames.txt"));
    }
    void splitterGivesTheFramesMessages();
    void bytesCutAnywhereArriveWholeAndEndlessFramesAreDropped();
    void portsOfTheSystemAndTheEnvironment();

    // One link to a box that the test speaks for, until its cable goes in the last of them.
    void linkAsksUntilSerialNumberAndVersionAreKnown();
    void link_data() { TestFiles::addRows(QStringLiteral("tables/device_link.txt")); }
    void link();
    void uploadProgress_data() { TestFiles::addRows(QStringLiteral("tables/upload_progress.txt")); }
    void uploadProgress();
    void uploadAskedForDuringAnUploadIsRefused();
    void uploadStopsAtTheFirstCommandThatDoesNotGoOut();

    // The search.
    void searchWinsTheBoxAmongOtherPortsAndUploadsToIt();
    void portFilterAndAnAnswerAmongOtherFrames();

private:
    FakeBox m_box;
    std::unique_ptr<FixedDateDevice> m_device;
};

void DeviceTest::splitterGivesTheFramesMessages()
{
    QFETCH(QStringList, chunks);
    QFETCH(QStringList, messages);
    TarveloMessage splitter;
    QStringList returned;
    for (const QString &chunk : qAsConst(chunks))
        returned += splitter.parse(chunk);
    QCOMPARE(returned, messages);
    // A frame goes in writes of 128 bytes; a cut may fall inside a two-byte character.
    QCOMPARE(framePieces(QString(126, 'a')).size(), 1);
    const QList<QByteArray> pieces = framePieces(QString(70, QChar(0x0416)));
    QCOMPARE(pieces.size(), 2);
    QCOMPARE(pieces.constFirst().size(), 128);
    QCOMPARE(pieces.join(), "{" + QString(70, QChar(0x0416)).toUtf8() + "}");
}

void DeviceTest::bytesCutAnywhereArriveWholeAndEndlessFramesAreDropped()
{
    const QByteArray stream = QStringLiteral("{scriptStarted=Проба}{sn=1}").toUtf8();
    for (int cut = 0; cut <= stream.size(); ++cut) {
        TarveloMessage splitter;
        QStringList got = splitter.parseBytes(stream.left(cut));
        got += splitter.parseBytes(QByteArray()); // a read with nothing in it
        got += splitter.parseBytes(stream.mid(cut));
        QVERIFY2(got == QStringList({"scriptStarted=Проба", "sn=1"}),
                 qPrintable(QString::number(cut)));
    }

    // A frame that grows beyond the limit without its closing brace is dropped, and told once.
    static int logged = 0;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &) { ++logged; });
    const int max = TarveloMessage::MaxFrameLength;
    const QByteArray endless =
        '{' + QByteArray(max, 'x') + "}{" + QByteArray(1 << 20, 'y') + "}{z}";
    TarveloMessage splitter;
    QStringList got;
    for (int from = 0; from < endless.size(); from += 1000)
        got << splitter.parseBytes(endless.mid(from, 1000));
    qInstallMessageHandler(previous);
    QCOMPARE(got, (QStringList {QString(max, 'x'), "z"}));
    QCOMPARE(logged, 1);
}

void DeviceTest::portsOfTheSystemAndTheEnvironment()
{
    // The number after "COM", else the trailing digits.
    const QList<QPair<QString, int>> numbers {{"COM12", 12},           {"COM", 0},   {"ttyUSB3", 3},
                                              {"/dev/pts/42", 42},     {"tty3x", 0}, {"", 0},
                                              {"tty99999999999999", 0}};
    for (const auto &[name, number] : numbers)
        QCOMPARE(PortCatalog::portNumber(name), number);
    QVERIFY(PortCatalog::isExcluded(QStringLiteral("Последовательный порт (COM1)")));
    QVERIFY(PortCatalog::isExcluded(QStringLiteral("Standard Serial over Bluetooth link")));
    QVERIFY(!PortCatalog::isExcluded(QStringLiteral("bluetooth USB-SERIAL CH340")));
    setExtraPorts({QStringLiteral("/dev/pts/3"), QString(), QStringLiteral("/tmp/box")});
    QCOMPARE(PortCatalog::extraPorts(), (QStringList {"/dev/pts/3", "/tmp/box"}));
    QCOMPARE(PortCatalog::candidates().constLast().name, QStringLiteral("/tmp/box"));
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
    QTRY_COMPARE(m_box.commands(), (QStringList {"tarvelo", "sn", "version"}));

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

// A report gives its own signal before the link passes it on; a serial number that marks a box
// without one of its own makes the link write one from the date and ask again.
void DeviceTest::link()
{
    QFETCH(QString, input);
    QFETCH(QString, heard);
    QFETCH(QString, commands);
    TarveloDevice *device = m_device.get();
    QStringList signalled;
    ConnectionHelper connections;
    connections << connect(device, &TarveloDevice::gotVersion, this,
                           [&](const QString &version) { signalled << "version " + version; });
    connections << connect(device, &TarveloDevice::gotSerialNumber, this,
                           [&](const QString &serial) { signalled << "serial " + serial; });
    connections << connect(device, &TarveloDevice::onMessage, this,
                           [&](const QString &message) { signalled << "message " + message; });
    m_box.clearCommands();
    const QStringList words = input.split(' ');
    if (words[0] == ">") {
        m_box.send(input.mid(2));
        QTRY_VERIFY(!signalled.isEmpty() && signalled.last() == "message " + input.mid(2));
        signalled.removeLast();
    } else if (words[0] == "status") {
        device->setStatusReports(words[1] == "on");
    } else if (words[0] == "lamp") {
        device->testLamp(words[1].toInt());
    } else if (words[0] == "stimulus") {
        device->testStimulus(words[1].toInt(), words[2] == "on");
    } else {
        device->sendCommand(QString(words[1].toInt(), 'x'), 13);
    }
    QCOMPARE(signalled.join(' '), heard);
    device->sendCommand(QStringLiteral("marker"));
    QTRY_VERIFY(m_box.commands().contains(QStringLiteral("marker")));
    const QString got = m_box.commands().join(' ');
    QVERIFY2(QRegularExpression('^' + commands + '$').match(got).hasMatch(), qPrintable(got));
}

void DeviceTest::uploadProgress()
{
    QFETCH(QString, title);
    QFETCH(QStringList, stages);
    QFETCH(int, saveSlot);
    QFETCH(bool, start);
    QFETCH(QList<int>, progress);
    QSignalSpy spy(m_device.get(), &TarveloDevice::loadProgress);
    m_device->uploadScript(scriptOf(title, stages).get(), saveSlot, start);
    QCOMPARE(values(spy), progress);
}

void DeviceTest::uploadAskedForDuringAnUploadIsRefused()
{
    const std::unique_ptr<TarveloScript> script = scriptOf(QStringLiteral("a"), {TwoSteps});
    TarveloDevice *device = m_device.get();
    QSignalSpy spy(device, &TarveloDevice::loadProgress);
    // The interface runs during the upload's event passes, and could ask for another one.
    int askedAt = -1;
    QTimer::singleShot(0, device, [&] {
        askedAt = spy.count();
        device->uploadScript(script.get());
    });
    device->uploadScript(script.get());
    QVERIFY(askedAt > 0);
    QCOMPARE(values(spy), QList<int>({40, 60, 80}) + QVector<int>(9, -1).toList());
}

void DeviceTest::uploadStopsAtTheFirstCommandThatDoesNotGoOut()
{
    TarveloDevice *device = m_device.get();
    m_box.close(); // the cable goes
    QSignalSpy progress(device, &TarveloDevice::loadProgress);
    QSignalSpy failed(device, &TarveloDevice::uploadFailed);
    device->uploadScript(scriptOf(QStringLiteral("a"), {TwoSteps}).get());
    QCOMPARE(values(progress), QList<int> {-1});
    QCOMPARE(failed.count(), 1);
    QVERIFY(!device->isConnected());
}

void DeviceTest::searchWinsTheBoxAmongOtherPortsAndUploadsToIt()
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

    // The upload goes out in the golden frames, the start a second later: a ";" in the title
    // splits its entry, the description is longer than one write.
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

// The box's answer comes within other frames of one read: it wins, the rest of the read is lost
// with the candidate's splitter. A port number in the settings makes the search try that port
// alone.
void DeviceTest::portFilterAndAnAnswerAmongOtherFrames()
{
    FakeBox other;
    FakeBox chosen {QString()};
    QVERIFY(other.open() && chosen.open());
    connect(&chosen, &FakeBox::commandReceived, this, [&chosen](const QString &command) {
        if (command == Greeting)
            chosen.sendRaw("boot\r\n{hello}{iamtarvelo}{version=9.9}");
    });
    const int number = PortCatalog::portNumber(chosen.path());
    QVERIFY(PortCatalog::portNumber(other.path()) != number);
    setExtraPorts({other.path(), chosen.path()});
    TarveloDevice device(number);
    QSignalSpy messages(&device, &TarveloDevice::onMessage);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QTRY_COMPARE(chosen.commands(), (QStringList {"tarvelo", "sn", "version"}));
    QVERIFY(other.commands().isEmpty());
    QCOMPARE(messages.count(), 0);
    QVERIFY(device.version().isEmpty());
}

void DeviceTest::firmwareToolArgumentsOfBothBoardTypes()
{
    using namespace FirmwarePackage;
    const QMap<QString, QString> avr {{Role::Conf, "/d/avrdude.conf"}, {Role::Hex, "/d/fw.hex"}};
    const QMap<QString, QString> esp {{Role::Ino, "/d/a.ino.bin"},
                                      {Role::Bootloader, "/d/a.ino.bootloader.bin"},
                                      {Role::BootApp, "/d/boot_app0.bin"},
                                      {Role::Partitions, "/d/a.ino.partitions.bin"}};
    const QStringList lines {FirmwareFlasher::arguments(AtMega2560, avr, "COM3").join(' '),
                             FirmwareFlasher::arguments(Esp32, esp, "COM4").join(' '), QString()};
    QVERIFY(TestFiles::matchesGolden(QStringLiteral("firmware_arguments.txt"),
                                     lines.join('\n').toUtf8()));
}

QTEST_GUILESS_MAIN(DeviceTest)
#include "tst_device.moc"
