#include "device/PortCatalog.h"

#include <QtTest>

class PortCatalogTest : public QObject
{
    Q_OBJECT
private slots:
    void portNumberFollowsTheWindowsRuleThenTrailingDigits_data();
    void portNumberFollowsTheWindowsRuleThenTrailingDigits();
    void excludedDescriptions_data();
    void excludedDescriptions();
    void extraPortsComeFromTheEnvironment();
    void extraPortsFollowTheSystemList();
};

void PortCatalogTest::portNumberFollowsTheWindowsRuleThenTrailingDigits_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::newRow("COM7") << "COM7" << 7;
    QTest::newRow("COM12") << "COM12" << 12;
    QTest::newRow("COM without digits") << "COM" << 0;
    QTest::newRow("lower-case com is no COM") << "com5" << 5;
    QTest::newRow("ttyUSB3") << "ttyUSB3" << 3;
    QTest::newRow("ttyS0") << "ttyS0" << 0;
    QTest::newRow("pts path") << "/dev/pts/7" << 7;
    QTest::newRow("two-digit pts") << "/dev/pts/42" << 42;
    QTest::newRow("no digits") << "ttyACM" << 0;
    QTest::newRow("digits not at the end") << "tty3x" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("too long for a number") << "tty99999999999999" << 0;
}

void PortCatalogTest::portNumberFollowsTheWindowsRuleThenTrailingDigits()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QCOMPARE(PortCatalog::portNumber(name), number);
}

void PortCatalogTest::excludedDescriptions_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<bool>("excluded");
    QTest::newRow("built-in port") << QStringLiteral("Последовательный порт (COM1)") << true;
    QTest::newRow("bluetooth") << "Standard Serial over Bluetooth link" << true;
    QTest::newRow("case matters") << "bluetooth" << false;
    QTest::newRow("usb serial") << "USB-SERIAL CH340" << false;
    QTest::newRow("none") << "" << false;
}

void PortCatalogTest::excludedDescriptions()
{
    QFETCH(QString, description);
    QFETCH(bool, excluded);
    QCOMPARE(PortCatalog::isExcluded(description), excluded);
}

void PortCatalogTest::extraPortsComeFromTheEnvironment()
{
    const QString separator = QDir::listSeparator();
    qputenv(PortCatalog::ExtraPortsVariable,
            QStringLiteral("/dev/pts/3%1%1/tmp/box%1").arg(separator).toUtf8());
    QCOMPARE(PortCatalog::extraPorts(), (QStringList {"/dev/pts/3", "/tmp/box"}));
    qunsetenv(PortCatalog::ExtraPortsVariable);
    QVERIFY(PortCatalog::extraPorts().isEmpty());
}

void PortCatalogTest::extraPortsFollowTheSystemList()
{
    qputenv(PortCatalog::ExtraPortsVariable, QByteArrayLiteral("/tmp/first"));
    const QList<PortCandidate> candidates = PortCatalog::candidates();
    QVERIFY(!candidates.isEmpty());
    QCOMPARE(candidates.constLast().name, QStringLiteral("/tmp/first"));
    QVERIFY(candidates.constLast().description.isEmpty());
    qunsetenv(PortCatalog::ExtraPortsVariable);
}

QTEST_GUILESS_MAIN(PortCatalogTest)
#include "tst_portcatalog.moc"
