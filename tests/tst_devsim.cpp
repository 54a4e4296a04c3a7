#include "data/KeyValueText.h"
#include "data/TarveloCommon.h"
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "tools/devsim/SimulatedSubject.h"
#include "tools/devsim/TransferRule.h"

#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace DeviceProtocol;

namespace {
constexpr int WinMs = 8000;
constexpr int PlayMs = 60000;

const char *const ThreeStages[] = {
    "stop=6;s-2=;s-1=4;s-0=2;s+1=0;s+2=;rpt=2;[s=0,b=0,t=800,d=400][s=12,b=5,t=800,d=400]"
    "[s=6,b=3,t=800,d=400][s=10,b=7,t=800,d=400][s=15,b=6,t=800,d=400]",
    "stop=5;s-2=3;s-1=2;s-0=1;s+1=;s+2=0;rpt=1;[s=3,b=3,t=600,d=300][s=17,b=6,t=600,d=300]"
    "[s=9,b=0,t=600,d=300][s=11,b=8,t=600,d=300]",
    "stop=;s-2=;s-1=;s-0=1;s+1=0;s+2=;rpt=1;[s=4,b=1,t=500,d=200][s=13,b=5,t=500,d=200]"
    "[s=8,b=2,t=500,d=200]",
};

std::unique_ptr<TarveloScript> threeStageScript()
{
    auto script = std::make_unique<TarveloScript>();
    script->setTitle(QStringLiteral("Three stages"));
    for (const char *line : ThreeStages)
        script->addStage(ScriptStage::fromText(QLatin1String(line)));
    return script;
}

// Runs the script on the emulator started with these arguments and returns what the program
// heard from scriptStarted= to scriptFinished, state reports left out.
QStringList playOn(EmulatorProcess &emulator, const QStringList &arguments,
                   const TarveloScript &script)
{
    if (!emulator.start(arguments))
        return {};
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QStringList heard;
    QObject::connect(&device, &TarveloDevice::onMessage, [&heard](const QString &msg) {
        if (!msg.startsWith(StateReport))
            heard << msg;
    });
    if (!QTest::qWaitFor([&] { return !device.version().isEmpty(); }, WinMs))
        return {};
    device.uploadScript(&script);
    if (!QTest::qWaitFor([&] { return heard.contains(ScriptFinished); }, PlayMs))
        return {};
    return heard.mid(heard.indexOf(QRegularExpression(ScriptStarted + ".*")));
}

bool isError(const QMap<QString, QString> &reaction)
{
    const int r = reaction.value("r").toInt();
    return r < 0 || r > reaction.value("t").toInt() || reaction.value("b") != reaction.value("b2");
}
} // namespace

class DevsimTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { setExtraPorts({}); }
    void transferRule_data();
    void transferRule();
    void subjectKeepsItsSeedAndRates();
    void playedScriptMatchesTheLogAndTheRule();
    void faultyLinkCarriesTheSameRun();
    void stopEndsARunningScript();
    void statusReportsShowLampsAndControls();
};

void DevsimTest::transferRule_data()
{
    QTest::addColumn<QString>("transfers");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("errors");
    QTest::addColumn<QVector<int>>("plays");
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("next");

    const QString typical = QStringLiteral("stop=5;s-2=4;s-1=3;s-0=2;s+1=1;s+2=0;rpt=3;");
    const QVector<int> once {1, 1, 1, 1};
    const int ends = TransferRule::ScriptEnds;
    QTest::newRow("no errors jump two") << typical << 1 << 0 << once << "+2" << 3;
    QTest::newRow("one error goes on") << typical << 1 << 1 << once << "+1" << 2;
    QTest::newRow("two errors repeat") << typical << 1 << 2 << once << "repeat" << 1;
    QTest::newRow("three errors go back") << typical << 1 << 3 << once << "-1" << 0;
    QTest::newRow("back two stops at the first stage") << typical << 1 << 4 << once << "-2" << 0;
    QTest::newRow("many errors stop") << typical << 1 << 9 << once << "stop" << ends;
    QTest::newRow("stop wins a tie") << "stop=2;s-0=2;rpt=3;" << 1 << 2 << once << "stop" << ends;
    QTest::newRow("earlier key wins other ties") << "s-1=2;s+1=2;" << 2 << 3 << once << "-1" << 1;
    QTest::newRow("nothing applies goes on") << "stop=5;s+2=3;" << 1 << 2 << once << "+1" << 2;
    QTest::newRow("nothing set goes on") << "" << 0 << 0 << once << "+1" << 1;
    QTest::newRow("two beyond the end finishes") << typical << 3 << 0 << once << "+2" << ends;
    QTest::newRow("on from the last stage finishes") << "s+1=0;" << 3 << 0 << once << "+1" << ends;
    QTest::newRow("repeat within rpt")
        << "s-0=0;rpt=2;" << 1 << 0 << QVector<int> {1, 2, 0, 0} << "repeat" << 1;
    QTest::newRow("repeat beyond rpt")
        << "s-0=0;rpt=2;" << 1 << 0 << QVector<int> {1, 3, 0, 0} << "maxRepeats" << 2;
    QTest::newRow("rpt 0 never repeats") << "s-0=0;rpt=0;" << 1 << 0 << once << "maxRepeats" << 2;
    QTest::newRow("back into a used-up stage")
        << "s-1=0;rpt=1;" << 2 << 0 << QVector<int> {1, 2, 1, 0} << "maxRepeats" << 3;
    QTest::newRow("maxRepeats on the last stage finishes")
        << "s-0=0;rpt=0;" << 3 << 0 << once << "maxRepeats" << ends;
}

void DevsimTest::transferRule()
{
    QFETCH(QString, transfers);
    QFETCH(int, index);
    QFETCH(int, errors);
    QFETCH(QVector<int>, plays);
    QFETCH(QString, action);
    QFETCH(int, next);

    std::vector<std::unique_ptr<ScriptStage>> owned;
    QVector<const ScriptStage *> stages;
    for (int i = 0; i < plays.size(); ++i) {
        owned.emplace_back(ScriptStage::fromText(transfers));
        stages << owned.back().get();
    }
    const TransferRule::Decision decision = TransferRule::decide(stages, index, errors, plays);
    QCOMPARE(decision.action, action);
    QCOMPARE(decision.next, next);
}

void DevsimTest::subjectKeepsItsSeedAndRates()
{
    const SimulatedSubject::Rates rates {0.1, 0.05, 0.05};
    SimulatedSubject subject(42, rates);
    SimulatedSubject twin(42, rates);
    constexpr int Draws = 20000;
    const int duration = 2000;
    const int delay = 1000;
    QMap<Reaction::Kind, int> kinds;
    QVector<int> correctTimes;
    for (int i = 0; i < Draws; ++i) {
        const int stimulus = i % TarveloCommon::StimulusCount;
        const Reaction reaction = subject.react(stimulus, duration, delay);
        const Reaction copy = twin.react(stimulus, duration, delay);
        QCOMPARE(copy.kind, reaction.kind);
        QCOMPARE(copy.time, reaction.time);
        QCOMPARE(copy.button, reaction.button);
        ++kinds[reaction.kind];
        const int required = requiredButton(stimulus);
        switch (reaction.kind) {
        case Reaction::Correct:
            QCOMPARE(reaction.button, required);
            QVERIFY(reaction.time >= 150 && reaction.time <= duration);
            correctTimes << reaction.time;
            break;
        case Reaction::Wrong:
            QVERIFY(reaction.button != required);
            QVERIFY(reaction.button >= 0 && reaction.button < TarveloCommon::BTN_None);
            QVERIFY(reaction.time <= duration);
            break;
        case Reaction::Late:
            QCOMPARE(reaction.button, required);
            QVERIFY(reaction.time > duration && reaction.time <= duration + delay);
            break;
        case Reaction::Missed:
            QCOMPARE(reaction.button, int(TarveloCommon::NoReportedButton));
            QCOMPARE(reaction.time, duration + delay);
            break;
        }
    }
    auto near = [](int count, double rate) {
        return qAbs(double(count) / Draws - rate) < 0.01;
    };
    QVERIFY(near(kinds[Reaction::Wrong], rates.wrong));
    QVERIFY(near(kinds[Reaction::Late], rates.late));
    QVERIFY(near(kinds[Reaction::Missed], rates.miss));
    std::sort(correctTimes.begin(), correctTimes.end());
    const int median = correctTimes.at(correctTimes.size() / 2);
    QVERIFY2(median > 370 && median < 430, qPrintable(QString::number(median)));

    SimulatedSubject other(43, rates);
    int same = 0;
    SimulatedSubject again(42, rates);
    for (int i = 0; i < 100; ++i)
        same += other.react(1, duration, delay).time == again.react(1, duration, delay).time;
    QVERIFY(same < 50);
}

void DevsimTest::playedScriptMatchesTheLogAndTheRule()
{
    const std::unique_ptr<TarveloScript> script = threeStageScript();
    EmulatorProcess emulator;
    const QStringList heard =
        playOn(emulator,
               {"--speed", "20", "--seed", "7", "--wrong", "0.2", "--late", "0.1", "--miss", "0.1"},
               *script);
    QVERIFY(!heard.isEmpty());
    QCOMPARE(heard.constFirst(), QStringLiteral("scriptStarted=Three stages"));
    QCOMPARE(heard.constLast(), ScriptFinished);

    // Everything the emulator says it sent from the start on arrived, in order.
    QStringList sent = emulator.reports();
    sent.erase(std::remove_if(sent.begin(), sent.end(),
                              [](const QString &r) { return r.startsWith(StateReport); }),
               sent.end());
    QCOMPARE(heard, sent.mid(sent.indexOf(heard.constFirst())));

    // Each stage run reports its items, one reaction per step, and the decision of the rule.
    QVector<const ScriptStage *> stages;
    for (const ScriptStage *stage : script->stages())
        stages << stage;
    QVector<int> plays(stages.size(), 0);
    int expectedStage = 0;
    int at = 1;
    int runs = 0;
    while (heard.at(at).startsWith(StageStarted)) {
        const int index = heard.at(at).mid(StageStarted.size()).toInt();
        QCOMPARE(index, expectedStage);
        ++plays[index];
        ++runs;
        const int steps = stages.at(index)->steps.size();
        QCOMPARE(heard.at(at + 1), StageItems + QString::number(steps));
        int errors = 0;
        for (int i = 0; i < steps; ++i) {
            const QString &report = heard.at(at + 2 + i);
            QVERIFY2(report.startsWith(ReactionReport), qPrintable(report));
            const QMap<QString, QString> reaction = parseKeyValues(report, ";", "=");
            const ScriptStep *step = stages.at(index)->steps.at(i);
            QCOMPARE(reaction.value("s").toInt(), step->stimulus);
            QCOMPARE(reaction.value("t").toInt(), step->duration);
            QCOMPARE(reaction.value("d").toInt(), step->delay);
            QCOMPARE(reaction.value("b2").toInt(), int(requiredButton(step->stimulus)));
            errors += isError(reaction);
        }
        const TransferRule::Decision decision = TransferRule::decide(stages, index, errors, plays);
        at += 2 + steps;
        QCOMPARE(heard.at(at), StageAction + decision.action);
        ++at;
        expectedStage = decision.next;
        if (expectedStage == TransferRule::ScriptEnds)
            break;
    }
    QCOMPARE(at, heard.size() - 1);
    QVERIFY(runs >= stages.size() || heard.contains(StageAction + Action::Stop));
}

void DevsimTest::faultyLinkCarriesTheSameRun()
{
    const std::unique_ptr<TarveloScript> script = threeStageScript();
    const QStringList run = {"--speed", "20", "--seed", "11"};
    EmulatorProcess clean;
    const QStringList expected = playOn(clean, run, *script);
    QVERIFY(expected.contains(ScriptFinished));
    EmulatorProcess faulty;
    const QStringList heard = playOn(faulty, run + QStringList {"--noise", "--split"}, *script);
    QCOMPARE(heard, expected);
}

void DevsimTest::stopEndsARunningScript()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start());
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QSignalSpy messages(&device, &TarveloDevice::onMessage);
    QTRY_VERIFY_WITH_TIMEOUT(!device.version().isEmpty(), WinMs);
    const std::unique_ptr<TarveloScript> script = threeStageScript();
    device.uploadScript(script.get());
    QTRY_VERIFY_WITH_TIMEOUT(emulator.reports().contains(StageStarted + "0"), 5000);

    device.sendCommand(Stop);
    QTRY_VERIFY(emulator.reports().contains(ScriptFinished));
    const QStringList log = emulator.log();
    QCOMPARE(log.at(log.indexOf("< stop") + 1), QStringLiteral("> scriptFinished"));
    QTRY_COMPARE(messages.constLast().at(0).toString(), ScriptFinished);
}

void DevsimTest::statusReportsShowLampsAndControls()
{
    EmulatorProcess emulator;
    QVERIFY(emulator.start({"--speed", "4", "--wrong", "0", "--late", "0", "--miss", "0"}));
    setExtraPorts({emulator.path()});
    TarveloDevice device(-1);
    QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
    QList<bool> lamps;
    QSet<int> pressed;
    connect(&device, &TarveloDevice::ledChanged, this,
            [&lamps](const QList<bool> &l) { lamps = l; });
    connect(&device, &TarveloDevice::btnChanged, this, [&pressed](int button, bool on) {
        if (on)
            pressed << button;
    });
    device.setStatusReports(true);
    device.testLamp(3);
    QTRY_VERIFY(lamps.size() == 12 && lamps.at(3));
    QTRY_VERIFY(!lamps.at(3));
    device.testStimulus(7, true);
    QTRY_VERIFY(lamps.at(7));

    // A correct subject presses exactly the required controls of the steps.
    TarveloScript script;
    script.addStage(ScriptStage::fromText("rpt=0;[s=0,b=0,t=800,d=400][s=10,b=7,t=800,d=400]"));
    device.uploadScript(&script);
    QTRY_VERIFY_WITH_TIMEOUT(emulator.reports().contains(ScriptFinished), 10000);
    QTRY_COMPARE(pressed, (QSet<int> {TarveloCommon::BTN_Green, TarveloCommon::BTN_Pedal_Left}));
    device.setStatusReports(false);
    QTRY_VERIFY(emulator.commands().contains(StatusOff));
}

QTEST_GUILESS_MAIN(DevsimTest)
#include "tst_devsim.moc"
