#include "app/TarveloCommon.h"
#include "app/TarveloModel.h"
#include "data/ScriptStage.h"
#include "data/TarveloScript.h"
#include "support/TestDataFolder.h"
#include "ui/DeleteUpDownWidget.h"
#include "ui/ScriptCreatorWidget.h"
#include "ui/TarveloStageEditor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QtTest>

#include <memory>

namespace {
// A stage whose steps carry the stimuli 0, 1, 2, ... so that their order can be read back.
std::unique_ptr<ScriptStage> numberedStage(int steps)
{
    auto stage = std::make_unique<ScriptStage>();
    for (int i = 0; i < steps; ++i) {
        auto *step = new ScriptStep;
        step->stimulus = i % TarveloCommon::StimulusCount;
        stage->steps << step;
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

QCheckBox *stimulusCheck(ScriptCreatorWidget &creator, int stimulus)
{
    return creator.findChildren<QCheckBox *>().at(stimulus);
}
} // namespace

class ScriptEditorsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void thirtyStepsHideTheAddButton();
    void rowsMoveByTheirOwnRule_data();
    void rowsMoveByTheirOwnRule();
    void longTimesShowCutAndStayStored();
    void newStageCountRebuildsTheTable();
    void nameIsCheckedAsItIsTyped_data();
    void nameIsCheckedAsItIsTyped();
    void createdScriptCarriesTheSettings();
    void oneStimulusCantFillTwoSteps();

private:
    TestDataFolder m_data;
};

void ScriptEditorsTest::initTestCase()
{
    QVERIFY(m_data.isValid());
}

void ScriptEditorsTest::init()
{
    m_data.clear();
}

void ScriptEditorsTest::thirtyStepsHideTheAddButton()
{
    TarveloStageEditor editor;
    const auto stage = numberedStage(TarveloStageEditor::MaxRows);
    editor.setStage(stage.get());
    editor.setEditing(true);
    QVERIFY(editor.addButton()->isHidden());
    QVERIFY(!editor.stimulusCombo(29)->isHidden());

    clickRowButton(editor, 4, 0);
    QCOMPARE(stage->steps.size(), 29);
    QCOMPARE(stage->steps.at(4)->stimulus, 5);
    QVERIFY(!editor.addButton()->isHidden());
    QVERIFY(editor.stimulusCombo(29)->isHidden());
    // Still in edit mode after the row operation.
    QVERIFY(editor.stimulusCombo(0)->isEnabled());

    editor.addButton()->click();
    QCOMPARE(stage->steps.size(), 30);
    const ScriptStep *added = stage->steps.constLast();
    QCOMPARE(added->stimulus, int(TarveloCommon::LED_TOP_Green));
    QCOMPARE(added->duration, 2000);
    QCOMPARE(added->delay, 1000);
    QVERIFY(editor.addButton()->isHidden());

    editor.setEditing(false);
    QVERIFY(!editor.stimulusCombo(0)->isEnabled());
    editor.setStage(nullptr);
    QVERIFY(editor.stimulusCombo(0)->isHidden());
}

void ScriptEditorsTest::rowsMoveByTheirOwnRule_data()
{
    QTest::addColumn<int>("steps");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("button");
    QTest::addColumn<QList<int>>("firstThree");

    const int up = 1;
    const int down = 2;
    QTest::newRow("first row can't go up") << 3 << 0 << up << QList<int> {0, 1, 2};
    QTest::newRow("last row goes up") << 3 << 2 << up << QList<int> {0, 2, 1};
    QTest::newRow("first row goes down") << 3 << 0 << down << QList<int> {1, 0, 2};
    QTest::newRow("next-to-last row stays") << 3 << 1 << down << QList<int> {0, 1, 2};
    QTest::newRow("last row stays") << 3 << 2 << down << QList<int> {0, 1, 2};
    QTest::newRow("first of two stays") << 2 << 0 << down << QList<int> {0, 1};
    QTest::newRow("second of two goes up") << 2 << 1 << up << QList<int> {1, 0};
    // Rows beyond the thirtieth are not shown, but the rule counts them.
    QTest::newRow("thirtieth of 32 goes down") << 32 << 29 << down << QList<int> {0, 1, 2};
}

void ScriptEditorsTest::rowsMoveByTheirOwnRule()
{
    QFETCH(int, steps);
    QFETCH(int, row);
    QFETCH(int, button);
    QFETCH(QList<int>, firstThree);

    TarveloStageEditor editor;
    const auto stage = numberedStage(steps);
    editor.setStage(stage.get());
    editor.setEditing(true);
    const QList<int> before = stimuli(*stage);
    clickRowButton(editor, row, button);
    const QList<int> after = stimuli(*stage);
    QCOMPARE(after.mid(0, 3), firstThree);
    if (steps == 32) {
        QCOMPARE(after.at(29), before.at(30));
        QCOMPARE(after.at(30), before.at(29));
    }
    // The table shows the new order.
    QCOMPARE(editor.stimulusCombo(0)->currentIndex(), after.at(0));
}

void ScriptEditorsTest::longTimesShowCutAndStayStored()
{
    const std::unique_ptr<ScriptStage> stage(
        ScriptStage::fromText(QStringLiteral("rpt=1;[s=3,t=40000,d=33000][s=4,t=500,d=600]")));
    TarveloStageEditor editor;
    editor.setStage(stage.get());
    editor.setEditing(true);
    QCOMPARE(editor.durationSpin(0)->value(), 32000);
    QCOMPARE(editor.delaySpin(0)->value(), 32000);
    QCOMPARE(stage->steps.at(0)->duration, 40000);
    QCOMPARE(stage->steps.at(0)->delay, 33000);

    // Only the field the operator changes is written.
    editor.stimulusCombo(0)->setCurrentIndex(7);
    editor.delaySpin(1)->setValue(650);
    editor.durationSpin(1)->setValue(550);
    QCOMPARE(stage->steps.at(0)->stimulus, 7);
    QCOMPARE(stage->steps.at(0)->duration, 40000);
    QCOMPARE(stage->steps.at(0)->delay, 33000);
    QCOMPARE(stage->steps.at(1)->delay, 650);
    QCOMPARE(stage->steps.at(1)->duration, 550);
    editor.delaySpin(0)->setValue(100);
    QCOMPARE(stage->steps.at(0)->delay, 100);
}

void ScriptEditorsTest::newStageCountRebuildsTheTable()
{
    TarveloModel model;
    ScriptCreatorWidget creator(&model, true);
    QCOMPARE(creator.table()->rowCount(), 15);
    creator.cell(0, 1)->setValue(700);
    creator.stageCountSpin()->setValue(3);
    QCOMPARE(creator.table()->rowCount(), 3);
    QCOMPARE(creator.cell(0, 1)->value(), 2000); // typed values don't survive
    QStringList numbers;
    for (int row = 0; row < 3; ++row)
        numbers << creator.table()->verticalHeaderItem(row)->text();
    QCOMPARE(numbers, (QStringList {"3", "2", "1"}));

    ScriptCreatorWidget stageCreator(&model, false);
    QCOMPARE(stageCreator.table()->rowCount(), 1);
    QVERIFY(!stageCreator.nameEdit());
    QVERIFY(stageCreator.createButton()->isEnabled());
}

void ScriptEditorsTest::nameIsCheckedAsItIsTyped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("emptyShown");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("free") << "Новый" << false << QString();
    QTest::newRow("blanks") << "   " << true << QString();
    QTest::newRow("used, other case")
        << " проба " << false << "Такое имя сценария уже используется";
    QTest::newRow("slash") << "a/b" << false << "Имя не может содержать символ «/»";
}

void ScriptEditorsTest::nameIsCheckedAsItIsTyped()
{
    QFETCH(QString, name);
    QFETCH(bool, emptyShown);
    QFETCH(QString, complaint);

    QVERIFY(m_data.writeScript(QStringLiteral("Проба"), {QStringLiteral("rpt=1;[s=1]")}));
    TarveloModel model;
    ScriptCreatorWidget creator(&model, true);
    QVERIFY(!creator.createButton()->isEnabled());
    creator.nameEdit()->setText(name);
    QCOMPARE(creator.createButton()->isEnabled(), !emptyShown && complaint.isEmpty());
    const QList<QLabel *> labels = creator.findChildren<QLabel *>(QStringLiteral("labelInvalid"));
    QStringList shown;
    for (QLabel *label : labels) {
        if (!label->isHidden())
            shown << label->text();
    }
    QStringList expected;
    if (emptyShown)
        expected << QStringLiteral("Имя сценария не может быть пустым");
    if (!complaint.isEmpty())
        expected << complaint;
    QCOMPARE(shown, expected);
}

void ScriptEditorsTest::createdScriptCarriesTheSettings()
{
    QVERIFY(m_data.writeSettings(
        "<DefaultToneLo>250</DefaultToneLo><DefaultToneHi>70000</DefaultToneHi>"
        "<DefaultFullTimeDuration>true</DefaultFullTimeDuration>"
        "<stop>11</stop><sm2> 7 </sm2><sm1>abc</sm1><s0>2</s0>"
        "<sp1></sp1><sp2>0</sp2><maxRepeats>5</maxRepeats>"));
    TarveloModel model;
    ScriptCreatorWidget creator(&model, true);
    creator.nameEdit()->setText(QStringLiteral("  Новый  "));
    creator.stageCountSpin()->setValue(2);
    const int top[] = {4, 1000, 0, 500, 0};
    const int bottom[] = {1, 3000, 0, 0, 0};
    for (int column = 0; column < 5; ++column) {
        creator.cell(0, column)->setValue(top[column]);
        creator.cell(1, column)->setValue(bottom[column]);
    }
    QSignalSpy accepted(&creator, &ScriptCreatorWidget::acceptScript);
    std::unique_ptr<TarveloScript> script;
    connect(&creator, &ScriptCreatorWidget::acceptScript, this,
            [&] { script.reset(creator.createScript()); });
    creator.show();
    creator.createButton()->click();
    QCOMPARE(accepted.count(), 1);
    QVERIFY(!creator.isVisible());
    QVERIFY(script);

    QCOMPARE(script->title(), QStringLiteral("Новый"));
    QCOMPARE(int(script->toneLo()), 250);
    QCOMPARE(int(script->toneHi()), 70000 % 65536);
    QVERIFY(script->fullDuration());
    QCOMPARE(script->stages().size(), 2);
    const ScriptStage *first = script->stages().at(0); // the top row
    QCOMPARE(first->steps.size(), 4);
    for (const ScriptStep *step : first->steps) {
        QCOMPARE(step->duration, 1000);
        QCOMPARE(step->delay, 500);
    }
    QCOMPARE(script->stages().at(1)->steps.size(), 1);
    QCOMPARE(script->stages().at(1)->steps.at(0)->duration, 3000);
    QCOMPARE(first->headerText(), QStringLiteral("stop=;s-2=7;s-1=;s-0=2;s+1=;s+2=0;rpt=5;"));
}

void ScriptEditorsTest::oneStimulusCantFillTwoSteps()
{
    TarveloModel model;
    for (bool scriptMode : {true, false}) {
        ScriptCreatorWidget creator(&model, scriptMode);
        if (scriptMode)
            creator.nameEdit()->setText(QStringLiteral("Новый"));
        QVERIFY(creator.createButton()->isEnabled());
        for (int stimulus = 1; stimulus < TarveloCommon::StimulusCount; ++stimulus)
            stimulusCheck(creator, stimulus)->setChecked(false);
        QVERIFY(!creator.createButton()->isEnabled());
        QVERIFY(!creator.loopLabel()->isHidden());

        // One step per stage needs no second stimulus.
        for (int row = 0; row < creator.table()->rowCount(); ++row)
            creator.cell(row, 0)->setValue(1);
        QVERIFY(creator.createButton()->isEnabled());
        QVERIFY(creator.loopLabel()->isHidden());
        creator.cell(0, 0)->setValue(2);
        QVERIFY(!creator.createButton()->isEnabled());

        // None allowed counts as one.
        stimulusCheck(creator, 0)->setChecked(false);
        QVERIFY(!creator.createButton()->isEnabled());
        stimulusCheck(creator, 3)->setChecked(true);
        stimulusCheck(creator, 5)->setChecked(true);
        QVERIFY(creator.createButton()->isEnabled());
        const std::unique_ptr<ScriptStage> stage(creator.createStage(0));
        QCOMPARE(
            stimuli(*stage),
            (QList<int> {stage->steps.at(0)->stimulus, stage->steps.at(0)->stimulus == 3 ? 5 : 3}));
    }
}

QTEST_MAIN(ScriptEditorsTest)
#include "tst_scripteditors.moc"
