#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "data/TarveloSettings.h"
#include "support/TestDataFolder.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

class ModelTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void firstStartLaysOutTheFolders();
    void titlesIgnoreCaseAndSubfolders();
    void startSelectsTheFirstTitle();
    void saveWithANewTitleRenamesTheFile();
    void cancelReadsTheFileAgain();
    void removeSelectsAnotherScript();
    void isTitleFree_data();
    void isTitleFree();
    void settingsAreLoadedFromTheDataFolder();
    void rememberedTitleIsRestoredAtTheNextStart();
    void rememberedTitleInAnotherCaseIsNotTaken();
    void failedSelectionForgetsTheTitle();

private:
    void writeScript(const QString &fileName, const QString &title, int stages = 1);

    TestDataFolder m_data;
};

void ModelTest::initTestCase()
{
    QVERIFY(m_data.isValid());
}

void ModelTest::init()
{
    m_data.clear();
}

void ModelTest::writeScript(const QString &fileName, const QString &title, int stages)
{
    TarveloScript script;
    script.setTitle(title);
    for (int i = 0; i < stages; ++i)
        script.addStage(ScriptStage::fromText(QStringLiteral("stop=1;rpt=2;[s=1,t=100,d=100]")));
    QVERIFY(m_data.saveScript(script, fileName));
}

void ModelTest::firstStartLaysOutTheFolders()
{
    TarveloModel model;
    QCOMPARE(TarveloModel::instance(), &model);
    QCOMPARE(model.recordsFolder(), m_data.records());
    QCOMPARE(model.scriptsFolder(), m_data.scripts());
    QVERIFY(QFileInfo(model.recordsFolder()).isDir());
    QVERIFY(QFileInfo(model.scriptsFolder()).isDir());
    QCOMPARE(QDir::currentPath() + QLatin1Char('/'), m_data.root());
    QVERIFY(model.scriptTitles().isEmpty());
    QVERIFY(!model.currentScript());
    QVERIFY(model.currentScriptTitle().isEmpty());
}

void ModelTest::titlesIgnoreCaseAndSubfolders()
{
    writeScript(QStringLiteral("Alpha.script"), QStringLiteral("Alpha"));
    writeScript(QStringLiteral("alpha.script"), QStringLiteral("alpha"));
    writeScript(QStringLiteral("nested/Inner.script"), QStringLiteral("Inner"));
    writeScript(QStringLiteral("  .script"), QStringLiteral("blank"));
    TarveloModel model;
    const QStringList titles = model.scriptTitles();
    QCOMPARE(titles.size(), 2);
    QCOMPARE(titles[0].compare(QStringLiteral("ALPHA"), Qt::CaseInsensitive), 0);
    QCOMPARE(titles[1], QStringLiteral("Inner"));

    // A script in a sub-folder is listed but can't be selected: the file is looked for directly.
    QSignalSpy changed(&model, &TarveloModel::scriptChanged);
    model.selectScript(QStringLiteral("Inner"));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!model.currentScript());
    QVERIFY(model.currentScriptTitle().isEmpty());
}

void ModelTest::startSelectsTheFirstTitle()
{
    writeScript(QStringLiteral("B.script"), QStringLiteral("B"), 2);
    writeScript(QStringLiteral("A.script"), QStringLiteral("Inside differs"), 3);
    TarveloModel model;
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("A"));
    QVERIFY(model.currentScript());
    // The file name is the title that counts; the one inside is the script's own.
    QCOMPARE(model.currentScript()->title(), QStringLiteral("Inside differs"));
    QCOMPARE(model.currentScript()->stages().size(), 3);

    QSignalSpy updated(&model, &TarveloModel::scriptsUpdated);
    QSignalSpy changed(&model, &TarveloModel::scriptChanged);
    TarveloScript *before = model.currentScript();
    model.reloadScripts();
    QCOMPARE(updated.count(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("A"));
    QVERIFY(model.currentScript() != before); // read anew from disk
    delete before;
}

void ModelTest::saveWithANewTitleRenamesTheFile()
{
    writeScript(QStringLiteral("Old.script"), QStringLiteral("Old"));
    TarveloModel model;
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("Old"));
    model.currentScript()->setTitle(QStringLiteral("New"));
    model.currentScript()->addStage(new ScriptStage);
    model.commitScript(true);
    QVERIFY(!QFile::exists(m_data.scripts() + QStringLiteral("Old.script")));
    QVERIFY(QFile::exists(m_data.scripts() + QStringLiteral("New.script")));
    QCOMPARE(model.scriptTitles(), QStringList {QStringLiteral("New")});
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("New"));
    QCOMPARE(model.currentScript()->stages().size(), 2);
}

void ModelTest::cancelReadsTheFileAgain()
{
    writeScript(QStringLiteral("Keep.script"), QStringLiteral("Keep"));
    TarveloModel model;
    TarveloScript *edited = model.currentScript();
    edited->setTitle(QStringLiteral("Changed"));
    edited->addStage(new ScriptStage);
    model.commitScript(false);
    QVERIFY(model.currentScript() != edited);
    QCOMPARE(model.currentScript()->title(), QStringLiteral("Keep"));
    QCOMPARE(model.currentScript()->stages().size(), 1);
    QVERIFY(!QFile::exists(m_data.scripts() + QStringLiteral("Changed.script")));
    delete edited;

    // Nothing to commit without a script.
    model.removeCurrentScript(true);
    QVERIFY(!model.currentScript());
    model.commitScript(true);
    QVERIFY(QDir(m_data.scripts()).entryList(QDir::Files).isEmpty());
}

void ModelTest::removeSelectsAnotherScript()
{
    writeScript(QStringLiteral("One.script"), QStringLiteral("One"));
    writeScript(QStringLiteral("Two.script"), QStringLiteral("Two"));
    TarveloModel model;
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("One"));
    model.removeCurrentScript(false);
    QVERIFY(model.currentScriptTitle().isEmpty());
    QCOMPARE(model.scriptTitles().size(), 2); // not refreshed yet
    model.removeCurrentScript(true);          // nothing left to delete under an empty title
    QCOMPARE(model.scriptTitles(), QStringList {QStringLiteral("Two")});
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("Two"));
}

void ModelTest::isTitleFree_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("own");
    QTest::addColumn<bool>("free");
    QTest::newRow("new title") << "Gamma"
                               << "" << true;
    QTest::newRow("taken, other case") << "alpha"
                                       << "" << false;
    QTest::newRow("taken, blanks around") << "  Beta "
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
    writeScript(QStringLiteral("Alpha.script"), QStringLiteral("Alpha"));
    writeScript(QStringLiteral("Beta.script"), QStringLiteral("Beta"));
    TarveloModel model;
    QCOMPARE(model.isTitleFree(title, own), free);
}

void ModelTest::settingsAreLoadedFromTheDataFolder()
{
    QVERIFY(m_data.writeSettings("<ComPort>7</ComPort>"));
    TarveloModel model;
    QVERIFY(model.settings());
    QCOMPARE(model.settings()->parent(), &model);
    QCOMPARE(model.settings()->getComPort(), 7);
    // A first start with no script leaves the remembered title empty, as it was: nothing is
    // written back.
    QCOMPARE(m_data.storedSettings(),
             QByteArray("<TarveloSettings><ComPort>7</ComPort></TarveloSettings>"));
}

void ModelTest::rememberedTitleIsRestoredAtTheNextStart()
{
    writeScript(QStringLiteral("Alpha.script"), QStringLiteral("Alpha"));
    writeScript(QStringLiteral("Beta.script"), QStringLiteral("Beta"));
    {
        TarveloModel model;
        QCOMPARE(model.currentScriptTitle(), QStringLiteral("Alpha"));
        QCOMPARE(model.settings()->getLastScriptTitle(), QStringLiteral("Alpha"));
        QSignalSpy remembered(model.settings(), &TarveloSettings::changedLastScriptTitle);
        QSignalSpy saved(model.settings(), &NTSettings::saved);
        model.selectScript(QStringLiteral("Beta"));
        QCOMPARE(remembered.count(), 1);
        QCOMPARE(remembered.first().at(0).toString(), QStringLiteral("Beta"));
        QCOMPARE(saved.count(), 1); // written at once, not at the end
        QVERIFY(m_data.storedSettings().contains("<LastScriptTitle>Beta</LastScriptTitle>"));

        model.selectScript(QStringLiteral("Beta")); // the same again: nothing to remember
        QCOMPARE(remembered.count(), 1);
        QCOMPARE(saved.count(), 1);
    }
    TarveloModel restarted;
    QCOMPARE(restarted.currentScriptTitle(), QStringLiteral("Beta"));
}

void ModelTest::rememberedTitleInAnotherCaseIsNotTaken()
{
    writeScript(QStringLiteral("Alpha.script"), QStringLiteral("Alpha"));
    writeScript(QStringLiteral("Beta.script"), QStringLiteral("Beta"));
    QVERIFY(m_data.writeSettings("<LastScriptTitle>beta</LastScriptTitle>"));
    TarveloModel model;
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("Alpha"));
    QCOMPARE(model.settings()->getLastScriptTitle(), QStringLiteral("Alpha"));
    QVERIFY(m_data.storedSettings().contains("<LastScriptTitle>Alpha</LastScriptTitle>"));
}

void ModelTest::failedSelectionForgetsTheTitle()
{
    writeScript(QStringLiteral("Alpha.script"), QStringLiteral("Alpha"));
    TarveloModel model;
    QCOMPARE(model.settings()->getLastScriptTitle(), QStringLiteral("Alpha"));
    model.selectScript(QStringLiteral("Missing"));
    QVERIFY(model.currentScriptTitle().isEmpty());
    QVERIFY(model.settings()->getLastScriptTitle().isEmpty());
    QVERIFY(m_data.storedSettings().contains("<LastScriptTitle></LastScriptTitle>"));
}

QTEST_GUILESS_MAIN(ModelTest)
#include "tst_model.moc"
