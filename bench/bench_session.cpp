// Figures for a long session: 45 stage runs of 30 steps each. Prints the time to read the file
// (every step recomputes its stage), to build the report with its export table, and to write
// the table as XLSX and as CSV.
#include "data/TarveloSession.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {
constexpr int StageRuns = 45;
constexpr int StepsPerStage = 30;
constexpr int Rounds = 20;

TarveloSession *largeSession()
{
    QRandomGenerator random(45 * 30);
    auto *session = new TarveloSession;
    session->setScriptTitle(QStringLiteral("Длинный сценарий"));
    session->setUserName(QStringLiteral("Иванов Иван Иванович"));
    session->setStart(QDateTime(QDate(2024, 3, 5), QTime(14, 20, 31)));
    session->setEnd(QDateTime(QDate(2024, 3, 5), QTime(15, 2, 11)));
    const char *actions[] = {"+1", "+2", "-1", "-2", "repeat", "maxRepeats", "stop"};
    for (int i = 0; i < StageRuns; ++i) {
        auto *stage = new SessionStage;
        stage->index = i / 3;
        stage->stepCount = StepsPerStage;
        stage->action = QString::fromLatin1(actions[random.bounded(7)]);
        for (int j = 0; j < StepsPerStage; ++j) {
            auto *step = new SessionStep;
            step->s = int(random.bounded(18));
            step->b2 = requiredButton(step->s);
            step->b = random.bounded(4) == 0 ? int(random.bounded(11)) : step->b2;
            step->v = random.bounded(20) != 0;
            step->r = int(random.bounded(100, 1500));
            step->t = int(random.bounded(5, 15)) * 100;
            step->d = int(random.bounded(5, 20)) * 100;
            stage->addStep(step);
        }
        session->addStage(stage);
    }
    session->setFinished(true);
    return session;
}

// Runs the work Rounds times and prints the mean and the fastest round in milliseconds.
void measure(const char *what, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    double total = 0;
    for (const double t : times)
        total += t;
    std::printf("%-40s mean %8.3f ms   min %8.3f ms   (%d rounds)\n", what, total / Rounds,
                *std::min_element(times.begin(), times.end()), Rounds);
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(largeSession());
    if (!session->save(dir.path()))
        return 1;
    const QString sessionPath = dir.filePath(session->fileName());
    std::printf("session: %d stage runs x %d steps, file %lld bytes\n", StageRuns, StepsPerStage,
                QFileInfo(sessionPath).size());

    measure("load and recompute .session", [&] {
        const std::unique_ptr<TarveloSession> loaded(TarveloSession::load(sessionPath));
        if (loaded->stages().size() != StageRuns)
            std::abort();
    });
    measure("save .session", [&] { session->save(dir.path()); });

    std::unique_ptr<SessionReport> report;
    measure("build report HTML and export table",
            [&] { report.reset(new SessionReport(*session)); });
    std::printf("report: %d characters of HTML, %d export rows\n", int(report->html().size()),
                int(report->exportTable().size()));

    const QString sheet = SessionExport::sheetName(*session);
    const QString xlsx = dir.filePath(QStringLiteral("large.xlsx"));
    const QString csv = dir.filePath(QStringLiteral("large.csv"));
    measure("write XLSX", [&] {
        if (!SessionExport::writeTable(SessionExport::Format::Xlsx, report->exportTable(), xlsx,
                                       sheet))
            std::abort();
    });
    measure("write CSV", [&] {
        if (!SessionExport::writeTable(SessionExport::Format::Csv, report->exportTable(), csv,
                                       sheet))
            std::abort();
    });
    std::printf("files: XLSX %lld bytes, CSV %lld bytes\n", QFileInfo(xlsx).size(),
                QFileInfo(csv).size());
    return 0;
}
