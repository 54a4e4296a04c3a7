#include "app/TarveloModel.h"
#include "data/TarveloCommon.h"
#include "data/TarveloScript.h"
#include "device/TarveloDevice.h"
#include "foundation/WriteFailures.h"
#include "frame/PlayScriptStopSessionButton.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/ModalAnswerer.h"
#include "support/TestDataFolder.h"
#include "ui/DeleteUpDownWidget.h"
#include "ui/MainWindow.h"
#include "ui/PageScript.h"
#include "ui/ScriptCreatorWidget.h"
#include "ui/TarveloScriptEditor.h"
#include "ui/TarveloStageEditor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

#include <memory>

namespace {
const QStringList TrialStages {
    QStringLiteral("stop=5;s-2=;s-1=;s-0=2;s+1=1;s+2=;rpt=3;[s=1,t=1500,d=1000][s=2,t=1500,d=900]"),
    QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=1;[s=3,t=1000,d=800]"),
};

// Files in the scripts folder with their bytes, read without the program's own helpers.
QMap<QString, QByteArray> scriptFiles(const QString &folder)
{
    QMap<QString, QByteArray> files;
    for (const QString &name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        files.insert(name, TestFiles::read(folder + name));
    return files;
}

// A stage whose steps carry the stimuli 0, 1, 2, ... so that their order can be read back.
std::unique_ptr<ScriptStage> numberedStage(int steps)
{
    auto stage = std::make_unique<ScriptStage>();
    for (int i = 0; i < steps; ++i) {
        stage->steps << new ScriptStep;
        stage->steps.constLast()->stimulus = i % TarveloCommon::StimulusCount;
    }
    return stage;
}

QList<int> stimuli(const ScriptStage &stage)
{
    QList<int> order;
    for (const ScriptStep *step : stage.steps)
        order << step->stimulus;
    return order;
}

// Clicks delete (0), up (1) or down (2) of a row, as the operator does.
void clickRowButton(TarveloStageEditor &editor, int row, int button)
{
    editor.actionWidget(row)->findChildren<QPushButton *>().at(button)->click();
}

// The complaints a window shows in its red labels.
QStringList complaints(const QWidget &window)
{
    QStringList shown;
    for (const QLabel *label : window.findChildren<QLabel *>(QStringLiteral("labelInvalid"))) {
        if (!label->isHidden())
            shown << label->text();
    }
    return shown;
}
} // namespace

class ScriptPageTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void thirtyStepsHideTheAddButton();
    void rowsMoveByTheirOwnRule_data()
    {
        TestFiles::addRows(QStringLiteral("tables/stage_rows.txt"));
    }
    void rowsMoveByTheirOwnRule();
    void longTimesShowCutAndStayStored();
    void createdScriptIsFiledWithTheSettings();
    void oneStimulusCantFillTwoSteps();
    void titleIsCheckedWhereItIsTyped_data()
    {
        TestFiles::addRows(QStringLiteral("tables/script_titles.txt"));
    }
    void titleIsCheckedWhereItIsTyped();
    void failedWriteKeepsTheOldFileAndTheEdits();
    void cancelDropsTheEditsAndTheStages();
    void deleteAsksFirst_data() { TestFiles::addRows(QStringLiteral("tables/script_delete.txt")); }
    void deleteAsksFirst();
    void playIsHeldBackWhileEditingAndWithoutSteps();
    void leavingWithUnsavedEditsAsks_data()
    {
        TestFiles::addRows(QStringLiteral("tables/script_leave.txt"));
    }
    void leavingWithUnsavedEditsAsks();

private:
    TestDataFolder m_data;
    std::unique_ptr<ModalAnswerer> m_answers;
};

void ScriptPageTest::initTestCase()
{
    QVERIFY(m_data.isValid());
}

void ScriptPageTest::init()
{
    m_data.clear();
    setExtraPorts({});
    m_answers = std::make_unique<ModalAnswerer>();
    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), TrialStages));
    QVERIFY(m_data.writeScript(QStringLiteral("Другой"), TrialStages));
}

void ScriptPageTest::titleIsCheckedWhereItIsTyped()
{
    QFETCH(QString, title);
    QFETCH(QString, savedAs);

    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    page.editButton()->click();
    page.editor()->titleEdit()->setText(title);
    QLabel *label = page.editor()->titleProblemLabel();

    if (savedAs.isEmpty()) {
        QVERIFY(!page.saveButton()->isEnabled());
        QVERIFY(!label->isHidden());
        QCOMPARE(page.saveButton()->toolTip(), label->text());
        QVERIFY(!model.commitScript(true));
        QCOMPARE(scriptFiles(m_data.scripts()), before);
        return;
    }
    QVERIFY(label->isHidden());
    page.saveButton()->click();
    QVERIFY(!page.isEditing());
    QStringList expected {QStringLiteral("Другой.script"), savedAs + QStringLiteral(".script")};
    expected.sort();
    QCOMPARE(scriptFiles(m_data.scripts()).keys(), expected);
    QCOMPARE(model.currentScript()->title(), savedAs);
    QCOMPARE(page.scriptCombo()->currentText(), savedAs);
}

void ScriptPageTest::failedWriteKeepsTheOldFileAndTheEdits()
{
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    page.editButton()->click();
    page.editor()->titleEdit()->setText(QStringLiteral("Новое"));
    QSignalSpy failed(WriteFailures::instance(), &WriteFailures::failed);
    {
        const TestFiles::FileSizeLimit fullDisk(16);
        page.saveButton()->click();
    }
    // Announced with the file and the reason, for the window to show; the page adds no box.
    QVERIFY(m_answers->messages.isEmpty());
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.at(0).at(0).toString(), m_data.scripts() + QStringLiteral("Новое.script"));
    QCOMPARE(scriptFiles(m_data.scripts()), before);
    QVERIFY(page.isEditing());

    page.saveButton()->click();
    QVERIFY(!page.isEditing());
    QCOMPARE(scriptFiles(m_data.scripts()).keys(),
             (QStringList {QStringLiteral("Другой.script"), QStringLiteral("Новое.script")}));
}

void ScriptPageTest::cancelDropsTheEditsAndTheStages()
{
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    QVERIFY(page.saveButton()->isHidden());
    const QMap<QString, QByteArray> before = scriptFiles(m_data.scripts());
    TarveloScriptEditor *editor = page.editor();
    const QList<QWidget *> inputs {
        editor->descriptionEdit(), editor->toneHiSpin(), editor->fullTimeCheck(),
        editor->transferCombo(QStringLiteral("stop")), editor->stageEditor()->delaySpin(1)};
    for (bool editing : {true, false}) {
        (editing ? page.editButton() : page.cancelButton())->click();
        QCOMPARE(page.isEditing(), editing);
        for (QWidget *input : inputs)
            QCOMPARE(input->isEnabled(), editing);
        QCOMPARE(editor->removeStageButton()->isHidden(), !editing);
        QCOMPARE(page.scriptCombo()->isEnabled(), !editing);
        if (!editing)
            break;
        editor->descriptionEdit()->setText(QStringLiteral("Другое описание"));
        editor->toneHiSpin()->setValue(1500);
        editor->transferCombo(QStringLiteral("stop"))->setEditText(QStringLiteral("07"));
        editor->stageEditor()->delaySpin(1)->setValue(50);
        QCOMPARE(model.currentScript()->toText().section(QStringLiteral("\r\n"), 1, 1),
                 QStringLiteral("stop=7;s-2=;s-1=;s-0=2;s+1=1;s+2=;rpt=3;[s=1,b=2,t=1500,d=1000]"
                                "[s=2,b=4,t=1500,d=50]"));

        // A new stage is the last, numbered 1, and selected.
        editor->addStageButton()->click();
        ScriptCreatorWidget *creator = editor->findChild<ScriptCreatorWidget *>();
        creator->cell(0, 0)->setValue(3);
        creator->createButton()->click();
        const QList<ScriptStage *> stages = model.currentScript()->stages();
        QCOMPARE(stages.size(), 3);
        QCOMPARE(editor->currentStage(), stages.at(2));
        QCOMPARE(editor->stageButtons().at(2)->text(), QStringLiteral("1"));
        QVERIFY(editor->stageButtons().at(2)->isChecked());
        QVERIFY(!editor->stageButtons().at(0)->isChecked());
        QCOMPARE(stages.at(2)->steps.size(), 3);
        editor->stageButtons().at(1)->click();
        m_answers->answer = QStringLiteral("Yes");
        editor->removeStageButton()->click();
        QCOMPARE(m_answers->messages, (QStringList {"Удаление этапа", "Удалить этап 2?"}));
        QCOMPARE(model.currentScript()->stages(),
                 (QList<ScriptStage *> {stages.at(0), stages.at(2)}));
        // A stage made for an edit that then ends goes nowhere.
        editor->addStageButton()->click();
    }
    QTRY_VERIFY(!editor->findChild<ScriptCreatorWidget *>());
    QCOMPARE(scriptFiles(m_data.scripts()), before);
    QCOMPARE(model.currentScript()->description(), QString());
    QCOMPARE(model.currentScript()->stages().size(), 2);
    QCOMPARE(editor->descriptionEdit()->text(), QString());
    QCOMPARE(editor->transferCombo(QStringLiteral("stop"))->currentText(), QStringLiteral("5"));
}

void ScriptPageTest::deleteAsksFirst()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, left);

    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    m_answers->answer = answer;
    page.deleteButton()->click();
    QCOMPARE(m_answers->messages,
             (QStringList {"Удаление сценария", "Удалить сценарий \"Проба\"?"}));
    QCOMPARE(scriptFiles(m_data.scripts()).keys(), left);
    QCOMPARE(page.editor()->titleEdit()->text(), left.size() == 2 ? "Проба" : "Другой");
}

void ScriptPageTest::playIsHeldBackWhileEditingAndWithoutSteps()
{
    QVERIFY(m_data.writeScript(QStringLiteral("Без шагов"), {QStringLiteral("rpt=1;")}));
    QVERIFY(TestFiles::write(m_data.scripts() + QStringLiteral("Пустой.script"), "not a script"));
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloModel model;
    model.selectScript(QStringLiteral("Проба"));
    PageScript page(&model);
    QPushButton *play = page.playButton()->playButton();
    QTRY_VERIFY_WITH_TIMEOUT(model.device()->isConnected(), WinMs);
    QVERIFY(play->isEnabled());

    page.editButton()->click();
    QVERIFY(!play->isEnabled());
    QCOMPARE(play->toolTip(),
             QStringLiteral("Сценарий редактируется: сохраните или отмените изменения"));
    page.cancelButton()->click();
    QVERIFY(play->isEnabled());

    for (const QString &title : {QStringLiteral("Без шагов"), QStringLiteral("Пустой")}) {
        model.selectScript(title);
        QVERIFY(!play->isEnabled());
        QCOMPARE(play->toolTip(), QStringLiteral("В сценарии нет ни одного шага"));
    }
    // No stage, so no transfers: the last stage's values don't linger.
    QCOMPARE(page.editor()->transferCombo(QStringLiteral("stop"))->currentText(), QString());
}

void ScriptPageTest::leavingWithUnsavedEditsAsks()
{
    QFETCH(bool, change);
    QFETCH(QString, answer);
    QFETCH(QString, stored);
    QFETCH(bool, stays);

    MainWindow window;
    window.show();
    window.model()->selectScript(QStringLiteral("Проба"));
    auto *page = qobject_cast<PageScript *>(window.page(MainWindow::ScriptPage));
    page->editButton()->click();
    if (change)
        page->editor()->descriptionEdit()->setText(QStringLiteral("Новое"));
    m_answers->answer = answer;
    window.tabs()->setCurrentIndex(MainWindow::DatabasePage);

    QCOMPARE(m_answers->messages.size(), change ? 2 : 0);
    QCOMPARE(window.tabs()->currentIndex(),
             int(stays ? MainWindow::ScriptPage : MainWindow::DatabasePage));
    QCOMPARE(page->isEditing(), stays);
    TarveloScript file;
    QVERIFY(file.load(m_data.scripts() + QStringLiteral("Проба.script")));
    QCOMPARE(file.description(), stored);
    QCOMPARE(window.model()->currentScript()->description(), stays ? "Новое" : stored);
    if (!stays)
        return;
    // Closing the window asks the same; staying keeps it open.
    QVERIFY(!window.close());
    QCOMPARE(m_answers->messages.size(), 4);
    m_answers->answer = QStringLiteral("Не сохранять");
    QVERIFY(window.close());
}

void ScriptPageTest::thirtyStepsHideTheAddButton()
{
    TarveloStageEditor editor;
    const auto stage = numberedStage(TarveloStageEditor::MaxRows);
    editor.setStage(stage.get());
    editor.setEditing(true);
    QVERIFY(editor.addButton()->isHidden());

    clickRowButton(editor, 4, 0);
    QCOMPARE(stimuli(*stage).mid(3, 2), (QList<int> {3, 5}));
    QVERIFY(!editor.addButton()->isHidden());
    QVERIFY(editor.stimulusCombo(29)->isHidden());
    QVERIFY(editor.stimulusCombo(0)->isEnabled()); // still in edit mode

    editor.addButton()->click();
    QCOMPARE(stage->steps.constLast()->fileText(), QStringLiteral("s=0,b=0,t=2000,d=1000"));
    QVERIFY(editor.addButton()->isHidden());
}

void ScriptPageTest::rowsMoveByTheirOwnRule()
{
    QFETCH(int, steps);
    QFETCH(int, row);
    QFETCH(int, button);
    QFETCH(QList<int>, moved);

    TarveloStageEditor editor;
    const auto stage = numberedStage(steps);
    editor.setStage(stage.get());
    editor.setEditing(true);
    QList<int> expected = stimuli(*stage);
    if (!moved.isEmpty())
        expected.swapItemsAt(moved.at(0), moved.at(1));
    clickRowButton(editor, row, button);
    QCOMPARE(stimuli(*stage), expected);
    // The table shows the new order.
    QCOMPARE(editor.stimulusCombo(row)->currentIndex(), expected.at(row));
}

void ScriptPageTest::longTimesShowCutAndStayStored()
{
    const std::unique_ptr<ScriptStage> stage(
        ScriptStage::fromText(QStringLiteral("rpt=1;[s=3,t=40000,d=33000][s=4,t=500,d=600]")));
    TarveloStageEditor editor;
    editor.setStage(stage.get());
    editor.setEditing(true);
    QCOMPARE(editor.durationSpin(0)->value(), 32000);
    QCOMPARE(editor.delaySpin(0)->value(), 32000);

    // Only the field the operator changes is written.
    editor.stimulusCombo(0)->setCurrentIndex(7);
    editor.delaySpin(1)->setValue(650);
    editor.durationSpin(1)->setValue(550);
    QCOMPARE(stage->toText(),
             QStringLiteral("stop=;s-2=;s-1=;s-0=;s+1=;s+2=;rpt=1;[s=7,b=1,t=40000,d=33000]"
                            "[s=4,b=1,t=550,d=650]"));
}

void ScriptPageTest::createdScriptIsFiledWithTheSettings()
{
    QVERIFY(m_data.writeSettings(
        "<DefaultToneLo>250</DefaultToneLo><DefaultToneHi>70000</DefaultToneHi>"
        "<DefaultFullTimeDuration>true</DefaultFullTimeDuration><stop>11</stop><sm2> 7 </sm2>"
        "<sm1>abc</sm1><s0>2</s0><sp1></sp1><sp2>0</sp2><maxRepeats>5</maxRepeats>"));
    TarveloModel model;
    PageScript page(&model);
    page.createButton()->click();
    auto *creator = page.findChild<ScriptCreatorWidget *>();
    QVERIFY(creator->isVisible());
    QVERIFY(!creator->createButton()->isEnabled());
    // The count shown is that of the table offered.
    QCOMPARE(creator->stageCountSpin()->value(), creator->table()->rowCount());
    // The names are checked as in the script editor.
    creator->nameEdit()->setText(QStringLiteral(" проба "));
    QCOMPARE(complaints(*creator), QStringList {"Такое имя сценария уже используется"});
    QVERIFY(!creator->createButton()->isEnabled());
    creator->nameEdit()->setText(QStringLiteral("  Новый  "));
    QCOMPARE(complaints(*creator), QStringList());

    // A new stage count makes a new table, numbered down to 1.
    creator->cell(0, 1)->setValue(700);
    creator->stageCountSpin()->setValue(2);
    QCOMPARE(creator->table()->rowCount(), 2);
    QCOMPARE(creator->cell(0, 1)->value(), 2000);
    QCOMPARE(creator->table()->verticalHeaderItem(0)->text(), QStringLiteral("2"));
    const int top[] = {4, 1000, 0, 500, 0};
    for (int column = 0; column < 5; ++column)
        creator->cell(0, column)->setValue(top[column]);
    creator->cell(1, 0)->setValue(1);
    creator->createButton()->click();
    QTRY_VERIFY(!page.findChild<ScriptCreatorWidget *>());
    QVERIFY(!page.isEditing());

    // Read back from its file, as the new selection.
    const TarveloScript *script = model.currentScript();
    QCOMPARE(model.currentScriptTitle(), QStringLiteral("Новый"));
    QCOMPARE(script->headerText(),
             QStringLiteral("title=Новый;description=;message=;fullDuration=1;toneLo=250;"
                            "toneHi=4464;stages=2;"));
    const ScriptStage *first = script->stages().at(0); // the top row
    QCOMPARE(first->steps.size(), 4);
    for (const ScriptStep *step : first->steps)
        QCOMPARE(QPair(step->duration, step->delay), QPair(1000, 500));
    QCOMPARE(script->stages().at(1)->steps.size(), 1);
    QCOMPARE(first->headerText(), QStringLiteral("stop=;s-2=7;s-1=;s-0=2;s+1=;s+2=0;rpt=5;"));
}

void ScriptPageTest::oneStimulusCantFillTwoSteps()
{
    TarveloModel model;
    for (bool scriptMode : {true, false}) {
        ScriptCreatorWidget creator(&model, scriptMode);
        if (scriptMode)
            creator.nameEdit()->setText(QStringLiteral("Новый"));
        const QList<QCheckBox *> checks = creator.findChildren<QCheckBox *>();
        QCOMPARE(checks.size(), int(TarveloCommon::StimulusCount));
        QVERIFY(creator.createButton()->isEnabled());
        for (int stimulus = 1; stimulus < checks.size(); ++stimulus)
            checks.at(stimulus)->setChecked(false);
        QVERIFY(!creator.createButton()->isEnabled());
        QVERIFY(!creator.loopLabel()->isHidden());

        // One step per stage needs no second stimulus; none allowed counts as one.
        for (int row = 0; row < creator.table()->rowCount(); ++row)
            creator.cell(row, 0)->setValue(1);
        checks.at(0)->setChecked(false);
        QVERIFY(creator.createButton()->isEnabled());
        QVERIFY(creator.loopLabel()->isHidden());
        creator.cell(0, 0)->setValue(2);
        QVERIFY(!creator.createButton()->isEnabled());
        checks.at(3)->setChecked(true);
        QVERIFY(!creator.createButton()->isEnabled());
        checks.at(5)->setChecked(true);
        QVERIFY(creator.createButton()->isEnabled());
    }
}

QTEST_MAIN(ScriptPageTest)
#include "tst_scriptpage.moc"
