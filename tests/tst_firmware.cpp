#include "device/FirmwareFlasher.h"
#include "device/FirmwarePackage.h"

#include <QtTest>

class FirmwareTest : public QObject
{
    Q_OBJECT
private slots:
    void argumentsOfBothBoardTypes();
};

void FirmwareTest::argumentsOfBothBoardTypes()
{
    using namespace FirmwarePackage;
    const QMap<QString, QString> avr {{Role::Conf, "/d/avrdude.conf"}, {Role::Hex, "/d/fw.hex"}};
    QCOMPARE(FirmwareFlasher::arguments(AtMega2560, avr, "COM3").join(' '),
             R"("-C/d/avrdude.conf" -v -V -patmega2560 -cwiring "-PCOM3" -b115200 -D )"
             R"("-Uflash:w:/d/fw.hex:i")");
    const QMap<QString, QString> esp {{Role::Ino, "/d/a.ino.bin"},
                                      {Role::Bootloader, "/d/a.ino.bootloader.bin"},
                                      {Role::BootApp, "/d/boot_app0.bin"},
                                      {Role::Partitions, "/d/a.ino.partitions.bin"}};
    const QStringList espArguments = FirmwareFlasher::arguments(Esp32, esp, "COM4");
    QCOMPARE(espArguments.size(), 26);
    QCOMPARE(espArguments.join(' '),
             R"(--chip esp32 --port "COM4" --baud 1500000 --before default_reset --after )"
             R"(hard_reset write_flash -z --flash_mode dio --flash_freq 80m --flash_size 4MB )"
             R"(0x1000 "/d/a.ino.bootloader.bin" 0x8000 "/d/a.ino.partitions.bin" )"
             R"(0xe000 "/d/boot_app0.bin" 0x10000 "/d/a.ino.bin")");
}

QTEST_GUILESS_MAIN(FirmwareTest)
#include "tst_firmware.moc"
