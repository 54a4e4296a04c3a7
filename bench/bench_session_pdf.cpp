// Figures of the session view for a long session (45 stage runs of 30 steps): the time to
// rebuild and paint the view as on every change during a run, and the time of the PDF export
// command from the chosen name to the written file. Runs on the offscreen platform unless told
// otherwise.
#include "BenchMeasure.h"
#include "support/LargeSession.h"
#include "foundation/DesktopShell.h"
#include "session/widgets/TarveloSessionWidget.h"

#include <QApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {
constexpr int StageRuns = 45;
constexpr int StepsPerStage = 30;
constexpr int Rounds = 10;

// Answers the save dialog with a fixed PDF name.
class PdfExportWidget : public TarveloSessionWidget
{
public:
    PdfExportWidget(const QString &filePath)
        : TarveloSessionWidget(nullptr)
        , m_filePath(filePath)
    {
    }

protected:
    QString chooseExportFile(const QString &, const QStringList &filters,
                             QString *selectedFilter) override
    {
        *selectedFilter = filters.at(2);
        return m_filePath;
    }

private:
    QString m_filePath;
};
} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Nothing is opened after the export: the figure is the writing alone.
    DesktopShell::setInterceptor([](DesktopShell::Action, const QString &) {});

    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("long.pdf"));
    const std::unique_ptr<TarveloSession> session(
        SessionFixtures::largeSession(StageRuns, StepsPerStage));
    PdfExportWidget view(pdf);
    std::printf("session: %d stage runs x %d steps\n", StageRuns, StepsPerStage);

    // A label keeps the text it already has, so each round starts from an empty view; the grab
    // lays the report out and paints it, as the screen does after every step of a run.
    view.resize(1280, 800);
    measure("rebuild and paint the session view", Rounds, [&] {
        view.setSession(nullptr);
        view.setSession(session.get());
        view.grab();
    });
    measure("paint the unchanged view", Rounds, [&] { view.grab(); });
    measure("export PDF (A4)", Rounds, [&] {
        view.exportSession();
        if (!QFileInfo(pdf).isFile())
            std::abort();
    });
    std::printf("file: PDF %lld bytes\n", QFileInfo(pdf).size());
    return 0;
}
