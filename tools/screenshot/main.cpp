// tarvelo-screenshot: renders the main window to PNG files for review. It runs against whatever
// box and data folder the environment gives (scripts/screenshots.sh sets up the emulator and a
// demo folder): the first picture shows the window once the box has answered and a script is
// selected; then the Script page viewing and editing that script, and the script creator; the
// last one the live report after some stages of that script have been played.
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/TarveloDevice.h"
#include "foundation/LanguageContext.h"
#include "session/widgets/PlayScriptStopSessionButton.h"
#include "ui/AppStyle.h"
#include "ui/HeaderedWidget.h"
#include "ui/MainWindow.h"
#include "ui/PageScript.h"
#include "ui/ScriptCreatorWidget.h"
#include "ui/TarveloScriptEditor.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>

#include <functional>

namespace {
constexpr int PollMs = 50;

int fail(const QString &message)
{
    QTextStream(stderr) << "tarvelo-screenshot: " << message << '\n';
    return 1;
}

// Runs the event loop until the condition holds; false when the time ran out first.
bool waitFor(const std::function<bool()> &done, int timeoutMs)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    poll.setInterval(PollMs);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.exit(0);
    });
    QTimer::singleShot(timeoutMs, &loop, [&] { loop.exit(1); });
    poll.start();
    return loop.exec() == 0;
}

bool save(QWidget &window, const QString &path)
{
    // Layouts settle in posted events: a widget just shown or hidden takes its place first.
    QCoreApplication::processEvents();
    QDir().mkpath(QFileInfo(path).absolutePath());
    const bool saved = window.grab().save(path, "PNG");
    if (saved)
        QTextStream(stdout) << path << '\n';
    return saved;
}

// Enough of the run for a live picture: so many stages done and two steps into the next, or
// the whole script if it ends sooner.
bool playedEnough(const TarveloModel &model, int stages)
{
    const TarveloSession *session = model.session();
    if (!session)
        return false;
    if (session->finished())
        return true;
    const QList<SessionStage *> played = session->stages();
    return played.size() > stages && played.constLast()->steps().size() >= 2;
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarvelo-screenshot"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARVELO_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Renders the Tarvelo main window to PNG: idle with the box connected, and during a "
        "session of the selected script."));
    parser.addHelpOption();
    const QCommandLineOption idleOption(QStringLiteral("idle"),
                                        QStringLiteral("Picture before the session."),
                                        QStringLiteral("FILE"));
    // Not "session": QApplication takes that one for the X11 session manager.
    const QCommandLineOption sessionOption(QStringLiteral("running"),
                                           QStringLiteral("Picture during the session."),
                                           QStringLiteral("FILE"));
    const QCommandLineOption stagesOption(
        QStringLiteral("stages"),
        QStringLiteral("Stages played before the second picture (default 2)."), QStringLiteral("N"),
        QStringLiteral("2"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
                                        QStringLiteral("Window size (default 1280x800)."),
                                        QStringLiteral("WxH"), QStringLiteral("1280x800"));
    const QCommandLineOption timeoutOption(
        QStringLiteral("timeout"),
        QStringLiteral("Seconds to wait for each picture (default 120)."), QStringLiteral("S"),
        QStringLiteral("120"));
    const QCommandLineOption scriptOption(QStringLiteral("script-page"),
                                          QStringLiteral("Picture of the Script page."),
                                          QStringLiteral("FILE"));
    const QCommandLineOption editingOption(
        QStringLiteral("script-editing"),
        QStringLiteral("Picture of the Script page in edit mode."), QStringLiteral("FILE"));
    const QCommandLineOption creatorOption(QStringLiteral("creator"),
                                           QStringLiteral("Picture of the script creator."),
                                           QStringLiteral("FILE"));
    parser.addOptions({idleOption, sessionOption, scriptOption, editingOption, creatorOption,
                       stagesOption, sizeOption, timeoutOption});
    parser.process(app);

    bool stagesOk = false;
    bool timeoutOk = false;
    const int stages = parser.value(stagesOption).toInt(&stagesOk);
    const int timeoutMs = parser.value(timeoutOption).toInt(&timeoutOk) * 1000;
    const QStringList size = parser.value(sizeOption).split(QLatin1Char('x'));
    const QSize windowSize =
        size.size() == 2 ? QSize(size.at(0).toInt(), size.at(1).toInt()) : QSize();
    if (!stagesOk || stages < 0 || !timeoutOk || timeoutMs <= 0 || windowSize.isEmpty())
        return fail(QStringLiteral("--stages, --timeout and --size need numbers, such as "
                                   "--stages 2 --timeout 60 --size 1280x800"));
    // Made absolute now: the model makes the data folder the working folder.
    const auto pathOf = [&parser](const QCommandLineOption &option) {
        return parser.isSet(option) ? QFileInfo(parser.value(option)).absoluteFilePath()
                                    : QString();
    };
    const QString idlePath = pathOf(idleOption);
    const QString runningPath = pathOf(sessionOption);
    const QString scriptPath = pathOf(scriptOption);
    const QString editingPath = pathOf(editingOption);
    const QString creatorPath = pathOf(creatorOption);
    if (idlePath.isEmpty() && runningPath.isEmpty() && scriptPath.isEmpty() && editingPath.isEmpty()
        && creatorPath.isEmpty())
        return fail(QStringLiteral("nothing to do: give --idle, --running, --script-page, "
                                   "--script-editing or --creator with a FILE"));

    LanguageContext::setLanguage(QStringLiteral("ru-RU"));
    AppStyle::apply(app);
    MainWindow window;
    window.setWindowState(Qt::WindowNoState);
    window.resize(windowSize);
    window.show();

    TarveloModel *model = window.model();
    const TarveloDevice *device = model->device();
    const bool ready = waitFor(
        [&] {
            return device->isConnected() && !device->serialNumber().isEmpty()
                && !device->version().isEmpty() && model->currentScript();
        },
        timeoutMs);
    if (!ready)
        return fail(device->isConnected()
                        ? QStringLiteral("no script selected: is there a .script in %1?")
                              .arg(model->scriptsFolder())
                        : QStringLiteral("no box answered: is TARVELO_EXTRA_PORTS set?"));
    if (!idlePath.isEmpty() && !save(window, idlePath))
        return fail(QStringLiteral("can't write %1").arg(idlePath));

    auto *page = qobject_cast<PageScript *>(window.tabs()->widget(MainWindow::ScriptPage));
    TarveloScriptEditor *editor = page->editor();
    // The second stage, so that the pictures show a stage other than the default one.
    if (editor->stageButtons().size() > 1)
        editor->stageButtons().at(1)->click();
    if (!scriptPath.isEmpty() && !save(window, scriptPath))
        return fail(QStringLiteral("can't write %1").arg(scriptPath));
    if (!editingPath.isEmpty()) {
        page->editButton()->click();
        // A title the file name can't carry, to show the inline reason and the held-back Save.
        editor->titleEdit()->setText(editor->titleEdit()->text() + QStringLiteral("/2"));
        const bool saved = save(window, editingPath);
        page->cancelButton()->click();
        if (!saved)
            return fail(QStringLiteral("can't write %1").arg(editingPath));
    }
    if (!creatorPath.isEmpty()) {
        page->createButton()->click();
        auto *creator = page->findChild<ScriptCreatorWidget *>();
        creator->nameEdit()->setText(QStringLiteral("Новый сценарий"));
        creator->resize(creator->sizeHint().expandedTo(QSize(760, 640)));
        const bool saved = save(*creator, creatorPath);
        creator->close();
        if (!saved)
            return fail(QStringLiteral("can't write %1").arg(creatorPath));
    }
    if (runningPath.isEmpty())
        return 0;

    // Played the way the operator does it: the play button in the header of the script page.
    page->playButton()->playButton()->click();
    if (!waitFor([&] { return playedEnough(*model, stages); }, timeoutMs))
        return fail(QStringLiteral("the session didn't get %1 stages far").arg(stages));
    if (!save(window, runningPath))
        return fail(QStringLiteral("can't write %1").arg(runningPath));
    return 0;
}
