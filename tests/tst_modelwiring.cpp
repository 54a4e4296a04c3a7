#include "app/TarveloModel.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"
#include "device/PortCatalog.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"

#include <QSignalSpy>
#include <QtTest>

namespace {
const QString GuidA = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString GuidB = QStringLiteral("0b7e2d55-1c4f-4e2a-8d3b-9f6a5c4e3d21");

QStringList guidsOf(const QList<TarveloUser *> &users)
{
    QStringList guids;
    for (const TarveloUser *user : users)
        guids << user->getGUID();
    guids.sort();
    return guids;
}

// The names of the signals of the model and of its settings, in the order they came.
class SignalOrder : public QObject
{
public:
    explicit SignalOrder(TarveloModel &model)
    {
        watch(&model, &TarveloModel::sessionUpdated, "sessionUpdated");
        watch(&model, &TarveloModel::sessionStarted, "sessionStarted");
        watch(&model, &TarveloModel::sessionFinished, "sessionFinished");
        watch(&model, &TarveloModel::usersUpdated, "usersUpdated");
        watch(&model, &TarveloModel::userSelected, "userSelected");
        watch(&model, &TarveloModel::scriptChanged, "scriptChanged");
        watch(&model, &TarveloModel::scriptsUpdated, "scriptsUpdated");
        watch(model.settings(), &TarveloSettings::changedLastUserGuid, "changedLastUserGuid");
        watch(model.settings(), &NTSettings::saved, "saved");
    }
    // What came since the last call.
    QStringList take() { return std::exchange(m_names, {}); }

private:
    template<typename Sender, typename Signal>
    void watch(Sender *sender, Signal signal, const char *name)
    {
        connect(sender, signal, this, [this, name] { m_names << QLatin1String(name); });
    }

    QStringList m_names;
};
} // namespace

class ModelWiringTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init()
    {
        m_data.clear();
        setExtraPorts({});
    }

    void portFilterFollowsTheSettings();
    void fixedPortFromTheSettingsIsTheOnlyOneTried();
    void searchIntervalFollowsTheSettings_data();
    void searchIntervalFollowsTheSettings();
    void reloadFindsSubjectFoldersWithAUserFile();
    void reloadMakesNewObjectsAndKeepsTheSelectionUntilSelectedAgain();
    void selectUser_data();
    void selectUser();
    void unreadableSubjectIsNeverSelected();
    void rememberedSubjectIsRestoredAtTheNextStart();
    void deletedSubjectIsForgottenAtStart();
    void signalsComeInTheirOrder();

private:
    TestDataFolder m_data;
};

void ModelWiringTest::portFilterFollowsTheSettings()
{
    m_data.writeSettings("<AutoSearch>false</AutoSearch><ComPort>7</ComPort>");
    TarveloModel model;
    TarveloSettings *settings = model.settings();
    TarveloDevice *device = model.device();
    QCOMPARE(device->parent(), &model);
    QCOMPARE(device->comPort(), 7);

    settings->setComPort(12);
    QCOMPARE(device->comPort(), 12);
    settings->setAutoSearch(true);
    QCOMPARE(device->comPort(), -1);
    settings->setComPort(3); // remembered for later, no filter while searching
    QCOMPARE(device->comPort(), -1);
    settings->setAutoSearch(false);
    QCOMPARE(device->comPort(), 3);
    QVERIFY(m_data.storedSettings().contains("<ComPort>3</ComPort>"));
}

void ModelWiringTest::fixedPortFromTheSettingsIsTheOnlyOneTried()
{
    FakeBox chosen;
    FakeBox other;
    QVERIFY(chosen.open());
    QVERIFY(other.open());
    const int number = PortCatalog::portNumber(chosen.path());
    QVERIFY(PortCatalog::portNumber(other.path()) != number);
    setExtraPorts({other.path(), chosen.path()});
    m_data.writeSettings("<AutoSearch>false</AutoSearch><ComPort>" + QByteArray::number(number)
                         + "</ComPort>");

    TarveloModel model;
    QTRY_VERIFY_WITH_TIMEOUT(model.device()->isConnected(), 8000);
    QVERIFY(chosen.path().endsWith(model.device()->portName()));
    // The greetings of one pass go out together, before the winner is asked who it is.
    QTRY_VERIFY(chosen.commands().contains(DeviceProtocol::AskVersion));
    QVERIFY(other.commands().isEmpty());
}

void ModelWiringTest::searchIntervalFollowsTheSettings_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("seconds");
    QTest::newRow("not stored: the default") << QByteArray() << 5;
    QTest::newRow("stored") << QByteArray("<DeviceSearchTimeout>2</DeviceSearchTimeout>") << 2;
    QTest::newRow("zero would spin")
        << QByteArray("<DeviceSearchTimeout>0</DeviceSearchTimeout>") << 1;
    QTest::newRow("negative") << QByteArray("<DeviceSearchTimeout>-4</DeviceSearchTimeout>") << 1;
    QTest::newRow("beyond the maximum")
        << QByteArray("<DeviceSearchTimeout>3000000</DeviceSearchTimeout>") << 300;
}

void ModelWiringTest::searchIntervalFollowsTheSettings()
{
    QFETCH(QByteArray, stored);
    QFETCH(int, seconds);
    m_data.writeSettings(stored);
    TarveloModel model;
    QCOMPARE(model.device()->searchInterval(), seconds);

    model.settings()->setDeviceSearchTimeout(9);
    QCOMPARE(model.device()->searchInterval(), 9);
    model.settings()->setDeviceSearchTimeout(0);
    QCOMPARE(model.device()->searchInterval(), 1);
}

void ModelWiringTest::reloadFindsSubjectFoldersWithAUserFile()
{
    const QString a = m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    m_data.addSubject(QStringLiteral("Петров"), GuidB);
    QVERIFY(QDir().mkpath(m_data.records() + QStringLiteral("No user file")));
    // A dot folder is skipped even with a good subject file in it.
    QVERIFY(QDir().mkpath(m_data.records() + QStringLiteral(".hidden")));
    QVERIFY(QFile::copy(a + QStringLiteral("User.xml"),
                        m_data.records() + QStringLiteral(".hidden/User.xml")));
    // Unreadable subject files: garbage, and a folder that bears the file's name.
    QVERIFY(QDir().mkpath(m_data.records() + QStringLiteral("Broken")));
    const QByteArray garbage = QByteArray(1, '\0') + "\xff<TarveloUser><LastName>Сидоров";
    const QString broken = m_data.records() + QStringLiteral("Broken/User.xml");
    QVERIFY(TestFiles::write(broken, garbage));
    QVERIFY(QDir().mkpath(m_data.records() + QStringLiteral("Odd/User.xml")));
    // A session file directly in the folder is no subject.
    QVERIFY(TestFiles::write(m_data.records() + QStringLiteral("2024.03.05-14.20.31.session"), {}));

    TarveloModel model;
    const QList<TarveloUser *> users = model.users();
    // The two unreadable ones get a GUID of their own.
    const QStringList guids = guidsOf(users);
    QCOMPARE(guids.size(), 4);
    QVERIFY(guids.contains(GuidA) && guids.contains(GuidB) && !guids.contains(QString()));
    QStringList names;
    for (const TarveloUser *user : users) {
        names << user->fullName(false);
        QVERIFY(!user->parent());
    }
    names.sort();
    QCOMPARE(
        names,
        (QStringList {QString(), QString(), QStringLiteral("Иванов"), QStringLiteral("Петров")}));
    // Reading a subject doesn't write it: the broken file stays for a person to look at.
    QCOMPARE(TestFiles::read(broken), garbage);
}

void ModelWiringTest::reloadMakesNewObjectsAndKeepsTheSelectionUntilSelectedAgain()
{
    m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    TarveloModel model;
    model.selectUser(GuidA);
    TarveloUser *before = model.currentUser();
    QVERIFY(before);

    m_data.addSubject(QStringLiteral("Петров"), GuidB);
    QSignalSpy updated(&model, &TarveloModel::usersUpdated);
    QSignalSpy selected(&model, &TarveloModel::userSelected);
    model.reloadUsers();
    QCOMPARE(updated.count(), 1);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(guidsOf(model.users()), (QStringList {GuidB, GuidA}));
    QVERIFY(!model.users().contains(before));
    QCOMPARE(model.currentUser(), before); // alive, from the old list
    QCOMPARE(before->getGUID(), GuidA);

    model.selectUser(GuidA);
    QVERIFY(model.currentUser() != before);
    QVERIFY(model.users().contains(model.currentUser()));
    delete before;
}

void ModelWiringTest::selectUser_data()
{
    QTest::addColumn<QString>("guid");
    QTest::addColumn<QString>("selected");
    QTest::newRow("exact") << GuidA << GuidA;
    QTest::newRow("the other one") << GuidB << GuidB;
    QTest::newRow("upper case") << GuidA.toUpper() << QString();
    QTest::newRow("with braces") << "{" + GuidA + "}" << QString();
    QTest::newRow("with a blank") << GuidA + " " << QString();
    QTest::newRow("unknown") << "00000000-0000-0000-0000-000000000000" << QString();
    QTest::newRow("empty") << QString() << QString();
}

void ModelWiringTest::selectUser()
{
    QFETCH(QString, guid);
    QFETCH(QString, selected);
    m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    m_data.addSubject(QStringLiteral("Иванов"), GuidB); // the same name in another folder
    m_data.writeSettings("<LastUserGuid>" + GuidB.toUtf8() + "</LastUserGuid>");
    TarveloModel model;
    QCOMPARE(model.currentUser()->getGUID(), GuidB);

    QSignalSpy selectedSignal(&model, &TarveloModel::userSelected);
    model.selectUser(guid);
    QCOMPARE(selectedSignal.count(), 1);
    QCOMPARE(model.currentUser() ? model.currentUser()->getGUID() : QString(), selected);
    QCOMPARE(model.settings()->getLastUserGuid(), selected);
    QVERIFY(
        m_data.storedSettings().contains("<LastUserGuid>" + selected.toUtf8() + "</LastUserGuid>"));
}

void ModelWiringTest::unreadableSubjectIsNeverSelected()
{
    QVERIFY(QDir().mkpath(m_data.records() + QStringLiteral("Broken")));
    QVERIFY(TestFiles::write(m_data.records() + QStringLiteral("Broken/User.xml"), "not xml"));
    TarveloModel model; // nothing remembered: the empty GUID is asked for at start
    QCOMPARE(model.users().size(), 1);
    QVERIFY(!model.users().constFirst()->getGUID().isEmpty());
    QVERIFY(!model.currentUser());
    model.selectUser(QString());
    QVERIFY(!model.currentUser());
}

void ModelWiringTest::rememberedSubjectIsRestoredAtTheNextStart()
{
    m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    m_data.addSubject(QStringLiteral("Петров"), GuidB);
    {
        TarveloModel model;
        QVERIFY(!model.currentUser());
        model.selectUser(GuidB);
        QVERIFY(m_data.storedSettings().contains("<LastUserGuid>" + GuidB.toUtf8()));
    }
    TarveloModel restarted;
    QVERIFY(restarted.currentUser());
    QCOMPARE(restarted.currentUser()->getGUID(), GuidB);
    QCOMPARE(restarted.currentUser()->getLastName(), QStringLiteral("Петров"));
}

void ModelWiringTest::deletedSubjectIsForgottenAtStart()
{
    const QString folder = m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    m_data.writeSettings("<LastUserGuid>" + GuidA.toUtf8() + "</LastUserGuid>");
    QVERIFY(QDir(folder).removeRecursively());
    TarveloModel model;
    QVERIFY(!model.currentUser());
    QVERIFY(model.settings()->getLastUserGuid().isEmpty());
    QVERIFY(m_data.storedSettings().contains("<LastUserGuid></LastUserGuid>"));
}

void ModelWiringTest::signalsComeInTheirOrder()
{
    m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    TarveloModel model;
    SignalOrder order(model);

    model.reloadUsers();
    QCOMPARE(order.take(), QStringList {"usersUpdated"});
    model.selectUser(GuidA);
    QCOMPARE(order.take(), (QStringList {"changedLastUserGuid", "saved", "userSelected"}));
    model.selectUser(GuidA); // nothing new to remember
    QCOMPARE(order.take(), QStringList {"userSelected"});

    model.handleDeviceMessage(QStringLiteral("scriptStarted=Проба"));
    QCOMPARE(order.take(), (QStringList {"sessionUpdated", "sessionStarted"}));
    for (const char *report :
         {"stageStarted=0", "stageItems=1", "r=400;b=3;s=3;t=900;d=100", "stageAction=+1"}) {
        model.handleDeviceMessage(QString::fromUtf8(report));
        QCOMPARE(order.take(), QStringList {"sessionUpdated"});
    }
    // A subject chosen during the run changes nothing in the session's signals.
    model.selectUser(QString());
    QCOMPARE(order.take(), (QStringList {"changedLastUserGuid", "saved", "userSelected"}));
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
    QCOMPARE(order.take(), (QStringList {"sessionUpdated", "sessionFinished"}));
}

QTEST_GUILESS_MAIN(ModelWiringTest)
#include "tst_modelwiring.moc"
