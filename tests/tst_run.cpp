#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/TestDataFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace DeviceProtocol;

namespace {
constexpr int WinMs = 8000;
constexpr int PlayMs = 30000;
const QMap<QString, QString> Guids {{"A", "4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"},
                                    {"B", "0b7e2d55-1c4f-4e2a-8d3b-9f6a5c4e3d21"}};
const QMap<QString, QString> Names {{"A", "Иванов"}, {"B", "Петров"}};
const QString Expected = QStringLiteral("== expected\n");

QString describeStep(const QJsonObject &step)
{
    QString text;
    for (const char *key : {"s", "b", "b2", "r", "t", "d"})
        text += QStringLiteral("%1=%2 ").arg(key).arg(step.value(key).toInt());
    return text + QStringLiteral("v=%1").arg(step.value("v").toBool());
}

// A session as a file would hold it, the times of the run left out, with each stage's counts.
QString describe(const TarveloSession &session, const QString &indent)
{
    const QJsonObject json = session.toJson();
    QString text = indent + "title \"" + json.value("scriptTitle").toString() + "\", subject \""
        + json.value("userName").toString() + "\" " + json.value("userGUID").toString() + '\n';
    const QJsonArray stages = json.value("stages").toArray();
    for (int i = 0; i < stages.size(); ++i) {
        const QJsonObject stage = stages.at(i).toObject();
        const SessionStage *live = session.stages().at(i);
        text += indent
            + QStringLiteral(
                  "  stage %1 of %2 steps, action \"%3\": %4 correct, %5 late, %6 wrong, "
                  "%7 missed\n")
                  .arg(stage.value("index").toInt())
                  .arg(stage.value("stepCount").toInt())
                  .arg(stage.value("action").toString())
                  .arg(live->correctCount())
                  .arg(live->lateCount())
                  .arg(live->errorCount())
                  .arg(live->missedCount());
        for (const QJsonValue &step : stage.value("steps").toArray())
            text += indent + "    " + describeStep(step.toObject()) + '\n';
    }
    return text;
}
} // namespace

class RunTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init();
    void cleanup();
    void scenario_data();
    void scenario();
    void playedScriptIsStoredAsTheBoxReportedIt();
    void abortInTheMiddleStopsTheBoxAndSavesTheStagesSoFar();
    void pulledCableLeavesTheSessionRunningUntilAborted();

private:
    QString run(const QStringList &lines);
    QString outcome();
    // Starts the emulator with these options, then a model that finds it, subject A selected.
    void startLinked(const QStringList &options, const QStringList &stages);
    // The stored session against the reports the box sent, frame by frame.
    void compareWithReports(const QStringList &reports);

    TestDataFolder m_data;
    std::unique_ptr<EmulatorProcess> m_emulator;
    std::unique_ptr<TarveloModel> m_model;
};

void RunTest::init()
{
    m_data.clear();
    setExtraPorts({});
}

void RunTest::cleanup()
{
    m_model.reset();
    m_emulator.reset();
}

void RunTest::scenario_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder(TestFiles::dataPath(QStringLiteral("runs")));
    for (const QString &name : folder.entryList({QStringLiteral("*.run")}, QDir::Files))
        QTest::newRow(qPrintable(name)) << QStringLiteral("runs/") + name;
}

// A run as a scenario file tells it: the box's frames, what the operator does, and where the
// outcome is taken; the expected outcomes follow in the same file.
void RunTest::scenario()
{
    QFETCH(QString, file);
    const QString text = QString::fromUtf8(TestFiles::read(TestFiles::dataPath(file)));
    const int split = text.indexOf(Expected);
    QVERIFY2(split > 0, qPrintable(file));
    const QString actual = run(text.left(split).split('\n'));
    QVERIFY(TestFiles::matchesGolden(file, (text.left(split) + Expected + actual).toUtf8()));
}

QString RunTest::run(const QStringList &lines)
{
    for (auto it = Guids.cbegin(); it != Guids.cend(); ++it)
        m_data.addSubject(Names.value(it.key()), it.value());
    m_model = std::make_unique<TarveloModel>();
    QSignalSpy updated(m_model.get(), &TarveloModel::sessionUpdated);
    QSignalSpy started(m_model.get(), &TarveloModel::sessionStarted);
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    QString out;
    bool fullDisk = false;
    for (const QString &line : lines) {
        const QString command = line.section(' ', 0, 0);
        const QString argument = line.section(' ', 1);
        const QString subjectFolder =
            m_data.records() + Names.value(argument) + " (" + Guids.value(argument) + ')';
        std::unique_ptr<FileSizeLimit> limit(fullDisk ? new FileSizeLimit(100) : nullptr);
        fullDisk = false;
        if (line.startsWith('{')) {
            m_model->device()->receive(line.toUtf8());
        } else if (command == "subject") {
            m_model->selectUser(Guids.value(argument));
        } else if (command == "title") {
            m_model->setCurrentScriptTitle(argument);
        } else if (command == "do-not-record") {
            m_model->session()->setDoNotRecord(argument == "on");
        } else if (command == "abort") {
            m_model->abortSession();
        } else if (command == "full-disk") {
            fullDisk = true;
        } else if (command == "remove-folder") {
            QDir(subjectFolder).removeRecursively();
        } else if (command == "block-folder") {
            QDir(subjectFolder).removeRecursively();
            TestFiles::write(subjectFolder, "in the way");
        } else if (command == "state") {
            const TarveloSession *session = m_model->session();
            out += QStringLiteral("state: %1, %2 updates, %3 started, %4 finished\n")
                       .arg(!session                        ? "no session"
                                : m_model->sessionRunning() ? "running"
                                                            : "ended")
                       .arg(updated.count())
                       .arg(started.count())
                       .arg(finished.count());
            if (session && session->finished() == m_model->sessionRunning())
                out += QStringLiteral("  finished flag wrong\n");
            if (session)
                out += describe(*session, QStringLiteral("  "));
            updated.clear();
            started.clear();
            finished.clear();
        } else if (command == "files") {
            out += outcome();
        } else if (!line.isEmpty() && !line.startsWith('#')) {
            return "unknown command: " + line;
        }
    }
    return out;
}

// Every stored session, read back, its name and times checked but not shown.
QString RunTest::outcome()
{
    QString out = QStringLiteral("files:\n");
    for (const QString &path : m_data.allSessionFiles()) {
        const QJsonObject json = TestDataFolder::readJson(m_data.records() + path);
        const QDateTime start = QDateTime::fromString(json.value("start").toString(), Qt::ISODate);
        const QDateTime end = QDateTime::fromString(json.value("end").toString(), Qt::ISODate);
        out += "  " + QString(path).replace(QRegularExpression("[^/]+$"), "<start>.session");
        if (!path.endsWith(start.toString("yyyy.MM.dd-hh.mm.ss") + ".session"))
            out += " named after another time";
        if (!(end >= start && start.isValid()))
            out += " ends before it starts";
        const std::unique_ptr<TarveloSession> read(TarveloSession::load(m_data.records() + path));
        out += '\n' + describe(*read, QStringLiteral("    "));
    }
    return out;
}

void RunTest::startLinked(const QStringList &options, const QStringList &stages)
{
    m_emulator = std::make_unique<EmulatorProcess>();
    QVERIFY(m_emulator->start(options));
    setExtraPorts({m_emulator->path()});
    m_data.addSubject(Names.value("A"), Guids.value("A"));
    m_data.writeScript(QStringLiteral("Проба"), stages);
    // The search interval is the operator's setting; two seconds leave the greeting time.
    m_data.writeSettings("<DeviceSearchTimeout>2</DeviceSearchTimeout>");
    m_model = std::make_unique<TarveloModel>();
    QCOMPARE(m_model->device()->searchInterval(), 2);
    m_model->selectUser(Guids.value("A"));
    QTRY_VERIFY_WITH_TIMEOUT(m_model->device()->isConnected(), WinMs);
    m_model->device()->uploadScript(m_model->currentScript(), -1, true);
}

void RunTest::compareWithReports(const QStringList &reports)
{
    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const QJsonObject stored = TestDataFolder::readJson(m_data.records() + files.constFirst());
    QCOMPARE(stored.value("userGUID").toString(), Guids.value("A"));
    QStringList expected;
    int stage = -1;
    for (const QString &report : reports.mid(reports.lastIndexOf(ScriptStarted + "Проба") + 1)) {
        if (report.startsWith(StageStarted)) {
            stage = expected.size();
            expected << "stage " + report.mid(StageStarted.size());
        }
        if (report.startsWith(StageItems))
            expected[stage] += " of " + report.mid(StageItems.size());
        if (report.startsWith(StageAction))
            expected[stage] += ' ' + report.mid(StageAction.size());
        if (report.startsWith(ReactionReport)) {
            const std::unique_ptr<SessionStep> step(SessionStep::fromReport(report));
            expected << describeStep(step->toJson());
        }
    }
    QStringList written;
    for (const QJsonValue &value : stored.value("stages").toArray()) {
        const QJsonObject stage = value.toObject();
        written << QStringLiteral("stage %1 of %2")
                       .arg(stage.value("index").toInt())
                       .arg(stage.value("stepCount").toInt());
        if (!stage.value("action").toString().isEmpty())
            written.last() += ' ' + stage.value("action").toString();
        for (const QJsonValue &step : stage.value("steps").toArray())
            written << describeStep(step.toObject());
    }
    QCOMPARE(written, expected);
}

void RunTest::playedScriptIsStoredAsTheBoxReportedIt()
{
    // Stage 0 repeats once and then runs out of repeats: 0, 0 again, then 1.
    startLinked(QStringLiteral("--speed 20 --seed 5 --wrong 0.25 --late 0.2 --miss 0.2").split(' '),
                {"s-0=0;rpt=1;[s=3,t=1000,d=500][s=13,t=800,d=400][s=10,t=1000,d=500]",
                 "rpt=0;[s=0,t=1000,d=500][s=16,t=900,d=300]"});
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    QVERIFY(!m_model->sessionRunning());
    QCOMPARE(m_emulator->reports().filter(StageAction).join(' '),
             QStringLiteral("stageAction=repeat stageAction=maxRepeats stageAction=+1"));
    compareWithReports(m_emulator->reports());
}

void RunTest::abortInTheMiddleStopsTheBoxAndSavesTheStagesSoFar()
{
    const QString stage =
        QStringLiteral("rpt=0;") + QStringLiteral("[s=3,t=1000,d=500]").repeated(8);
    startLinked(QStringLiteral("--speed 20").split(' '), {stage, stage, stage});
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    QTRY_VERIFY_WITH_TIMEOUT(m_model->session() && m_model->session()->stages().size() == 2,
                             PlayMs);
    m_model->abortSession();
    QCOMPARE(finished.count(), 1);
    QVERIFY(!m_model->sessionRunning());
    QCOMPARE(m_data.allSessionFiles().size(), 1);
    // The box answers the stop with the end of the script, which writes the file again with
    // whatever was still on its way.
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 2, WinMs);
    const QStringList log = m_emulator->log();
    QCOMPARE(log.at(log.indexOf("< stop") + 1), "> " + ScriptFinished);
    compareWithReports(m_emulator->reports());
}

void RunTest::pulledCableLeavesTheSessionRunningUntilAborted()
{
    // "iamtarvelo", "sn=", "version=", the start, stage 0 and its size, then three reactions.
    const QString stage =
        QStringLiteral("rpt=0;") + QStringLiteral("[s=3,t=1000,d=500]").repeated(8);
    startLinked(QStringLiteral("--speed 20 --drop-after 9").split(' '), {stage, stage});
    QSignalSpy heard(m_model->device(), &TarveloDevice::onMessage);
    QSignalSpy lost(m_model->device(), &TarveloDevice::onDisconnected);
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, PlayMs);
    QVERIFY(m_emulator->waitForExit());
    QVERIFY(m_model->sessionRunning());
    QCOMPARE(finished.count(), 0);

    // A frame on the wire as the cable goes may be lost with it; whatever arrived is the run.
    QStringList received;
    for (const QList<QVariant> &arguments : qAsConst(heard))
        received << arguments.at(0).toString();
    received = received.mid(received.indexOf(ScriptStarted + "Проба"));
    const QStringList sent = m_emulator->reports();
    QCOMPARE(received, sent.mid(sent.indexOf(received.constFirst()), received.size()));
    QVERIFY(received.filter(QRegularExpression("^r=")).size() >= 2);
    m_model->abortSession();
    QCOMPARE(finished.count(), 1);
    compareWithReports(received);
}

QTEST_GUILESS_MAIN(RunTest)
#include "tst_run.moc"
