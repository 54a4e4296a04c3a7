#include "device/FirmwareFlasher.h"
#include "device/FirmwarePackage.h"
#include "support/TestFiles.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {
// A stand-in for a flashing tool: prints its arguments one per line, then the given output,
// and exits with the given code.
bool writeStandInTool(const QString &path, const QString &output, int exitCode)
{
    const QString script = QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\"\ncat <<'END'\n%1\nEND\n"
                                          "exit %2\n")
                               .arg(output)
                               .arg(exitCode);
    return TestFiles::write(path, script.toUtf8())
        && QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}
} // namespace

class FirmwareTest : public QObject
{
    Q_OBJECT
private slots:
    void argumentsOfBothBoardTypes();
    void verdictComesFromTheToolsWords_data();
    void verdictComesFromTheToolsWords();
    void portsAreFlashedOneAfterAnotherWithWholeArguments();
};

void FirmwareTest::argumentsOfBothBoardTypes()
{
    using namespace FirmwarePackage;
    const QMap<QString, QString> avr {{Role::Conf, "/d/avrdude.conf"}, {Role::Hex, "/d/fw.hex"}};
    QCOMPARE(FirmwareFlasher::arguments(AtMega2560, avr, "COM3"),
             QStringList({"\"-C/d/avrdude.conf\"", "-v", "-V", "-patmega2560", "-cwiring",
                          "\"-PCOM3\"", "-b115200", "-D", "\"-Uflash:w:/d/fw.hex:i\""}));
    const QMap<QString, QString> esp {{Role::Ino, "/d/a.ino.bin"},
                                      {Role::Bootloader, "/d/a.ino.bootloader.bin"},
                                      {Role::BootApp, "/d/boot_app0.bin"},
                                      {Role::Partitions, "/d/a.ino.partitions.bin"}};
    QCOMPARE(FirmwareFlasher::arguments(Esp32, esp, "COM4"),
             QStringList({"--chip",       "esp32",
                          "--port",       "\"COM4\"",
                          "--baud",       "1500000",
                          "--before",     "default_reset",
                          "--after",      "hard_reset",
                          "write_flash",  "-z",
                          "--flash_mode", "dio",
                          "--flash_freq", "80m",
                          "--flash_size", "4MB",
                          "0x1000",       "\"/d/a.ino.bootloader.bin\"",
                          "0x8000",       "\"/d/a.ino.partitions.bin\"",
                          "0xe000",       "\"/d/boot_app0.bin\"",
                          "0x10000",      "\"/d/a.ino.bin\""}));
}

void FirmwareTest::verdictComesFromTheToolsWords_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("errors");
    QTest::newRow("clean run") << "Writing | ####\navrdude done.  Thank you." << 0 << false;
    QTest::newRow("failed in capitals") << "flash verification FAILED" << 0 << true;
    QTest::newRow("invalid in a harmless line") << "note: invalid fuse ignored" << 0 << true;
    QTest::newRow("can't") << "avrdude: can't open device" << 0 << true;
    // A tool that ends badly without a word has not written the board either.
    QTest::newRow("silent failure") << "" << 1 << true;
    QTest::newRow("tool missing") << "" << -1 << true;
}

void FirmwareTest::verdictComesFromTheToolsWords()
{
    QFETCH(QString, output);
    QFETCH(int, exitCode);
    QFETCH(bool, errors);
    QTemporaryDir dir;
    const QString tool = dir.filePath("avrdude");
    QVERIFY(exitCode < 0 || writeStandInTool(tool, output, exitCode));
    FirmwareFlasher flasher(FirmwarePackage::AtMega2560, "self-avrdude", {{"avrdude", tool}});
    QSignalSpy done(&flasher, &FirmwareFlasher::portDone);
    QSignalSpy finished(&flasher, &FirmwareFlasher::finished);
    flasher.flash({"ttyUSB0"});
    QVERIFY(finished.wait());
    QCOMPARE(done.count(), 1);
    QCOMPARE(done.at(0).at(1).toBool(), errors);
}

void FirmwareTest::portsAreFlashedOneAfterAnotherWithWholeArguments()
{
    // Blanks in the data folder's path must not cut an argument in two.
    QTemporaryDir dir;
    const QString folder = dir.filePath("My Documents/firmware-1234/");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(writeStandInTool(folder + "avrdude", "avrdude done.", 0));
    const QMap<QString, QString> files {{"conf", folder + "avrdude.conf"},
                                        {"hex", folder + "box fw.hex"},
                                        {"avrdude", folder + "avrdude"}};
    FirmwareFlasher flasher(FirmwarePackage::AtMega2560, "self-avrdude", files);
    QSignalSpy done(&flasher, &FirmwareFlasher::portDone);
    QSignalSpy finished(&flasher, &FirmwareFlasher::finished);
    QString output;
    connect(&flasher, &FirmwareFlasher::output, this, [&](const QString &text) { output += text; });
    flasher.flash({"/dev/pts/77", "ttyUSB1"});
    QVERIFY(finished.wait());

    QCOMPARE(done.count(), 2);
    QCOMPARE(done.at(0).at(0).toString(), "/dev/pts/77");
    QCOMPARE(done.at(1).at(0).toString(), "ttyUSB1");
    QString expected;
    for (const QString &port : QStringList {"/dev/pts/77", "/dev/ttyUSB1"}) {
        const QStringList arguments {"-C" + folder + "avrdude.conf",
                                     "-v",
                                     "-V",
                                     "-patmega2560",
                                     "-cwiring",
                                     "-P" + port,
                                     "-b115200",
                                     "-D",
                                     "-Uflash:w:" + folder + "box fw.hex:i",
                                     "avrdude done.",
                                     ""};
        expected += arguments.join('\n');
    }
    QCOMPARE(output, expected);
}

QTEST_GUILESS_MAIN(FirmwareTest)
#include "tst_firmware.moc"
