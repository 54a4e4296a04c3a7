// Figures for a long session: 45 stage runs of 30 steps each. Prints the time to read the file
// (every step recomputes its stage), to build the report with its export table, and to write
// the table as XLSX and as CSV.
#include "BenchMeasure.h"
#include "support/LargeSession.h"
#include "data/TarveloSession.h"
#include "session/SessionExport.h"
#include "session/SessionReport.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {
constexpr int StageRuns = 45;
constexpr int StepsPerStage = 30;
constexpr int Rounds = 20;
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const std::unique_ptr<TarveloSession> session(
        SessionFixtures::largeSession(StageRuns, StepsPerStage));
    if (!session->save(dir.path()))
        return 1;
    const QString sessionPath = dir.filePath(session->fileName());
    std::printf("session: %d stage runs x %d steps, file %lld bytes\n", StageRuns, StepsPerStage,
                QFileInfo(sessionPath).size());

    measure("load and recompute .session", Rounds, [&] {
        const std::unique_ptr<TarveloSession> loaded(TarveloSession::load(sessionPath));
        if (loaded->stages().size() != StageRuns)
            std::abort();
    });
    measure("save .session", Rounds, [&] { session->save(dir.path()); });

    std::unique_ptr<SessionReport> report;
    measure("build report HTML and export table", Rounds,
            [&] { report.reset(new SessionReport(*session)); });
    std::printf("report: %d characters of HTML, %d export rows\n", int(report->html().size()),
                int(report->exportTable().size()));

    const QString sheet = SessionExport::sheetName(*session);
    const QString xlsx = dir.filePath(QStringLiteral("large.xlsx"));
    const QString csv = dir.filePath(QStringLiteral("large.csv"));
    measure("write XLSX", Rounds, [&] {
        if (!SessionExport::writeTable(SessionExport::Format::Xlsx, report->exportTable(), xlsx,
                                       sheet))
            std::abort();
    });
    measure("write CSV", Rounds, [&] {
        if (!SessionExport::writeTable(SessionExport::Format::Csv, report->exportTable(), csv,
                                       sheet))
            std::abort();
    });
    std::printf("files: XLSX %lld bytes, CSV %lld bytes\n", QFileInfo(xlsx).size(),
                QFileInfo(csv).size());
    return 0;
}
