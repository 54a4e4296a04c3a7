#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/TestDataFolder.h"

#include <QSignalSpy>
#include <QtTest>

namespace {
const QString GuidA = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString GuidB = QStringLiteral("0b7e2d55-1c4f-4e2a-8d3b-9f6a5c4e3d21");
const QStringList OneStage {QStringLiteral("stop=1;rpt=2;[s=1,t=100,d=100]")};

QStringList guidsOf(const QList<TarveloUser *> &users)
{
    QStringList guids;
    for (const TarveloUser *user : users)
        guids << user->getGUID();
    guids.sort();
    return guids;
}
} // namespace

class ModelTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init()
    {
        m_data.clear();
        setExtraPorts({});
    }
    void firstStartLaysOutTheFolders();
    void scriptTitlesComeFromTheFileNames();
    void rememberedScriptIsSelectedAtTheNextStart();
    void saveWithANewTitleRenamesAndCancelReadsAgain();
    void isTitleFree_data();
    void isTitleFree();
    void subjectsAreTheFoldersWithAUserFile();
    void selectUser_data();
    void selectUser();
    void rememberedSubjectIsSelectedAtTheNextStart();
    void portAndSearchIntervalFollowTheSettings_data();
    void portAndSearchIntervalFollowTheSettings();

private:
    TestDataFolder m_data;
};

void ModelTest::firstStartLaysOutTheFolders()
{
    TarveloModel model;
    QCOMPARE(TarveloModel::instance(), &model);
    QCOMPARE(model.recordsFolder(), m_data.records());
    QVERIFY(QFileInfo(m_data.records()).isDir() && QFileInfo(m_data.scripts()).isDir());
    // Settings.xml is named relative to the working folder.
    QCOMPARE(QDir::currentPath() + '/', m_data.root());
    QCOMPARE(model.settings()->parent(), &model);
    QVERIFY(model.scriptTitles().isEmpty() && !model.currentScript());
    // Nothing was chosen and so nothing is written.
    QVERIFY(!QFile::exists(m_data.settingsFile()));
}

void ModelTest::scriptTitlesComeFromTheFileNames()
{
    // Titles are unique whatever their case, blank ones are none, sub-folders are searched.
    QVERIFY(m_data.writeScript(QStringLiteral("Inside"), OneStage));
    QVERIFY(QDir().mkpath(m_data.scripts() + "nested"));
    for (const char *name : {"Alpha.script", "alpha.script", "  .script", "nested/Inner.script"})
        QVERIFY(QFile::copy(m_data.scripts() + "Inside.script", m_data.scripts() + name));
    QVERIFY(QFile::remove(m_data.scripts() + "Inside.script"));
    TarveloModel model;
    QCOMPARE(model.scriptTitles().size(), 2);
    QCOMPARE(model.scriptTitles().last(), QStringLiteral("Inner"));
    // The first title is taken; the file name is the title that counts.
    QCOMPARE(model.currentScriptTitle().compare(QStringLiteral("ALPHA"), Qt::CaseInsensitive), 0);
    QCOMPARE(model.currentScript()->title(), QStringLiteral("Inside"));

    // A script in a sub-folder is listed but can't be selected: the file is looked for directly.
    QSignalSpy changed(&model, &TarveloModel::scriptChanged);
    model.selectScript(QStringLiteral("Inner"));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!model.currentScript() && model.currentScriptTitle().isEmpty());
    // A failed selection forgets the remembered title at once.
    QVERIFY(m_data.storedSettings().contains("<LastScriptTitle></LastScriptTitle>"));
}

void ModelTest::rememberedScriptIsSelectedAtTheNextStart()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Alpha"), OneStage));
    QVERIFY(m_data.writeScript(QStringLiteral("Beta"), OneStage));
    QString other;
    {
        TarveloModel model;
        // The one not taken first, whichever that is.
        other = model.currentScriptTitle() == "Alpha" ? "Beta" : "Alpha";
        QSignalSpy saved(model.settings(), &NTSettings::saved);
        model.selectScript(other);
        model.selectScript(other); // the same again: nothing to remember
        QCOMPARE(saved.count(), 1);
        QVERIFY(m_data.storedSettings().contains("<LastScriptTitle>" + other.toUtf8() + "</"));
    }
    TarveloModel restarted;
    QCOMPARE(restarted.currentScriptTitle(), other);
    // A reload reads the script anew.
    TarveloScript *before = restarted.currentScript();
    restarted.reloadScripts();
    QCOMPARE(restarted.currentScriptTitle(), other);
    QVERIFY(restarted.currentScript() != before);
    delete before;
}

void ModelTest::saveWithANewTitleRenamesAndCancelReadsAgain()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Old"), OneStage));
    TarveloModel model;
    TarveloScript *edited = model.currentScript();
    edited->setTitle(QStringLiteral("Changed"));
    edited->addStage(new ScriptStage);
    model.commitScript(false);
    QCOMPARE(model.currentScript()->title(), QStringLiteral("Old"));
    QCOMPARE(model.currentScript()->stages().size(), 1);
    delete edited;

    model.currentScript()->setTitle(QStringLiteral("New"));
    model.currentScript()->addStage(new ScriptStage);
    model.commitScript(true);
    QCOMPARE(QDir(m_data.scripts()).entryList(QDir::Files), QStringList {"New.script"});
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("New"));
    QCOMPARE(model.currentScript()->stages().size(), 2);

    model.removeCurrentScript(true);
    QVERIFY(!model.currentScript());
    model.commitScript(true); // nothing to commit without a script
    QVERIFY(QDir(m_data.scripts()).entryList(QDir::Files).isEmpty());
}

void ModelTest::isTitleFree_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("own");
    QTest::addColumn<bool>("free");
    QTest::newRow("new title") << "Gamma"
                               << "" << true;
    QTest::newRow("taken, other case, blanks around") << " alpha "
                                                      << "" << false;
    QTest::newRow("own title passes") << "ALPHA"
                                      << "alpha" << true;
    QTest::newRow("own does not free another") << "Beta"
                                               << "Alpha" << false;
    QTest::newRow("empty") << "   "
                           << "" << false;
}

void ModelTest::isTitleFree()
{
    QFETCH(QString, title);
    QFETCH(QString, own);
    QFETCH(bool, free);
    QVERIFY(m_data.writeScript(QStringLiteral("Alpha"), OneStage));
    QVERIFY(m_data.writeScript(QStringLiteral("Beta"), OneStage));
    TarveloModel model;
    QCOMPARE(model.isTitleFree(title, own), free);
}

void ModelTest::subjectsAreTheFoldersWithAUserFile()
{
    const QString a = m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    QVERIFY(QDir().mkpath(m_data.records() + "No user file"));
    // A dot folder is skipped even with a good subject file in it.
    QVERIFY(QDir().mkpath(m_data.records() + ".hidden"));
    QVERIFY(QFile::copy(a + "User.xml", m_data.records() + ".hidden/User.xml"));
    // Unreadable subject files: garbage, and a folder that bears the file's name.
    QVERIFY(QDir().mkpath(m_data.records() + "Broken"));
    QVERIFY(TestFiles::write(m_data.records() + "Broken/User.xml", "\xff<TarveloUser><Last"));
    QVERIFY(QDir().mkpath(m_data.records() + "Odd/User.xml"));
    TarveloModel model;
    QCOMPARE(guidsOf(model.users()), (QStringList {QString(), QString(), GuidA}));
    // Reading a subject doesn't write it: the broken file stays for a person to look at.
    QCOMPARE(TestFiles::read(m_data.records() + "Broken/User.xml"),
             QByteArray("\xff<TarveloUser><Last"));
    // An unreadable subject has no GUID, and asking for none never selects it.
    model.selectUser(QString());
    QVERIFY(!model.currentUser());

    m_data.addSubject(QStringLiteral("Петров"), GuidB);
    model.selectUser(GuidA);
    TarveloUser *before = model.currentUser();
    QSignalSpy selected(&model, &TarveloModel::userSelected);
    model.reloadUsers();
    QCOMPARE(selected.count(), 0);
    QCOMPARE(guidsOf(model.users()), (QStringList {QString(), QString(), GuidB, GuidA}));
    // The selection stays alive, from the old list, until chosen again.
    QCOMPARE(model.currentUser(), before);
    model.selectUser(GuidA);
    QVERIFY(model.users().contains(model.currentUser()));
    delete before;
}

void ModelTest::selectUser_data()
{
    QTest::addColumn<QString>("guid");
    QTest::addColumn<QString>("selected");
    QTest::newRow("the other one") << GuidA << GuidA;
    QTest::newRow("upper case") << GuidA.toUpper() << QString();
    QTest::newRow("with braces") << "{" + GuidA + "}" << QString();
    QTest::newRow("unknown") << "00000000-0000-0000-0000-000000000000" << QString();
    QTest::newRow("empty") << QString() << QString();
}

void ModelTest::selectUser()
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
    QVERIFY(m_data.storedSettings().contains("<LastUserGuid>" + selected.toUtf8() + "</"));
}

void ModelTest::rememberedSubjectIsSelectedAtTheNextStart()
{
    m_data.addSubject(QStringLiteral("Иванов"), GuidA);
    const QString folder = m_data.addSubject(QStringLiteral("Петров"), GuidB);
    {
        TarveloModel model;
        QVERIFY(!model.currentUser());
        model.selectUser(GuidB);
    }
    {
        TarveloModel restarted;
        QCOMPARE(restarted.currentUser()->getLastName(), QStringLiteral("Петров"));
    }
    // A subject deleted meanwhile is forgotten at the start.
    QVERIFY(QDir(folder).removeRecursively());
    TarveloModel model;
    QVERIFY(!model.currentUser());
    QVERIFY(m_data.storedSettings().contains("<LastUserGuid></LastUserGuid>"));
}

void ModelTest::portAndSearchIntervalFollowTheSettings_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("seconds");
    QTest::newRow("nothing stored: every port, the default") << QByteArray() << -1 << 5;
    QTest::newRow("a fixed port") << QByteArray(
        "<AutoSearch>false</AutoSearch><ComPort>7</ComPort>")
                                  << 7 << 5;
    QTest::newRow("zero would spin")
        << QByteArray("<DeviceSearchTimeout>0</DeviceSearchTimeout>") << -1 << 1;
    QTest::newRow("beyond the maximum")
        << QByteArray("<DeviceSearchTimeout>3000000</DeviceSearchTimeout>") << -1 << 300;
}

void ModelTest::portAndSearchIntervalFollowTheSettings()
{
    QFETCH(QByteArray, stored);
    QFETCH(int, port);
    QFETCH(int, seconds);
    m_data.writeSettings(stored);
    TarveloModel model;
    TarveloSettings *settings = model.settings();
    TarveloDevice *device = model.device();
    QCOMPARE(device->comPort(), port);
    QCOMPARE(device->searchInterval(), seconds);

    settings->setDeviceSearchTimeout(9);
    QCOMPARE(device->searchInterval(), 9);
    settings->setDeviceSearchTimeout(-4);
    QCOMPARE(device->searchInterval(), 1);
    settings->setAutoSearch(false);
    settings->setComPort(12);
    QCOMPARE(device->comPort(), 12);
    settings->setAutoSearch(true);
    settings->setComPort(3); // remembered for later, no filter while searching
    QCOMPARE(device->comPort(), -1);
    settings->setAutoSearch(false);
    QCOMPARE(device->comPort(), 3);
}

QTEST_GUILESS_MAIN(ModelTest)
#include "tst_model.moc"
