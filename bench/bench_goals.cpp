// bench_goals: the speed goals of the running program, each measured here beside its target in
// one run, and printed as a table at the end:
//   1. a live-view update (report, layout and paint of the shown 1280x800 main window with the
//      program's style sheet) of a 45x30 session within one 60 Hz frame, of a 200x30 one within
//      two; while reports stream, at most one update a frame, the latest state shown within
//      100 ms of the last report;
//   2. recorded runs played into the running program through a pseudo-terminal as fast as it
//      takes them: at least 10x the 115200-baud wire for 45x30 and 5x for 200x30;
//   3. start to the first paint of the main window within 2x a bare QMainWindow (on a fresh
//      machine; the start with a script in the data folder is printed beside it);
//   4. XLSX + CSV + PDF export of a 200x30 session within 0.3 s;
//   5. a step added to a 600-step stage costs what one added to an empty stage costs.
// "--only live|stream|export|stage|start" runs one part, for a profiler; KEEP_EXPORT=<prefix>
// keeps the exported files as <prefix>long.xlsx, .csv and .pdf, to be looked at. Wall-clock figures
// on whatever machine runs it: the fastest round is the one least disturbed by other work, the
// median the one to expect. Runs on the offscreen platform unless told otherwise; the start-up
// figures come from child processes of this program.
#include "RecordedRun.h"
#include "app/TarveloModel.h"
#include "data/ScriptStage.h"
#include "data/TarveloScript.h"
#include "data/TarveloSession.h"
#include "device/TarveloDevice.h"
#include "device/TarveloMessage.h"
#include "foundation/DesktopShell.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "support/EmulatorProcess.h"
#include "support/LargeSession.h"
#include "support/TestDataFolder.h"
#include "tools/devsim/PseudoTerminal.h"
#include "ui/MainWindow.h"
#include "ui/ProgramStart.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMainWindow>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <vector>

namespace {
constexpr int StepsPerStage = 30;
constexpr double FrameMs = 1000.0 / 60;
constexpr double LinkBytesPerSecond = 115200 / 10.0;
constexpr int StartRounds = 5;
constexpr int ExportRounds = 3;
constexpr int WaitMs = 600000;

struct Goal
{
    QString name;
    QString target;
    QString measured;
    bool met;
};
std::vector<Goal> goals;

void addGoal(const QString &name, const QString &target, const QString &measured, bool met)
{
    goals.push_back({name, target, measured, met});
}

QString ms(double value)
{
    return QString::number(value, 'f', value < 10 ? 2 : 1) + QStringLiteral(" ms");
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

double microsecondsNow()
{
    using namespace std::chrono;
    return double(duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count());
}

double cpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Layout requests, then the repaint they lead to.
void settle()
{
    for (int pass = 0; pass < 3; ++pass)
        QCoreApplication::processEvents();
}

SessionStep *randomStep(QRandomGenerator &random)
{
    const int s = int(random.bounded(18));
    const int t = int(random.bounded(5, 15)) * 100;
    return SessionFixtures::step(
        s, random.bounded(6) == 0 ? int(random.bounded(9)) : requiredButton(s),
        random.bounded(20) != 0, int(random.bounded(100, 1500)), t);
}

// One update, from the rebuild to the end of the repaint it causes, in milliseconds. A function
// of its own so that a profiler can count it alone (valgrind --toggle-collect='*timedUpdate*').
__attribute__((noinline)) double timedUpdate(TarveloSessionWidget *view)
{
    QElapsedTimer timer;
    timer.start();
    view->updateReport();
    settle();
    return timer.nsecsElapsed() / 1e6;
}

// Goal 1: the view of a running session whose last stage grows step by step; each update is
// timed from the rebuild to the end of the repaint it causes, with the view at the top (as it
// opens) and scrolled to the bottom, where every change is in sight.
void liveViewUpdates(MainWindow &window, int stageRuns)
{
    auto *page = qobject_cast<PageSession *>(window.page(MainWindow::SessionPage));
    TarveloSessionWidget *view = page->sessionWidget();
    auto *scroll = view->findChild<QScrollArea *>();
    QRandomGenerator random(7);
    for (const bool bottom : {false, true}) {
        const std::unique_ptr<TarveloSession> session(
            SessionFixtures::largeSession(stageRuns - 1, StepsPerStage));
        session->setFinished(false);
        auto *stage = new SessionStage;
        stage->stepCount = StepsPerStage;
        session->addStage(stage);
        view->setSession(session.get());
        settle();
        std::vector<double> times;
        for (int i = 0; i < StepsPerStage; ++i) {
            stage->addStep(randomStep(random));
            if (bottom) {
                scroll->verticalScrollBar()->setValue(scroll->verticalScrollBar()->maximum());
                settle();
            }
            times.push_back(timedUpdate(view));
        }
        const double worst = *std::max_element(times.begin(), times.end());
        std::printf("live view %dx%d, %s: update median %s, fastest %s, slowest %s\n", stageRuns,
                    StepsPerStage, bottom ? "scrolled to the end" : "at the top",
                    qPrintable(ms(median(times))),
                    qPrintable(ms(*std::min_element(times.begin(), times.end()))),
                    qPrintable(ms(worst)));
        if (bottom) {
            const double budget = stageRuns > 45 ? 2 * FrameMs : FrameMs;
            addGoal(QStringLiteral("1. live-view update %1x%2 (median / slowest)")
                        .arg(stageRuns)
                        .arg(StepsPerStage),
                    QStringLiteral("<= %1").arg(ms(budget)),
                    ms(median(times)) + QStringLiteral(" / ") + ms(worst), worst <= budget);
        }
        // Out of the view before it goes.
        view->setSession(nullptr);
        settle();
    }
}

// The box's end of the cable for goal 2: answers the greeting and plays a stream as fast as the
// terminal takes it.
class StreamingBox : public QObject
{
public:
    bool open()
    {
        connect(&m_terminal, &PseudoTerminal::received, this,
                [this](const QByteArray &bytes) { m_splitter.parse(QString::fromUtf8(bytes)); });
        connect(&m_splitter, &TarveloMessage::messageReceived, this,
                [this](const QString &command) {
                    if (command == QLatin1String("tarvelo"))
                        m_terminal.write("{iamtarvelo}");
                });
        connect(&m_terminal, &PseudoTerminal::drained, this, &StreamingBox::writeMore);
        return m_terminal.open();
    }
    QString path() const { return m_terminal.slavePath(); }
    void play(const QByteArray &bytes)
    {
        m_stream = bytes;
        m_sent = 0;
        writeMore();
    }

private:
    void writeMore()
    {
        if (m_sent >= m_stream.size())
            return;
        const QByteArray chunk = m_stream.mid(m_sent, Chunk);
        m_sent += chunk.size();
        m_terminal.write(chunk);
    }

    static constexpr int Chunk = 16 * 1024;
    PseudoTerminal m_terminal;
    TarveloMessage m_splitter;
    QByteArray m_stream;
    int m_sent = 0;
};

// Goal 2: a recorded run through the serial port, the model and the live view.
void streamThroughTheProgram(MainWindow &window, StreamingBox &box, int stageRuns, double target)
{
    TarveloModel *model = window.model();
    window.tabs()->setCurrentIndex(MainWindow::SessionPage);
    RecordedRun run = RecordedRun::play(stageRuns, StepsPerStage);
    run.bytes += "{scriptFinished}";
    ++run.messages;

    QEventLoop loop;
    const QMetaObject::Connection finished =
        QObject::connect(model, &TarveloModel::sessionFinished, &loop, &QEventLoop::quit);
    QTimer::singleShot(WaitMs, &loop, &QEventLoop::quit);
    const double cpuBefore = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    box.play(run.bytes);
    loop.exec();
    const double seconds = timer.nsecsElapsed() / 1e9;
    const double cpu = cpuSeconds() - cpuBefore;
    QObject::disconnect(finished);
    settle();

    const TarveloSession *session = model->session();
    const int recorded = session ? session->stages().size() : 0;
    const double wireSeconds = run.bytes.size() / LinkBytesPerSecond;
    const double times = wireSeconds / seconds;
    std::printf("stream %dx%d: %d reports, %d bytes, %.1f s on the wire; through the program "
                "%.2f s (%.2f s CPU), %.0f reports/s, %.1fx the wire; %d stage runs recorded\n",
                stageRuns, StepsPerStage, run.messages, int(run.bytes.size()), wireSeconds, seconds,
                cpu, run.messages / seconds, times, recorded);
    addGoal(
        QStringLiteral("2. reports through the program %1x%2").arg(stageRuns).arg(StepsPerStage),
        QStringLiteral(">= %1x the wire").arg(target), QStringLiteral("%1x").arg(times, 0, 'f', 1),
        times >= target && recorded == stageRuns);
}

// The child's side of goal 3: prints the monotonic time of the first paint of the main window.
int firstPaintChild(int argc, char **argv, bool program)
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(TARVELO_VERSION));
    bool painted = false;
    struct FirstPaint : QObject
    {
        std::function<void()> onPaint;
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (onPaint && event->type() == QEvent::Paint && qobject_cast<QMainWindow *>(watched)) {
                // After the whole repaint, which this event only begins.
                QTimer::singleShot(0, onPaint);
                onPaint = nullptr;
            }
            return false;
        }
    } filter;
    filter.onPaint = [&] {
        std::printf("%.0f\n", microsecondsNow());
        std::fflush(stdout);
        painted = true;
        QCoreApplication::exit(0);
    };
    app.installEventFilter(&filter);
    if (program) {
        const std::unique_ptr<MainWindow> window = ProgramStart::showMainWindow();
        return painted ? 0 : app.exec();
    }
    QMainWindow window;
    window.show();
    return app.exec();
}

// The script an operator's data folder usually holds, the first page then shows its first stage:
// four stages of ten steps.
void writeScript(const QString &home)
{
    const QString folder = home + QStringLiteral("/Documents/Mirenthalic/Tarvelo/Scripts/");
    QDir().mkpath(folder);
    QString steps;
    for (int step = 0; step < 10; ++step)
        steps += QStringLiteral("[s=%1,b=0,t=1500,d=1000]").arg(step);
    TarveloScript script;
    script.setTitle(QStringLiteral("Demo"));
    for (int stage = 0; stage < 4; ++stage)
        script.addStage(ScriptStage::fromText(QStringLiteral("rpt=2;") + steps));
    script.save(folder + QStringLiteral("Demo.script"));
}

// Goal 3: start to first paint of the program against a bare QMainWindow, child processes of
// this program taking turns, on a fresh machine; beside it the start with a script, which is
// printed only.
void startToFirstPaint(const QString &self, bool withScript)
{
    std::vector<double> program;
    std::vector<double> bare;
    for (int round = 0; round < StartRounds; ++round) {
        for (const bool isProgram : {true, false}) {
            QTemporaryDir home;
            if (withScript)
                writeScript(home.path());
            QProcess child;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("HOME"), home.path());
            environment.remove(QStringLiteral("TARVELO_EXTRA_PORTS"));
            child.setProcessEnvironment(environment);
            const double started = microsecondsNow();
            child.start(self,
                        {QStringLiteral("--first-paint"),
                         isProgram ? QStringLiteral("program") : QStringLiteral("bare")});
            if (!child.waitForFinished(60000)) {
                std::printf("a start-up child didn't end\n");
                return;
            }
            const double painted = child.readAllStandardOutput().trimmed().toDouble();
            (isProgram ? program : bare).push_back((painted - started) / 1000);
        }
    }
    const double ratio = median(program) / median(bare);
    std::printf("start to first paint%s: program median %s (fastest %s), bare QMainWindow median "
                "%s (fastest %s), %.2fx\n",
                withScript ? " with a script of four 10-step stages" : "",
                qPrintable(ms(median(program))),
                qPrintable(ms(*std::min_element(program.begin(), program.end()))),
                qPrintable(ms(median(bare))),
                qPrintable(ms(*std::min_element(bare.begin(), bare.end()))), ratio);
    if (!withScript)
        addGoal(QStringLiteral("3. start to first paint against a bare window"),
                QStringLiteral("<= 2.00x"),
                QStringLiteral("%1x (%2 / %3)")
                    .arg(ratio, 0, 'f', 2)
                    .arg(ms(median(program)), ms(median(bare))),
                ratio <= 2);
}

// Answers the save dialog with a fixed file and filter.
class AnsweredExport : public TarveloSessionWidget
{
public:
    AnsweredExport()
        : TarveloSessionWidget(nullptr)
    {
    }
    QString filePath;
    int filterIndex = 0;

protected:
    QString chooseExportFile(const QString &, const QStringList &filters,
                             QString *selectedFilter) override
    {
        *selectedFilter = filters.at(filterIndex);
        return filePath;
    }
};

// Goal 4: the three exports of a long stored session, through the view's export command.
void exportLongSession()
{
    constexpr int StageRuns = 200;
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(
        SessionFixtures::largeSession(StageRuns, StepsPerStage));
    session->setFinished(false);
    session->setLoaded(true);
    AnsweredExport view;
    view.setSession(session.get());
    const QString keptAs = qEnvironmentVariable("KEEP_EXPORT");
    const char *names[] = {"long.xlsx", "long.csv", "long.pdf"};
    double total = 0;
    QString parts;
    for (int format = 0; format < 3; ++format) {
        view.filterIndex = format;
        view.filePath = dir.filePath(QString::fromLatin1(names[format]));
        double fastest = 1e9;
        for (int round = 0; round < ExportRounds; ++round) {
            QFile::remove(view.filePath);
            QElapsedTimer timer;
            timer.start();
            view.exportSession();
            fastest = std::min(fastest, timer.nsecsElapsed() / 1e6);
        }
        if (!keptAs.isEmpty()) {
            QFile::remove(keptAs + QString::fromLatin1(names[format]));
            QFile::copy(view.filePath, keptAs + QString::fromLatin1(names[format]));
        }
        if (!QFileInfo(view.filePath).isFile())
            std::printf("no %s written\n", names[format]);
        total += fastest;
        parts += (format ? QStringLiteral(" + ") : QString()) + ms(fastest);
    }
    std::printf("export %dx%d: %s = %s\n", StageRuns, StepsPerStage, qPrintable(parts),
                qPrintable(ms(total)));
    addGoal(QStringLiteral("4. XLSX + CSV + PDF export 200x30"), QStringLiteral("<= 300 ms"),
            ms(total), total <= 300);
}

// Goal 5: what one more step costs at the start of a stage and at its 600th step.
void stageSteps()
{
    constexpr int Steps = 600;
    constexpr int Window = 100;
    constexpr int Rounds = 20;
    QRandomGenerator random(11);
    std::vector<SessionStep *> prepared;
    std::vector<double> first(Rounds);
    std::vector<double> last(Rounds);
    for (int round = 0; round < Rounds; ++round) {
        SessionStage stage;
        for (int i = 0; i < Steps; ++i) {
            SessionStep *step = randomStep(random);
            QElapsedTimer timer;
            timer.start();
            stage.addStep(step);
            const double ns = double(timer.nsecsElapsed());
            if (i < Window)
                first[round] += ns / Window;
            else if (i >= Steps - Window)
                last[round] += ns / Window;
        }
    }
    const double early = *std::min_element(first.begin(), first.end());
    const double late = *std::min_element(last.begin(), last.end());
    const double wireReportNs = 1e9 / (LinkBytesPerSecond / 33);
    std::printf("stage of %d steps: a step costs %.0f ns among the first %d, %.0f ns among the "
                "last %d (%.0fx the wire there)\n",
                Steps, early, Window, late, Window, wireReportNs / late);
    addGoal(QStringLiteral("5. step 500-600 of a stage against step 1-100"),
            QStringLiteral("about 1x"), QStringLiteral("%1x").arg(late / early, 0, 'f', 2),
            late / early < 2);
}
} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 3 && qstrcmp(argv[1], "--first-paint") == 0)
        return firstPaintChild(argc, argv, qstrcmp(argv[2], "program") == 0);

    const QString only =
        argc == 3 && qstrcmp(argv[1], "--only") == 0 ? QString::fromLatin1(argv[2]) : QString();
    const auto runs = [&only](const char *part) {
        return only.isEmpty() || only == QLatin1String(part);
    };
    QApplication app(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    DesktopShell::setInterceptor([](DesktopShell::Action, const QString &) {});
    const TestDataFolder data;
    StreamingBox box;
    if (!box.open())
        return 1;
    setExtraPorts({box.path()});

    auto window = ProgramStart::showMainWindow();
    window->setWindowState(Qt::WindowNoState);
    window->resize(1280, 800);
    window->tabs()->setCurrentIndex(MainWindow::SessionPage);
    settle();

    if (runs("live")) {
        liveViewUpdates(*window, 45);
        liveViewUpdates(*window, 200);
    }
    if (runs("stream")) {
        if (!QTest::qWaitFor([&] { return window->model()->device()->isConnected(); }, 20000)) {
            std::printf("the program didn't find the box\n");
            return 1;
        }
        streamThroughTheProgram(*window, box, 45, 10);
        streamThroughTheProgram(*window, box, 200, 5);
    }
    if (runs("export"))
        exportLongSession();
    if (runs("stage"))
        stageSteps();
    window.reset();
    if (runs("start")) {
        for (const bool withScript : {false, true})
            startToFirstPaint(QCoreApplication::applicationFilePath(), withScript);
    }

    std::printf("\n%-50s %-18s %-26s %s\n", "goal", "target", "measured", "");
    for (const Goal &goal : goals)
        std::printf("%-50s %-18s %-26s %s\n", qPrintable(goal.name), qPrintable(goal.target),
                    qPrintable(goal.measured), goal.met ? "met" : "MISSED");
    return 0;
}
