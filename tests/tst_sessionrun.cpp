#include "app/TarveloModel.h"
#include "data/KeyValueText.h"
#include "data/TarveloSession.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/TestDataFolder.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace DeviceProtocol;

namespace {
constexpr int WinMs = 8000;
constexpr int PlayMs = 30000;
const QString GuidA = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString NameA = QStringLiteral("Иванов");
const QString Title = QStringLiteral("Проба");

// Stage 0 always repeats once and then runs out of repeats, so three stage runs are reported:
// 0, 0 again and 1.
const QStringList RepeatingScript {
    "s-0=0;rpt=1;[s=3,t=1000,d=500][s=13,t=800,d=400][s=10,t=1000,d=500]",
    "rpt=0;[s=0,t=1000,d=500][s=16,t=900,d=300]",
};
// Long enough stages to stop or cut in the middle of.
const QStringList LongScript {
    "rpt=0;[s=3,t=1000,d=500][s=13,t=800,d=400][s=10,t=1000,d=500][s=1,t=1000,d=500]"
    "[s=5,t=1000,d=500][s=17,t=1000,d=500][s=8,t=1000,d=500][s=2,t=1000,d=500]",
    "rpt=0;[s=0,t=1000,d=500][s=16,t=900,d=300][s=4,t=1000,d=500][s=6,t=1000,d=500]",
    "rpt=0;[s=7,t=1000,d=500][s=9,t=900,d=300][s=11,t=1000,d=500][s=12,t=1000,d=500]",
};
// A fast subject with a fixed seed who errs often enough to fill every column.
const QStringList Subject =
    QStringLiteral("--speed 20 --seed 5 --wrong 0.25 --late 0.2 --miss 0.2").split(' ');

// One stage run as the emulator's log tells it, with the counts worked out from the raw report
// values: a negative time is missed, a time above the allowed one late, another control than
// the one the box names as required an error.
struct LoggedStage
{
    int index = -1;
    int stepCount = -1;
    QString action;
    QList<QMap<QString, QString>> reactions;
    int correct = 0, late = 0, error = 0, missed = 0;

    void count(const QMap<QString, QString> &r)
    {
        const int time = r.value("r").toInt();
        if (time < 0)
            ++missed;
        else if (time > r.value("t").toInt())
            ++late;
        else if (r.value("b") != r.value("b2"))
            ++error;
        else
            ++correct;
    }
};

int count(const QStringList &reports, const QString &prefix)
{
    return int(std::count_if(reports.begin(), reports.end(), [&prefix](const QString &report) {
        return report.startsWith(prefix);
    }));
}

// The stage runs of the last script the emulator played, from its log of what it sent.
QList<LoggedStage> loggedStages(const QStringList &reports)
{
    QList<LoggedStage> stages;
    const int start = reports.lastIndexOf(QRegularExpression("scriptStarted=.*"));
    for (const QString &report : reports.mid(start)) {
        if (report.startsWith(StageStarted)) {
            stages.append(LoggedStage());
            stages.last().index = report.mid(StageStarted.size()).toInt();
        } else if (stages.isEmpty()) {
            continue;
        } else if (report.startsWith(StageItems)) {
            stages.last().stepCount = report.mid(StageItems.size()).toInt();
        } else if (report.startsWith(ReactionReport)) {
            stages.last().reactions << parseKeyValues(report, ";", "=");
            stages.last().count(stages.last().reactions.constLast());
        } else if (report.startsWith(StageAction)) {
            stages.last().action = report.mid(StageAction.size());
        }
    }
    return stages;
}
} // namespace

class SessionRunTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init();
    void cleanup();

    void playedScriptIsStoredAsTheBoxReportedIt();
    void abortInTheMiddleStopsTheBoxAndSavesTheStagesSoFar();
    void pulledCableLeavesTheSessionRunningUntilAborted();
    void doNotRecordKeepsTheRunOffTheDisk();
    void withoutASubjectTheFileGoesIntoTheRecords();

private:
    // Starts the emulator with these options, then a model that finds it; subject A selected
    // when asked for.
    void startLinked(const QStringList &options, const QStringList &script, bool withSubject);
    void upload() { m_model->device()->uploadScript(m_model->currentScript(), -1, true); }
    // Compares a stored session with the reports of the box, step by step, and the live
    // session's counts with those worked out from the reports.
    void compareWithReports(const QStringList &reports, const QString &path);
    void compareWithTheLog(const QString &path) { compareWithReports(m_emulator->reports(), path); }
    int countReports(const QString &prefix) const { return count(m_emulator->reports(), prefix); }

    TestDataFolder m_data;
    std::unique_ptr<EmulatorProcess> m_emulator;
    std::unique_ptr<TarveloModel> m_model;
    QString m_subjectFolder;
};

void SessionRunTest::init()
{
    m_data.clear();
    m_emulator = std::make_unique<EmulatorProcess>();
}

void SessionRunTest::cleanup()
{
    m_model.reset();
    m_emulator.reset();
    setExtraPorts({});
}

void SessionRunTest::startLinked(const QStringList &options, const QStringList &script,
                                 bool withSubject)
{
    QVERIFY(m_emulator->start(options));
    setExtraPorts({m_emulator->path()});
    m_subjectFolder = m_data.addSubject(NameA, GuidA);
    m_data.writeScript(Title, script);
    m_data.writeSettings("<DeviceSearchTimeout>2</DeviceSearchTimeout>");
    m_model = std::make_unique<TarveloModel>();
    QCOMPARE(m_model->device()->searchInterval(), 2);
    QVERIFY(m_model->currentScript());
    if (withSubject)
        m_model->selectUser(GuidA);
    QTRY_VERIFY_WITH_TIMEOUT(m_model->device()->isConnected(), WinMs);
}

void SessionRunTest::compareWithReports(const QStringList &reports, const QString &path)
{
    const QList<LoggedStage> logged = loggedStages(reports);
    QVERIFY(!logged.isEmpty());
    const QJsonObject stored = TestDataFolder::readJson(path);
    QCOMPARE(stored.value("scriptTitle").toString(), Title);
    const QJsonArray stages = stored.value("stages").toArray();
    QCOMPARE(stages.size(), logged.size());
    QCOMPARE(m_model->session()->stages().size(), logged.size());
    int reactions = 0;
    for (int i = 0; i < logged.size(); ++i) {
        const LoggedStage &expected = logged.at(i);
        const QJsonObject stage = stages.at(i).toObject();
        QCOMPARE(stage.value("index").toInt(), expected.index);
        QCOMPARE(stage.value("stepCount").toInt(), expected.stepCount);
        QCOMPARE(stage.value("action").toString(), expected.action);
        const QJsonArray steps = stage.value("steps").toArray();
        QCOMPARE(steps.size(), expected.reactions.size());
        for (int j = 0; j < steps.size(); ++j) {
            const QJsonObject step = steps.at(j).toObject();
            const QMap<QString, QString> &sent = expected.reactions.at(j);
            const int time = sent.value("r").toInt();
            QCOMPARE(step.value("r").toInt(), qAbs(time));
            QCOMPARE(step.value("v").toBool(), time >= 0);
            for (const char *key : {"s", "b", "b2", "t", "d"})
                QCOMPARE(step.value(key).toInt(), sent.value(key).toInt());
        }
        reactions += steps.size();
        const SessionStage *live = m_model->session()->stages().at(i);
        QCOMPARE((QList<int> {live->correctCount(), live->lateCount(), live->errorCount(),
                              live->missedCount()}),
                 (QList<int> {expected.correct, expected.late, expected.error, expected.missed}));
    }
    QCOMPARE(reactions, count(reports, ReactionReport));
    QCOMPARE(logged.size(), count(reports, StageStarted));
}

void SessionRunTest::playedScriptIsStoredAsTheBoxReportedIt()
{
    startLinked(Subject, RepeatingScript, true);
    if (QTest::currentTestFailed())
        return;
    QSignalSpy started(m_model.get(), &TarveloModel::sessionStarted);
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    upload();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    QCOMPARE(started.count(), 1);
    QVERIFY(!m_model->sessionRunning());

    // The script as written plays 0, its repeat, then 1.
    QCOMPARE(countReports(StageAction), 3);
    const QString name = m_model->session()->fileName();
    QCOMPARE(m_data.allSessionFiles(),
             QStringList {QDir(m_data.records()).relativeFilePath(m_subjectFolder + name)});
    compareWithTheLog(m_subjectFolder + name);
    const QJsonObject stored = TestDataFolder::readJson(m_subjectFolder + name);
    QCOMPARE(stored.value("userName").toString(), NameA);
    QCOMPARE(stored.value("userGUID").toString(), GuidA);
    const QList<LoggedStage> logged = loggedStages(m_emulator->reports());
    QCOMPARE(logged.at(0).action, Action::Repeat);
    QCOMPARE(logged.at(1).action, Action::MaxRepeats);
    // The seed makes a run with every kind of reaction, so each counter was put to the test.
    int late = 0, error = 0, missed = 0;
    for (const LoggedStage &stage : logged) {
        late += stage.late;
        error += stage.error;
        missed += stage.missed;
    }
    QVERIFY(late > 0 && error > 0 && missed > 0);

    // Read back by the program's reader, the stages get the same judgement as live.
    std::unique_ptr<TarveloSession> loaded(TarveloSession::load(m_subjectFolder + name));
    QCOMPARE(loaded->stages().size(), logged.size());
    for (int i = 0; i < logged.size(); ++i)
        QCOMPARE(loaded->stages().at(i)->missedCount(), logged.at(i).missed);
}

void SessionRunTest::abortInTheMiddleStopsTheBoxAndSavesTheStagesSoFar()
{
    startLinked(Subject, LongScript, true);
    if (QTest::currentTestFailed())
        return;
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    upload();
    QTRY_VERIFY_WITH_TIMEOUT(m_model->session() && m_model->session()->stages().size() == 2,
                             PlayMs);
    m_model->abortSession();
    QCOMPARE(finished.count(), 1);
    QVERIFY(!m_model->sessionRunning());
    const QString path = m_subjectFolder + m_model->session()->fileName();
    QVERIFY(QFile::exists(path));

    // The box answers the stop with the end of the script, which writes the file again with
    // whatever was still on its way.
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 2, WinMs);
    QVERIFY(m_emulator->commands().contains(Stop));
    const QStringList log = m_emulator->log();
    QCOMPARE(log.at(log.indexOf("< stop") + 1), "> " + ScriptFinished);
    QVERIFY(countReports(StageStarted) < 3);
    QCOMPARE(m_data.allSessionFiles().size(), 1);
    compareWithTheLog(path);
}

void SessionRunTest::pulledCableLeavesTheSessionRunningUntilAborted()
{
    // "iamtarvelo", "sn=", "version=", the start, stage 0 and its size, then three reactions.
    startLinked(Subject + QStringList {"--drop-after", "9"}, LongScript, true);
    if (QTest::currentTestFailed())
        return;
    QSignalSpy heard(m_model->device(), &TarveloDevice::onMessage);
    QSignalSpy lost(m_model->device(), &TarveloDevice::onDisconnected);
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    upload();
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, PlayMs);
    QVERIFY(m_emulator->waitForExit());
    QVERIFY(m_model->sessionRunning());
    QCOMPARE(finished.count(), 0);
    QCOMPARE(countReports(ReactionReport), 3);

    // A frame on the wire as the cable goes may be lost with it; whatever arrived is the run.
    QStringList received;
    for (const QList<QVariant> &arguments : qAsConst(heard))
        received << arguments.at(0).toString();
    const QStringList sent = m_emulator->reports();
    received = received.mid(received.indexOf(ScriptStarted + Title));
    QCOMPARE(received, sent.mid(sent.indexOf(ScriptStarted + Title), received.size()));
    QVERIFY(count(received, ReactionReport) >= 2);

    m_model->abortSession();
    QCOMPARE(finished.count(), 1);
    QVERIFY(!m_model->sessionRunning());
    compareWithReports(received, m_subjectFolder + m_model->session()->fileName());
}

void SessionRunTest::doNotRecordKeepsTheRunOffTheDisk()
{
    startLinked(Subject, RepeatingScript, true);
    if (QTest::currentTestFailed())
        return;
    // Ticked as the operator would, as soon as the run shows.
    QObject::connect(m_model.get(), &TarveloModel::sessionStarted, m_model.get(),
                     [this] { m_model->session()->setDoNotRecord(true); });
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    upload();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    QCOMPARE(m_model->session()->stages().size(), countReports(StageStarted));
    QVERIFY(m_data.allSessionFiles().isEmpty());
}

void SessionRunTest::withoutASubjectTheFileGoesIntoTheRecords()
{
    startLinked(Subject, RepeatingScript, false);
    if (QTest::currentTestFailed())
        return;
    QVERIFY(!m_model->currentUser());
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    upload();
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    const QString name = m_model->session()->fileName();
    QCOMPARE(m_data.allSessionFiles(), QStringList {name});
    const QJsonObject stored = TestDataFolder::readJson(m_data.records() + name);
    QVERIFY(stored.value("userName").toString().isEmpty());
    QVERIFY(stored.value("userGUID").toString().isEmpty());
    compareWithTheLog(m_data.records() + name);
}

QTEST_GUILESS_MAIN(SessionRunTest)
#include "tst_sessionrun.moc"
