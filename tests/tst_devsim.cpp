#include "data/KeyValueText.h"
#include "data/SessionStep.h"
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"
#include "device/PortCatalog.h"
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
constexpr int PlayMs = 30000;

const char *const ThreeStages[] = {
    "stop=6;s-1=4;s-0=2;s+1=0;rpt=2;[s=0,t=800,d=400][s=12,t=800,d=400][s=6,t=800,d=400]"
    "[s=10,t=800,d=400][s=15,t=800,d=400]",
    "stop=5;s-2=3;s-1=2;s-0=1;s+2=0;rpt=1;[s=3,t=600,d=300][s=17,t=600,d=300][s=9,t=600,d=300]"
    "[s=11,t=600,d=300]",
    "s-0=1;s+1=0;rpt=1;[s=4,t=500,d=200][s=13,t=500,d=200][s=8,t=500,d=200]",
};

std::unique_ptr<TarveloScript> threeStageScript()
{
    auto script = std::make_unique<TarveloScript>();
    script->setTitle(QStringLiteral("Three stages"));
    for (const char *line : ThreeStages)
        script->addStage(ScriptStage::fromText(QLatin1String(line)));
    return script;
}

// A device on one emulator alone, keeping what it heard apart from the state reports.
struct Linked
{
    explicit Linked(const EmulatorProcess &emulator)
        : device(PortCatalog::portNumber(emulator.path()))
    {
        QObject::connect(&device, &TarveloDevice::onMessage, [this](const QString &message) {
            if (!message.startsWith(StateReport))
                heard << message;
        });
    }
    // From the start of the last script on.
    QStringList run() const
    {
        return heard.mid(heard.lastIndexOf(QRegularExpression("scriptStarted=.*")));
    }

    TarveloDevice device;
    QStringList heard;
};
} // namespace

class DevsimTest : public QObject
{
    Q_OBJECT
private slots:
    void transferRule_data();
    void transferRule();
    void subjectKeepsItsSeedAndRates();
    void playedScriptFollowsTheRuleOverAFaultyLinkToo();
    void statusReportsShowLampsAndControlsAndStopEndsTheScript();
    void linkedTerminalIsRemovedOnTerm();
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
    QTest::newRow("two beyond the end finishes") << typical << 3 << 0 << once << "+2" << ends;
    QTest::newRow("repeat within rpt")
        << "s-0=0;rpt=2;" << 1 << 0 << QVector<int> {1, 2, 0, 0} << "repeat" << 1;
    QTest::newRow("repeat beyond rpt")
        << "s-0=0;rpt=2;" << 1 << 0 << QVector<int> {1, 3, 0, 0} << "maxRepeats" << 2;
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
    QMap<Reaction::Kind, int> kinds;
    QVector<int> correctTimes;
    for (int i = 0; i < Draws; ++i) {
        const int stimulus = i % TarveloCommon::StimulusCount;
        const Reaction reaction = subject.react(stimulus, 2000, 1000);
        const Reaction copy = twin.react(stimulus, 2000, 1000);
        QVERIFY(copy.kind == reaction.kind && copy.time == reaction.time
                && copy.button == reaction.button);
        ++kinds[reaction.kind];
        const bool right = reaction.button == requiredButton(stimulus);
        switch (reaction.kind) {
        case Reaction::Correct:
            QVERIFY(right && reaction.time >= 150 && reaction.time <= 2000);
            correctTimes << reaction.time;
            break;
        case Reaction::Wrong:
            QVERIFY(!right && reaction.button >= 0 && reaction.button < TarveloCommon::BTN_None);
            break;
        case Reaction::Late:
            QVERIFY(right && reaction.time > 2000 && reaction.time <= 3000);
            break;
        case Reaction::Missed:
            QVERIFY(reaction.button == TarveloCommon::NoReportedButton && reaction.time == 3000);
            break;
        }
    }
    QVERIFY(qAbs(kinds[Reaction::Wrong] / double(Draws) - rates.wrong) < 0.01);
    QVERIFY(qAbs(kinds[Reaction::Late] / double(Draws) - rates.late) < 0.01);
    QVERIFY(qAbs(kinds[Reaction::Missed] / double(Draws) - rates.miss) < 0.01);
    std::sort(correctTimes.begin(), correctTimes.end());
    const int median = correctTimes.at(correctTimes.size() / 2);
    QVERIFY2(median > 370 && median < 430, qPrintable(QString::number(median)));
}

void DevsimTest::playedScriptFollowsTheRuleOverAFaultyLinkToo()
{
    // The same subject on a clean link and on one with noise between the frames and frames
    // written in pieces, played side by side.
    const QStringList run = {"--speed", "20",     "--seed", "7",      "--wrong",
                             "0.2",     "--late", "0.1",    "--miss", "0.1"};
    EmulatorProcess clean;
    EmulatorProcess faulty;
    QVERIFY(clean.start(run));
    QVERIFY(faulty.start(run + QStringList {"--noise", "--split"}));
    setExtraPorts({clean.path(), faulty.path()});
    Linked onClean(clean);
    Linked onFaulty(faulty);
    QTRY_VERIFY_WITH_TIMEOUT(
        !onClean.device.version().isEmpty() && !onFaulty.device.version().isEmpty(), WinMs);
    const std::unique_ptr<TarveloScript> script = threeStageScript();
    onClean.device.uploadScript(script.get());
    onFaulty.device.uploadScript(script.get());
    QTRY_VERIFY_WITH_TIMEOUT(
        onClean.heard.contains(ScriptFinished) && onFaulty.heard.contains(ScriptFinished), PlayMs);
    const QStringList heard = onClean.run();
    QCOMPARE(onFaulty.run(), heard);
    // Everything the emulator says it sent arrived, in order.
    QStringList sent = clean.reports();
    sent.erase(std::remove_if(sent.begin(), sent.end(),
                              [](const QString &r) { return r.startsWith(StateReport); }),
               sent.end());
    QCOMPARE(heard, sent.mid(sent.indexOf(heard.constFirst())));
    QCOMPARE(heard.constFirst(), QStringLiteral("scriptStarted=Three stages"));

    // Each stage run: its number, its size, a reaction per step, and the rule's decision on
    // the steps that were not right.
    QVector<const ScriptStage *> stages;
    for (const ScriptStage *stage : script->stages())
        stages << stage;
    QVector<int> plays(stages.size(), 0);
    int expectedStage = 0;
    int at = 1;
    while (expectedStage != TransferRule::ScriptEnds) {
        QCOMPARE(heard.at(at), StageStarted + QString::number(expectedStage));
        const ScriptStage *stage = stages.at(expectedStage);
        ++plays[expectedStage];
        QCOMPARE(heard.at(at + 1), StageItems + QString::number(stage->steps.size()));
        int errors = 0;
        for (int i = 0; i < stage->steps.size(); ++i) {
            const ScriptStep *step = stage->steps.at(i);
            const QString &report = heard.at(at + 2 + i);
            const QMap<QString, QString> values = parseKeyValues(report, ";", "=");
            QCOMPARE(values.value("s").toInt(), step->stimulus);
            QCOMPARE(values.value("t").toInt(), step->duration);
            QCOMPARE(values.value("d").toInt(), step->delay);
            QCOMPARE(values.value("b2").toInt(), int(requiredButton(step->stimulus)));
            const std::unique_ptr<SessionStep> reaction(SessionStep::fromReport(report));
            errors += reaction->outcome() != SessionStep::Correct;
        }
        at += 2 + stage->steps.size();
        const TransferRule::Decision decision =
            TransferRule::decide(stages, expectedStage, errors, plays);
        QCOMPARE(heard.at(at++), StageAction + decision.action);
        expectedStage = decision.next;
    }
    QCOMPARE(heard.mid(at), QStringList {ScriptFinished});
}

void DevsimTest::statusReportsShowLampsAndControlsAndStopEndsTheScript()
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

    // A subject who is always right presses exactly the controls the steps require.
    TarveloScript script;
    script.addStage(ScriptStage::fromText("rpt=0;[s=0,t=800,d=400][s=10,t=800,d=400]"));
    device.uploadScript(&script);
    QTRY_VERIFY_WITH_TIMEOUT(emulator.reports().contains(ScriptFinished), PlayMs);
    QTRY_COMPARE(pressed, (QSet<int> {TarveloCommon::BTN_Green, TarveloCommon::BTN_Pedal_Left}));

    // A stop in the middle ends the script at once.
    device.uploadScript(threeStageScript().get());
    QTRY_COMPARE_WITH_TIMEOUT(emulator.reports().count(StageStarted + "0"), 2, WinMs);
    device.sendCommand(Stop);
    QTRY_COMPARE(emulator.reports().count(ScriptFinished), 2);
    const QStringList log = emulator.log();
    const QStringList after =
        log.mid(log.indexOf("< stop")).filter(QRegularExpression("^> (?!state=)"));
    QCOMPARE(after.value(0), QStringLiteral("> scriptFinished"));
}

void DevsimTest::linkedTerminalIsRemovedOnTerm()
{
    QTemporaryDir dir;
    const QString link = dir.filePath(QStringLiteral("tarvelo-box"));
    QProcess emulator;
    emulator.start(QStringLiteral(TARVELO_DEVSIM), {"--link", link});
    QVERIFY(emulator.waitForReadyRead(WinMs));
    QVERIFY(QFileInfo(link).isSymLink());
    setExtraPorts({link});
    {
        TarveloDevice device(-1);
        QTRY_VERIFY_WITH_TIMEOUT(device.isConnected(), WinMs);
        QCOMPARE(device.portName(), link);
    }
    emulator.terminate();
    QVERIFY(emulator.waitForFinished(WinMs));
    QCOMPARE(emulator.exitStatus(), QProcess::NormalExit);
    QVERIFY(!QFileInfo(link).isSymLink());
}

QTEST_GUILESS_MAIN(DevsimTest)
#include "tst_devsim.moc"
