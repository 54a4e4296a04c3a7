#include "device/PortPermission.h"
#include "device/TarveloDevice.h"
#include "device/widgets/TarveloStatusBar.h"
#include "support/FakeBox.h"

#include <QFileInfo>
#include <QLabel>
#include <QSerialPort>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

// Root opens any file whatever its mode: the test takes the effective ids of "nobody", without
// root's groups, meanwhile.
class NotRoot
{
public:
    NotRoot()
        : m_wasRoot(geteuid() == 0)
        , m_groups(getgroups(0, nullptr))
    {
        getgroups(int(m_groups.size()), m_groups.data());
        if (m_wasRoot
            && (setgroups(0, nullptr) != 0 || setegid(Nobody) != 0 || seteuid(Nobody) != 0))
            qFatal("cannot drop root");
    }
    ~NotRoot()
    {
        if (m_wasRoot
            && (seteuid(0) != 0 || setegid(0) != 0
                || setgroups(m_groups.size(), m_groups.data()) != 0))
            qFatal("cannot take root back");
    }

private:
    static constexpr uid_t Nobody = 65534;
    bool m_wasRoot;
    std::vector<gid_t> m_groups;
};

class PortRefusalTest : public QObject
{
    Q_OBJECT
private slots:
    void refusedPortIsToldOnceAndTheSearchGoesOn_data();
    void refusedPortIsToldOnceAndTheSearchGoesOn();
};

void PortRefusalTest::refusedPortIsToldOnceAndTheSearchGoesOn_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("heldElsewhere");
    QTest::addColumn<QString>("group"); // "*" for the file's own group, empty for not told
    QTest::newRow("no rights at all") << 0000 << false << QString(PortPermission::DefaultGroup);
    QTest::newRow("rights for its group only") << 0060 << false << QStringLiteral("*");
    QTest::newRow("held by another program") << 0666 << true << QString();
}

void PortRefusalTest::refusedPortIsToldOnceAndTheSearchGoesOn()
{
    QFETCH(int, mode);
    QFETCH(bool, heldElsewhere);
    QFETCH(QString, group);
    FakeBox refused {QString()}, box;
    QVERIFY(refused.open() && box.open());
    QCOMPARE(chmod(qPrintable(refused.path()), mode), 0);
    QCOMPARE(chmod(qPrintable(box.path()), 0666), 0);
    if (group == QLatin1String("*"))
        group = QFileInfo(refused.path()).group();
    QSerialPort holder(refused.path());
    QVERIFY(!heldElsewhere || holder.open(QIODevice::ReadWrite));
    const NotRoot notRoot;
    qputenv("TARVELO_EXTRA_PORTS", refused.path().toUtf8());

    TarveloDevice device(-1);
    QSignalSpy refusals(&device, &TarveloDevice::portRefused);
    const TarveloStatusBar bar(&device);
    const auto *notice = bar.findChild<QLabel *>(QStringLiteral("portRefusal"));
    // The name QSerialPort gives a device path under /dev.
    const QString name = refused.path().mid(int(qstrlen("/dev/")));
    // Other ports of the machine may be refused as well: only this one counts.
    const auto toldOfIt = [&] {
        return std::count_if(refusals.cbegin(), refusals.cend(),
                             [&](const QList<QVariant> &told) { return told.value(0) == name; });
    };
    if (!group.isEmpty()) {
        QTRY_COMPARE(toldOfIt(), 1);
        QCOMPARE(device.refusedPorts().value(name), group);
        QVERIFY(notice->isVisibleTo(&bar));
        QVERIFY(notice->text().contains(name) && notice->text().contains(group));
    }

    qputenv("TARVELO_EXTRA_PORTS", (refused.path() + ':' + box.path()).toUtf8());
    device.setSearchEnabled(true);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), 8000);
    QCOMPARE(toldOfIt(), group.isEmpty() ? 0 : 1);
    QCOMPARE(device.refusedPorts().contains(name), !group.isEmpty());
    QVERIFY(!notice->isVisibleTo(&bar));
}

QTEST_MAIN(PortRefusalTest)
#include "tst_portrefusal.moc"
