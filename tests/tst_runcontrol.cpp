#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "support/EmulatorProcess.h"
#include "support/FakeBox.h"
#include "support/TestDataFolder.h"

#include <QSignalSpy>
#include <QtTest>

#include <climits>
#include <csignal>
#include <sys/resource.h>

namespace {
const QString GuidA = QStringLiteral("4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10");
const QString GuidB = QStringLiteral("0b7e2d55-1c4f-4e2a-8d3b-9f6a5c4e3d21");
const QString NameA = QStringLiteral("Иванов");
const QString NameB = QStringLiteral("Петров");
const QString Reaction = QStringLiteral("r=400;b=3;s=3;t=900;d=100");

void play(TarveloModel &model, const QStringList &reports)
{
    for (const QString &report : reports)
        model.handleDeviceMessage(report);
}

// The model's state and its session in one line: "ended Title [index:stepCount:action:steps]".
QString describe(const TarveloModel &model)
{
    const TarveloSession *session = model.session();
    if (!session)
        return model.sessionRunning() ? QStringLiteral("running without a session")
                                      : QStringLiteral("none");
    QString text = model.sessionRunning() ? QStringLiteral("running") : QStringLiteral("ended");
    if (session->finished() == model.sessionRunning())
        text += QStringLiteral(" (finished flag wrong)");
    text += QLatin1Char(' ') + session->scriptTitle();
    for (const SessionStage *stage : session->stages())
        text += QStringLiteral(" [%1:%2:%3:%4]")
                    .arg(stage->index)
                    .arg(stage->stepCount)
                    .arg(stage->action)
                    .arg(stage->steps().size());
    return text;
}

// The sizes of the stage arrays of a stored session, read by Qt's parser alone.
QList<int> storedStageSteps(const QString &path)
{
    QList<int> sizes;
    const QJsonArray stages =
        TestDataFolder::readJson(path).value(QStringLiteral("stages")).toArray();
    for (const QJsonValue &stage : stages)
        sizes << stage.toObject().value(QStringLiteral("steps")).toArray().size();
    return sizes;
}

// Runs a block with writes limited to that many bytes per file, then lifts the limit again.
template<typename Block>
void withFileSizeLimit(rlim_t bytes, Block block)
{
    rlimit original {};
    getrlimit(RLIMIT_FSIZE, &original);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = original;
    small.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &small);
    block();
    setrlimit(RLIMIT_FSIZE, &original);
    std::signal(SIGXFSZ, oldHandler);
}
} // namespace

class RunControlTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_data.isValid()); }
    void init()
    {
        m_data.clear();
        setExtraPorts({});
    }

    void everyPrefix_data();
    void everyPrefix();
    void reportsBeforeTheFirstSessionAreDropped();
    void reportsBeforeAnyStage();
    void startOpensASession_data();
    void startOpensASession();
    void startWhileRunningDropsTheOldSessionUnsaved();
    void finishWritesTheSessionAndEndsTheRun();
    void reportsAfterTheEndAreKeptAndAFurtherFinishWritesThemUnderTheSameName();
    void abortInEachStateSendsStop();
    void doNotRecord_data();
    void doNotRecord();
    void filePlacement_data();
    void filePlacement();
    void vanishedSubjectFolderIsMadeAgain();
    void reactionReport_data();
    void reactionReport();
    void folderThatCantBeMadeLosesOnlyThisSave();
    void failedRewriteKeepsTheEarlierFile();

private:
    TestDataFolder m_data;
};

void RunControlTest::everyPrefix_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("updates");

    const QString before = QStringLiteral("running T [4:2::1]");
    QTest::newRow("stage start") << "stageStarted=7" << before + " [7:0::0]" << 1;
    QTest::newRow("stage start, no number") << "stageStarted=seven" << before + " [0:0::0]" << 1;
    QTest::newRow("stage start, empty") << "stageStarted=" << before + " [0:0::0]" << 1;
    QTest::newRow("stage size") << "stageItems=12"
                                << "running T [4:12::1]" << 1;
    QTest::newRow("stage size, no number") << "stageItems=many"
                                           << "running T [4:0::1]" << 1;
    QTest::newRow("stage action") << "stageAction=+1"
                                  << "running T [4:2:+1:1]" << 1;
    QTest::newRow("stage action, unknown word kept verbatim")
        << "stageAction=Ещё раз; {x}"
        << "running T [4:2:Ещё раз; {x}:1]" << 1;
    QTest::newRow("stage action, empty") << "stageAction="
                                         << "running T [4:2::1]" << 1;
    QTest::newRow("reaction") << Reaction << "running T [4:2::2]" << 1;
    QTest::newRow("finish") << "scriptFinished"
                            << "ended T [4:2::1]" << 1;
    QTest::newRow("finish, text behind not read") << "scriptFinished=whatever"
                                                  << "ended T [4:2::1]" << 1;
    QTest::newRow("start") << "scriptStarted=U"
                           << "running U" << 1;

    const QStringList ignored {
        "stageStarted",  "stageItems",
        "stageAction",   "r",
        "scriptStarted", "StageStarted=1",
        "R=400",         " r=400",
        "rpt=3",         "",
        "iamtarvelo",    "sn=240315",
        "version=2.4.1", "state=000000000000;btns=000000000",
    };
    for (const QString &message : ignored)
        QTest::newRow(qPrintable("ignored: '" + message + "'")) << message << before << 0;
}

void RunControlTest::everyPrefix()
{
    QFETCH(QString, message);
    QFETCH(QString, after);
    QFETCH(int, updates);
    TarveloModel model;
    play(model, {"scriptStarted=T", "stageStarted=4", "stageItems=2", Reaction});
    QSignalSpy updated(&model, &TarveloModel::sessionUpdated);
    model.handleDeviceMessage(message);
    QCOMPARE(describe(model), after);
    QCOMPARE(updated.count(), updates);
}

void RunControlTest::reportsBeforeTheFirstSessionAreDropped()
{
    TarveloModel model;
    QSignalSpy updated(&model, &TarveloModel::sessionUpdated);
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    play(model, {"stageStarted=1", "stageItems=3", Reaction, "stageAction=+1", "scriptFinished"});
    model.abortSession();
    QCOMPARE(describe(model), QStringLiteral("none"));
    QCOMPARE(updated.count(), 0);
    QCOMPARE(finished.count(), 0);
    QVERIFY(m_data.allSessionFiles().isEmpty());
}

void RunControlTest::reportsBeforeAnyStage()
{
    TarveloModel model;
    model.handleDeviceMessage(QStringLiteral("scriptStarted=T"));
    QSignalSpy updated(&model, &TarveloModel::sessionUpdated);
    // Nowhere to put them: lost without a signal.
    play(model, {Reaction, "stageAction=+1"});
    QCOMPARE(describe(model), QStringLiteral("running T"));
    QCOMPARE(updated.count(), 0);
    // A size without a stage opens stage 0: one signal for the stage, one for its size.
    model.handleDeviceMessage(QStringLiteral("stageItems=3"));
    QCOMPARE(describe(model), QStringLiteral("running T [0:3::0]"));
    QCOMPARE(updated.count(), 2);
}

void RunControlTest::startOpensASession_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("scriptTitle");
    QTest::addColumn<bool>("withSubject");
    QTest::addColumn<QString>("title");

    QTest::newRow("the box's title") << "scriptStarted=Проба"
                                     << "Другой" << true << "Проба";
    QTest::newRow("empty title: the selected script's") << "scriptStarted="
                                                        << "Другой" << true << "Другой";
    QTest::newRow("empty title, no script") << "scriptStarted="
                                            << "" << false << "";
    QTest::newRow("title kept as sent") << "scriptStarted= a=b; c "
                                        << "" << false << " a=b; c ";
}

void RunControlTest::startOpensASession()
{
    QFETCH(QString, message);
    QFETCH(QString, scriptTitle);
    QFETCH(bool, withSubject);
    QFETCH(QString, title);
    m_data.addSubject(QStringLiteral(" Иванов "), GuidA);
    TarveloModel model;
    if (withSubject)
        model.selectUser(GuidA);
    model.setCurrentScriptTitle(scriptTitle);

    const QDateTime before = QDateTime::currentDateTime();
    model.handleDeviceMessage(message);
    const QDateTime after = QDateTime::currentDateTime();
    const TarveloSession *session = model.session();
    QVERIFY(session);
    QVERIFY(!session->parent());
    QVERIFY(model.sessionRunning());
    QCOMPARE(session->scriptTitle(), title);
    QCOMPARE(session->userName(), withSubject ? NameA : QString());
    QCOMPARE(session->userGUID(), withSubject ? GuidA : QString());
    QVERIFY(session->start() >= before && session->start() <= after);
    QCOMPARE(session->start().timeSpec(), Qt::LocalTime);
    QVERIFY(!session->finished());
    QVERIFY(!session->end().isValid());
    QVERIFY(session->stages().isEmpty());
}

void RunControlTest::startWhileRunningDropsTheOldSessionUnsaved()
{
    TarveloModel model;
    play(model, {"scriptStarted=First", "stageStarted=0", "stageItems=1", Reaction});
    TarveloSession *first = model.session();
    QSignalSpy started(&model, &TarveloModel::sessionStarted);
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    model.handleDeviceMessage(QStringLiteral("scriptStarted=Second"));
    QVERIFY(model.session() != first);
    QCOMPARE(describe(model), QStringLiteral("running Second"));
    QCOMPARE(started.count(), 1);
    QCOMPARE(finished.count(), 0);
    // Left as it was for whoever still shows it.
    QVERIFY(!first->finished());
    QVERIFY(!first->end().isValid());
    QCOMPARE(first->stages().size(), 1);
    QVERIFY(m_data.allSessionFiles().isEmpty());
    delete first;
}

void RunControlTest::finishWritesTheSessionAndEndsTheRun()
{
    const QString folder = m_data.addSubject(NameA, GuidA);
    TarveloModel model;
    model.selectUser(GuidA);
    play(model,
         {"scriptStarted=Проба", "stageStarted=0", "stageItems=2", Reaction,
          "r=-1500;b=10;s=13;t=1500;d=700", "stageAction=repeat", "stageStarted=0", "stageItems=2",
          Reaction, "stageAction=maxRepeats"});
    const TarveloSession *session = model.session();
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
    QCOMPARE(model.session(), session); // stays for the views
    QCOMPARE(describe(model), QStringLiteral("ended Проба [0:2:repeat:2] [0:2:maxRepeats:1]"));
    QVERIFY(session->end().isValid() && session->end() >= session->start());

    const QString name = session->start().toString("yyyy.MM.dd-hh.mm.ss") + ".session";
    QCOMPARE(m_data.allSessionFiles(), QStringList {NameA + " (" + GuidA + ")/" + name});
    const QJsonObject stored = TestDataFolder::readJson(folder + name);
    QCOMPARE(stored, session->toJson());
    QCOMPARE(stored.value("userName").toString(), NameA);
    QCOMPARE(stored.value("start").toString(), session->start().toString(Qt::ISODate));
    QCOMPARE(storedStageSteps(folder + name), (QList<int> {2, 1}));
}

void RunControlTest::reportsAfterTheEndAreKeptAndAFurtherFinishWritesThemUnderTheSameName()
{
    TarveloModel model;
    play(model,
         {"scriptStarted=T", "stageStarted=0", "stageItems=1", Reaction, "stageAction=+1",
          "scriptFinished"});
    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const QString path = m_data.records() + files.constFirst();
    const QByteArray firstWrite = TestFiles::read(path);
    const QDateTime firstEnd = model.session()->end();

    QSignalSpy updated(&model, &TarveloModel::sessionUpdated);
    QSignalSpy started(&model, &TarveloModel::sessionStarted);
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    play(model, {"stageStarted=1", "stageItems=1", Reaction, "stageAction=+1"});
    QCOMPARE(describe(model), QStringLiteral("ended T [0:1:+1:1] [1:1:+1:1]"));
    QCOMPARE(updated.count(), 4);
    QCOMPARE(started.count(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(TestFiles::read(path), firstWrite);

    // What the box says after a stop: the session is written again, under the same name.
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
    QCOMPARE(updated.count(), 5);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_data.allSessionFiles(), files);
    QCOMPARE(storedStageSteps(path), (QList<int> {1, 1}));
    QVERIFY(model.session()->end() >= firstEnd);
    QCOMPARE(TestDataFolder::readJson(path).value("end").toString(),
             model.session()->end().toString(Qt::ISODate));
}

void RunControlTest::abortInEachStateSendsStop()
{
    FakeBox box;
    QVERIFY(box.open());
    setExtraPorts({box.path()});
    TarveloModel model;
    QTRY_VERIFY_WITH_TIMEOUT(model.device()->isConnected(), 8000);
    QSignalSpy updated(&model, &TarveloModel::sessionUpdated);
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    auto stops = [&box] {
        return box.commands().count(DeviceProtocol::Stop);
    };

    // None: the box is told, the model stays as it is.
    model.abortSession();
    QTRY_COMPARE(stops(), 1);
    QCOMPARE(describe(model), QStringLiteral("none"));
    QCOMPARE(updated.count(), 0);

    // Running: the box is told, the session ends and is saved with what it has.
    play(model, {"scriptStarted=T", "stageStarted=0", "stageItems=3", Reaction});
    updated.clear();
    model.abortSession();
    QTRY_COMPARE(stops(), 2);
    QCOMPARE(describe(model), QStringLiteral("ended T [0:3::1]"));
    QCOMPARE(updated.count(), 1);
    QCOMPARE(finished.count(), 1);
    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const QString path = m_data.records() + files.constFirst();
    const QByteArray saved = TestFiles::read(path);
    QCOMPARE(storedStageSteps(path), QList<int> {1});

    // Ended: the box is told again, nothing else happens.
    model.abortSession();
    QTRY_COMPARE(stops(), 3);
    QCOMPARE(updated.count(), 1);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(TestFiles::read(path), saved);

    // The box's answer to the stop arrives on the link and ends the session once more.
    box.send(DeviceProtocol::ScriptFinished);
    QTRY_COMPARE(finished.count(), 2);
    QCOMPARE(m_data.allSessionFiles(), files);
    QCOMPARE(storedStageSteps(path), QList<int> {1});
}

void RunControlTest::doNotRecord_data()
{
    QTest::addColumn<QList<bool>>("ticks");
    QTest::addColumn<bool>("written");
    QTest::newRow("ticked") << QList<bool> {true} << false;
    QTest::newRow("ticked, then unticked") << QList<bool> {true, false} << true;
    QTest::newRow("never ticked") << QList<bool> {} << true;
}

void RunControlTest::doNotRecord()
{
    QFETCH(QList<bool>, ticks);
    QFETCH(bool, written);
    TarveloModel model;
    play(model, {"scriptStarted=T", "stageStarted=0", "stageItems=1", Reaction});
    for (bool tick : ticks)
        model.session()->setDoNotRecord(tick);
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(describe(model), QStringLiteral("ended T [0:1::1]"));
    QCOMPARE(m_data.allSessionFiles().size(), written ? 1 : 0);
}

void RunControlTest::filePlacement_data()
{
    QTest::addColumn<QString>("atStart");
    QTest::addColumn<QString>("atEnd");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("userName");

    const QString folderA = NameA + " (" + GuidA + ")/";
    const QString folderB = NameB + " (" + GuidB + ")/";
    QTest::newRow("one subject throughout") << GuidA << GuidA << folderA << NameA;
    QTest::newRow("no subject: directly in the records") << ""
                                                         << ""
                                                         << ""
                                                         << "";
    QTest::newRow("changed during the run") << GuidA << GuidB << folderB << NameA;
    QTest::newRow("chosen during the run") << "" << GuidB << folderB << "";
    QTest::newRow("dropped during the run") << GuidA << ""
                                            << "" << NameA;
}

void RunControlTest::filePlacement()
{
    QFETCH(QString, atStart);
    QFETCH(QString, atEnd);
    QFETCH(QString, folder);
    QFETCH(QString, userName);
    m_data.addSubject(NameA, GuidA);
    m_data.addSubject(NameB, GuidB);
    TarveloModel model;
    model.selectUser(atStart);
    play(model, {"scriptStarted=T", "stageStarted=0", "stageItems=1", Reaction});
    model.selectUser(atEnd);
    model.handleDeviceMessage(QStringLiteral("scriptFinished"));

    const QString name = model.session()->fileName();
    QCOMPARE(m_data.allSessionFiles(), QStringList {folder + name});
    const QJsonObject stored = TestDataFolder::readJson(m_data.records() + folder + name);
    // Name and GUID are those of the start.
    QCOMPARE(stored.value("userName").toString(), userName);
    QCOMPARE(stored.value("userGUID").toString(), atStart);
}

void RunControlTest::vanishedSubjectFolderIsMadeAgain()
{
    const QString folder = m_data.addSubject(NameA, GuidA);
    TarveloModel model;
    model.selectUser(GuidA);
    QVERIFY(QDir(folder).removeRecursively());
    play(model, {"scriptStarted=T", "stageStarted=0", "stageItems=1", Reaction, "scriptFinished"});
    QCOMPARE(TestDataFolder::sessionFiles(folder), QStringList {model.session()->fileName()});
}

void RunControlTest::reactionReport_data()
{
    QTest::addColumn<QString>("report");
    QTest::addColumn<QList<int>>("sbb2rtd");
    QTest::addColumn<bool>("v");
    QTest::addColumn<QString>("outcome");

    using L = QList<int>;
    QTest::newRow("whole report") << "r=412;b=3;b2=3;s=3;t=2000;d=1000"
                                  << L {3, 3, 3, 412, 2000, 1000} << true << "correct";
    QTest::newRow("negative time: its size, flag cleared, missed")
        << "r=-350;b=3;s=3;t=2000;d=100" << L {3, 3, 3, 350, 2000, 100} << false << "missed";
    QTest::newRow("zero keeps the flag")
        << "r=0;b=3;s=3;t=2000;d=100" << L {3, 3, 3, 0, 2000, 100} << true << "correct";
    QTest::newRow("equal to the allowed time is in time")
        << "r=500;b=3;s=3;t=500" << L {3, 3, 3, 500, 500, 0} << true << "correct";
    QTest::newRow("late and wrong is late")
        << "r=600;b=0;s=3;t=500" << L {3, 0, 3, 600, 500, 0} << true << "late";
    QTest::newRow("missed and late is missed")
        << "r=-900;b=3;s=3;t=500" << L {3, 3, 3, 900, 500, 0} << false << "missed";
    QTest::newRow("b=99 names no control")
        << "r=300;b=99;s=3;t=500" << L {3, 10, 3, 300, 500, 0} << true << "error";
    QTest::newRow("b=-1 names no control")
        << "r=300;b=-1;s=3;t=500" << L {3, 10, 3, 300, 500, 0} << true << "error";
    QTest::newRow("b=10 stays") << "r=300;b=10;s=3;t=500" << L {3, 10, 3, 300, 500, 0} << true
                                << "error";
    QTest::newRow("s=19 is the first stimulus")
        << "r=300;b=0;s=19;t=500" << L {0, 0, 0, 300, 500, 0} << true << "correct";
    QTest::newRow("s=-1 is the first stimulus")
        << "r=300;b=0;s=-1;t=500" << L {0, 0, 0, 300, 500, 0} << true << "correct";
    QTest::newRow("s=18 stays, needing no control")
        << "r=300;b=9;s=18;t=500" << L {18, 9, 9, 300, 500, 0} << true << "correct";
    QTest::newRow("b2 of the box is ignored")
        << "r=300;b=3;b2=7;s=3;t=500" << L {3, 3, 3, 300, 500, 0} << true << "correct";
    QTest::newRow("most negative time doesn't overflow")
        << "r=-2147483648;b=3;s=3;t=500" << L {3, 3, 3, INT_MAX, 500, 0} << false << "missed";
    QTest::newRow("time beyond int doesn't convert")
        << "r=2147483648;b=3;s=3;t=500" << L {3, 3, 3, 0, 500, 0} << true << "correct";
    QTest::newRow("only the prefix: every default")
        << "r=" << L {1, 10, 2, 0, 0, 0} << true << "error";
    QTest::newRow("garbled numbers are zeros")
        << "r=4x2;b=three;s=;t=1.5e3;d=--" << L {1, 0, 2, 0, 0, 0} << true << "error";
    QTest::newRow("pair with two equals signs is dropped")
        << "r=300;b=2;s=3=4;t=500" << L {1, 2, 2, 300, 500, 0} << true << "correct";
    QTest::newRow("blanks around values")
        << "r= 300 ;b= 3;s=3 ;t=500 ;d= 7" << L {3, 3, 3, 300, 500, 7} << true << "correct";
    QTest::newRow("the later of two keys wins")
        << "r=100;r=-200;b=3;s=3;t=500" << L {3, 3, 3, 200, 500, 0} << false << "missed";
    QTest::newRow("empty pieces") << "r=300;;;b=3;;s=3;t=500;" << L {3, 3, 3, 300, 500, 0} << true
                                  << "correct";
}

void RunControlTest::reactionReport()
{
    QFETCH(QString, report);
    QFETCH(QList<int>, sbb2rtd);
    QFETCH(bool, v);
    QFETCH(QString, outcome);
    TarveloModel model;
    play(model, {"scriptStarted=T", "stageStarted=0", "stageItems=1", report});
    const SessionStage *stage = model.session()->stages().constFirst();
    QCOMPARE(stage->steps().size(), 1);
    const SessionStep *step = stage->steps().constFirst();
    QCOMPARE((QList<int> {step->s, step->b, step->b2, step->r, step->t, step->d}), sbb2rtd);
    QCOMPARE(step->v, v);
    const QMap<QString, int> counts {{"correct", stage->correctCount()},
                                     {"late", stage->lateCount()},
                                     {"error", stage->errorCount()},
                                     {"missed", stage->missedCount()}};
    QCOMPARE(counts.value(outcome), 1);
    QCOMPARE(counts.key(1), outcome);
}

void RunControlTest::folderThatCantBeMadeLosesOnlyThisSave()
{
    const QString folder = m_data.addSubject(NameA, GuidA);
    TarveloModel model;
    model.selectUser(GuidA);
    // An earlier run without a subject, and a file standing where the subject's folder was.
    model.selectUser(QString());
    play(model,
         {"scriptStarted=Earlier", "stageStarted=0", "stageItems=1", Reaction, "scriptFinished"});
    const QStringList earlier = m_data.allSessionFiles();
    QCOMPARE(earlier.size(), 1);
    const QByteArray earlierBytes = TestFiles::read(m_data.records() + earlier.constFirst());
    model.selectUser(GuidA);
    QVERIFY(QDir(folder).removeRecursively());
    const QString blocker = folder.chopped(1);
    QVERIFY(TestFiles::write(blocker, "in the way"));

    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    play(model,
         {"scriptStarted=Later", "stageStarted=0", "stageItems=1", Reaction, "scriptFinished"});
    QCOMPARE(finished.count(), 1);
    QCOMPARE(describe(model), QStringLiteral("ended Later [0:1::1]"));
    QCOMPARE(TestFiles::read(blocker), QByteArray("in the way"));
    QCOMPARE(m_data.allSessionFiles(), earlier);
    QCOMPARE(TestFiles::read(m_data.records() + earlier.constFirst()), earlierBytes);
}

void RunControlTest::failedRewriteKeepsTheEarlierFile()
{
    TarveloModel model;
    play(model,
         {"scriptStarted=T", "stageStarted=0", "stageItems=1", Reaction, "stageAction=+1",
          "scriptFinished"});
    const QString path = m_data.records() + model.session()->fileName();
    const QByteArray firstWrite = TestFiles::read(path);
    QVERIFY(!firstWrite.isEmpty());
    play(model, {"stageStarted=1", "stageItems=1", Reaction, "stageAction=+1"});

    // The disk fills up just as the box's late "scriptFinished" makes the second write.
    QSignalSpy finished(&model, &TarveloModel::sessionFinished);
    withFileSizeLimit(rlim_t(firstWrite.size()),
                      [&model] { model.handleDeviceMessage(QStringLiteral("scriptFinished")); });
    QCOMPARE(finished.count(), 1);
    QCOMPARE(TestFiles::read(path), firstWrite);
    QCOMPARE(QDir(m_data.records()).entryList(QDir::Files | QDir::Hidden),
             QStringList {model.session()->fileName()});
}

QTEST_GUILESS_MAIN(RunControlTest)
#include "tst_runcontrol.moc"
