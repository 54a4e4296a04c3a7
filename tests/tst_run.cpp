#include "app/TarveloModel.h"
#include "data/TarveloScript.h"
#include "data/TarveloSession.h"
#include "data/TarveloSettings.h"
#include "data/TarveloUser.h"
#include "device/DeviceProtocol.h"
#include "device/TarveloDevice.h"
#include "session/SessionRecorder.h"
#include "support/EmulatorProcess.h"
#include "support/TestDataFolder.h"
#include "tools/devsim/TransferRule.h"

#include <QtTest>

#include <memory>
#include <optional>

using namespace DeviceProtocol;

namespace {
constexpr int PlayMs = 30000;
const QMap<QString, QString> Guids {{"A", "4c1d8f2a-6a3e-4f77-9a50-3e1c2b7d9e10"},
                                    {"B", "0b7e2d55-1c4f-4e2a-8d3b-9f6a5c4e3d21"}};
const QMap<QString, QString> Names {{"A", "Иванов"}, {"B", "Петров"}};
const QString Expected = QStringLiteral("== expected\n");

// A session without the times of its run, each stage with its counts.
QString describe(const TarveloSession &session, const QString &indent)
{
    QString text = indent + "title \"" + session.scriptTitle() + "\", subject \""
        + session.userName() + "\" " + session.userGUID() + '\n';
    for (const SessionStage *stage : session.stages()) {
        text += indent
            + QStringLiteral("  stage %1 of %2 steps, action \"%3\": ")
                  .arg(stage->index)
                  .arg(stage->stepCount)
                  .arg(stage->action)
            + QString::asprintf("%d correct, %d late, %d wrong, %d missed\n", stage->correctCount(),
                                stage->lateCount(), stage->errorCount(), stage->missedCount());
        for (const SessionStep *step : stage->steps())
            text += indent
                + QString::asprintf("    s=%d b=%d b2=%d r=%d t=%d d=%d v=%d\n", step->s, step->b,
                                    step->b2, step->r, step->t, step->d, step->v);
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
    void transferRule_data() { TestFiles::addRows(QStringLiteral("tables/transfer_rule.txt")); }
    void transferRule();
    void playedScriptIsStoredAsTheBoxReportedIt();
    void subjectFileWithoutGuidGetsAStableOneAndIsNotWritten();

private:
    void startModel();
    QString run(const QStringList &lines);
    QString modelState() const;
    QString outcome();

    TestDataFolder m_data;
    std::unique_ptr<EmulatorProcess> m_emulator;
    std::unique_ptr<TarveloModel> m_model;
    int m_updated = 0;
    int m_started = 0;
    int m_finished = 0;
};

void RunTest::init()
{
    m_data.clear();
    setExtraPorts({});
    m_updated = m_started = m_finished = 0;
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

void RunTest::startModel()
{
    m_model.reset();
    m_model = std::make_unique<TarveloModel>();
    connect(m_model.get(), &TarveloModel::sessionUpdated, this, [this] { ++m_updated; });
    connect(m_model.get(), &TarveloModel::sessionStarted, this, [this] { ++m_started; });
    connect(m_model.get(), &TarveloModel::sessionFinished, this, [this] { ++m_finished; });
}

// Runs the lines of a scenario on a model whose data folder holds subjects A and B, and returns
// what "state", "files" and "model" report. A line "{...}" is a frame from the box, read as the
// link reads it; the other lines are steps of the operator or of the test:
//   subject A|B|-|<GUID>, reload-subjects, folder <name in Records>[ | <its User.xml>],
//   reload-scripts, add-subject <GUID> | <last name>, rename <new last name of the current
//   subject>, folders (what the documents, the data and the records folders hold), remove-folder
//   A|B, block-folder A|B (a file stands in its place), script <file> | <title in it>,
//   select-script <title>, edit-script <new title> (and a stage more), commit save|cancel,
//   remove-script, title <title of the selected script>, free <title> | <own title>, settings
//   <elements of Settings.xml>, set <name> | <value>, restart (a new model, as at the next start),
//   do-not-record on|off, abort, full-disk (the next line writes onto a full disk).
QString RunTest::run(const QStringList &lines)
{
    for (auto it = Guids.cbegin(); it != Guids.cend(); ++it)
        m_data.addSubject(Names.value(it.key()), it.value());
    startModel();
    QString out;
    bool fullDisk = false;
    for (const QString &line : lines) {
        const QString command = line.section(' ', 0, 0);
        const QString argument = line.section(' ', 1);
        const QString first = argument.section(" | ", 0, 0);
        const QString second = argument.section(" | ", 1);
        const QString guid = Guids.value(argument, argument == "-" ? QString() : argument);
        const QString subjectFolder = m_data.records() + Names.value(argument) + " (" + guid + ')';
        std::optional<TestFiles::FileSizeLimit> limit;
        if (std::exchange(fullDisk, false))
            limit.emplace(100);
        TarveloScript *script = m_model->currentScript();
        if (line.startsWith('{')) {
            m_model->device()->receive(line.toUtf8());
        } else if (command == "restart") {
            startModel();
        } else if (command == "settings") {
            m_data.writeSettings(argument.toUtf8());
        } else if (command == "set") {
            m_model->settings()->setTextValue(first, second);
        } else if (command == "script") {
            TarveloScript written;
            written.setTitle(second);
            written.addStage(ScriptStage::fromText(QStringLiteral("rpt=1;[s=1,t=100,d=100]")));
            QDir().mkpath(QFileInfo(m_data.scripts() + first).path());
            written.save(m_data.scripts() + first);
        } else if (command == "select-script") {
            m_model->selectScript(argument);
        } else if (command == "edit-script") {
            script->setTitle(argument);
            script->addStage(new ScriptStage);
        } else if (command == "commit") {
            m_model->commitScript(argument == "save");
        } else if (command == "remove-script") {
            m_model->removeCurrentScript(true);
        } else if (command == "title") {
            m_model->setCurrentScriptTitle(argument);
        } else if (command == "free") {
            out += QStringLiteral("\"%1\" free beside \"%2\": %3\n")
                       .arg(first, second, m_model->isTitleFree(first, second) ? "yes" : "no");
        } else if (command == "subject") {
            m_model->selectUser(guid);
        } else if (command == "add-subject") {
            TarveloUser user;
            user.setGUID(first);
            user.setLastName(second);
            m_model->addUser(&user);
        } else if (command == "rename") {
            TarveloUser edited;
            edited.copyFrom(m_model->currentUser());
            edited.setLastName(argument);
            m_model->updateUser(edited.getGUID(), &edited);
        } else if (command == "folders") {
            const auto entries = [](const QString &path) {
                return QDir(path)
                    .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)
                    .join(", ");
            };
            out += "folders: " + entries(m_data.documents()) + " / " + entries(m_data.root() + "..")
                + " / " + entries(m_data.root()) + " / " + entries(m_data.records())
                + "\n  current subject named \"" + m_model->currentUser()->getLastName() + "\"\n";
        } else if (command == "reload-scripts") {
            m_model->reloadScripts();
        } else if (command == "reload-subjects") {
            m_model->reloadUsers();
        } else if (command == "folder") {
            QDir().mkpath(m_data.records() + first);
            if (!second.isEmpty())
                TestFiles::write(m_data.records() + first + "/User.xml", second.toUtf8());
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
        } else if (command == "model") {
            out += modelState();
        } else if (command == "state") {
            const TarveloSession *session = m_model->session();
            out += QStringLiteral("state: %1, %2 updates, %3 started, %4 finished, file %5\n")
                       .arg(!session                        ? "no session"
                                : m_model->sessionRunning() ? "running"
                                                            : "ended")
                       .arg(std::exchange(m_updated, 0))
                       .arg(std::exchange(m_started, 0))
                       .arg(std::exchange(m_finished, 0))
                       .arg(QMetaEnum::fromType<SessionRecorder::SaveState>().valueToKey(
                           int(m_model->recorder()->saveState())));
            if (session && session->finished() == m_model->sessionRunning())
                out += QStringLiteral("  finished flag wrong\n");
            if (session)
                out += describe(*session, QStringLiteral("  "));
        } else if (command == "files") {
            out += outcome();
        } else if (!line.isEmpty() && !line.startsWith('#')) {
            return "unknown command: " + line;
        }
    }
    return out;
}

// The scripts, subjects and link of the model, and what the settings file holds.
QString RunTest::modelState() const
{
    const TarveloModel &model = *m_model;
    QStringList titles = model.scriptTitles();
    titles.sort();
    QString out =
        "model: scripts " + titles.join(", ") + "; current \"" + model.currentScriptTitle() + '"';
    if (const TarveloScript *script = model.currentScript())
        out += QStringLiteral(", titled \"%1\", of %2 stages")
                   .arg(script->title())
                   .arg(script->stages().size());
    QStringList subjects;
    for (const TarveloUser *user : model.users())
        subjects << Guids.key(user->getGUID(), user->getGUID().isEmpty() ? "no GUID" : "own GUID");
    subjects.sort();
    const TarveloUser *user = model.currentUser();
    out += "\n  subjects " + subjects.join(", ") + "; current "
        + (user ? Guids.key(user->getGUID(), "own GUID") : "none");
    TarveloSettings stored;
    stored.setAutoSave(false);
    stored.setFilepath(m_data.settingsFile());
    if (!QFile::exists(m_data.settingsFile()) || !stored.reload())
        out += "\n  no settings file";
    else
        out += QStringLiteral("\n  stored script \"%1\", subject %2")
                   .arg(stored.getLastScriptTitle(),
                        Guids.key(stored.getLastUserGuid(),
                                  stored.getLastUserGuid().isEmpty() ? "none" : "own GUID"));
    const bool laidOut = QFileInfo(m_data.records()).isDir() && QFileInfo(m_data.scripts()).isDir()
        && QDir::currentPath() + '/' == m_data.root();
    return out
        + QStringLiteral("\n  link: port %1, search every %2 s; %3\n")
              .arg(model.device()->comPort())
              .arg(model.device()->searchInterval())
              .arg(laidOut ? "data folder laid out, the working folder" : "no data folder");
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

void RunTest::transferRule()
{
    QFETCH(QString, transfers);
    QFETCH(int, index);
    QFETCH(int, errors);
    QFETCH(QList<int>, plays);
    QFETCH(QString, action);
    QFETCH(int, next);
    std::vector<std::unique_ptr<ScriptStage>> owned;
    QVector<const ScriptStage *> stages;
    for (int i = 0; i < plays.size(); ++i) {
        owned.emplace_back(ScriptStage::fromText(transfers));
        stages << owned.back().get();
    }
    const TransferRule::Decision decision =
        TransferRule::decide(stages, index, errors, plays.toVector());
    QCOMPARE(decision.action, action);
    QCOMPARE(decision.next, next);
}

// The emulator plays the script by its transfer rule, over a link with noise between the frames
// and frames written in pieces, and the stored session holds exactly what it reported.
void RunTest::playedScriptIsStoredAsTheBoxReportedIt()
{
    const QStringList stages {
        "stop=6;s-1=4;s-0=2;s+1=0;rpt=1;[s=0,t=800,d=400][s=12,t=800,d=400][s=6,t=800,d=400]",
        "stop=5;s-2=3;s-1=2;s+2=0;rpt=1;[s=3,t=600,d=300][s=17,t=600,d=300][s=11,t=600,d=300]",
        "s-0=1;s+1=0;rpt=1;[s=4,t=500,d=200][s=13,t=500,d=200]"};
    m_emulator = std::make_unique<EmulatorProcess>();
    QVERIFY(m_emulator->start(
        QStringLiteral("--speed 20 --seed 7 --wrong 0.25 --late 0.15 --miss 0.15 --noise --split")
            .split(' ')));
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
    QSignalSpy finished(m_model.get(), &TarveloModel::sessionFinished);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, PlayMs);
    QVERIFY(!m_model->sessionRunning());

    // The run as the box told it, from its start on, and the stored session told the same way.
    QStringList sent = m_emulator->reports();
    sent = sent.mid(sent.lastIndexOf(ScriptStarted + "Проба"));
    sent.removeAll(ScriptFinished);
    const QStringList files = m_data.allSessionFiles();
    QCOMPARE(files.size(), 1);
    const std::unique_ptr<TarveloSession> stored(TarveloSession::load(m_data.records() + files[0]));
    QCOMPARE(stored->userGUID(), Guids.value("A"));
    QStringList told {ScriptStarted + stored->scriptTitle()};
    for (const SessionStage *stage : stored->stages()) {
        told << StageStarted + QString::number(stage->index)
             << StageItems + QString::number(stage->stepCount);
        for (const SessionStep *step : stage->steps())
            told << QString::asprintf("r=%d;b=%d;b2=%d;s=%d;t=%d;d=%d",
                                      step->v ? step->r : -step->r, step->b, step->b2, step->s,
                                      step->t, step->d);
        if (!stage->action.isEmpty())
            told << StageAction + stage->action;
    }
    QCOMPARE(told, sent);

    const TarveloScript *script = m_model->currentScript();
    QVector<const ScriptStage *> played(script->stages().cbegin(), script->stages().cend());
    QVector<int> plays(played.size());
    int expected = 0;
    for (const SessionStage *stage : m_model->session()->stages()) {
        QCOMPARE(stage->index, expected);
        ++plays[expected];
        for (int i = 0; i < stage->steps().size(); ++i)
            QCOMPARE(stage->steps().at(i)->s, played.at(expected)->steps.at(i)->stimulus);
        const int errors = stage->steps().size() - stage->correctCount();
        const TransferRule::Decision decision =
            TransferRule::decide(played, expected, errors, plays);
        QCOMPARE(stage->action, decision.action);
        expected = decision.next;
    }
    QCOMPARE(expected, TransferRule::ScriptEnds);
    QVERIFY(m_model->session()->stages().size() > played.size());
}

void RunTest::subjectFileWithoutGuidGetsAStableOneAndIsNotWritten()
{
    const QString file = m_data.records() + QStringLiteral("By hand/User.xml");
    const QByteArray written = "<TarveloUser><LastName>Сидоров</LastName></TarveloUser>";
    QVERIFY(QDir().mkpath(QFileInfo(file).absolutePath()) && TestFiles::write(file, written));
    startModel();
    QCOMPARE(m_model->users().size(), 1);
    const QString guid = m_model->users().constFirst()->getGUID();
    QVERIFY(!guid.isEmpty());
    m_model->selectUser(guid);
    m_model->handleDeviceMessage(QStringLiteral("scriptStarted=Проба"));
    m_model->handleDeviceMessage(QStringLiteral("scriptFinished"));
    QCOMPARE(TestDataFolder::sessionFiles(QFileInfo(file).absolutePath()).size(), 1);
    QCOMPARE(TestFiles::read(file), written);
    startModel(); // the next start
    QVERIFY(m_model->currentUser());
    QCOMPARE(m_model->currentUser()->getGUID(), guid);
}

QTEST_GUILESS_MAIN(RunTest)
#include "tst_run.moc"
