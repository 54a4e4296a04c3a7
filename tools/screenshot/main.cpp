// tarvelo-screenshot: renders the main window to PNG files for review. It runs against whatever
// box and data folder the environment gives (scripts/screenshots.sh sets up the emulator and a
// demo folder): the window once the box has answered and a script is selected, the live report
// after some stages of that script have been played, and, once that run has been stopped and
// stored, the subject page showing it, the subject editor and the Settings page. A demo subject
// is filed first when the folder has none.
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/TarveloDevice.h"
#include "foundation/LanguageContext.h"
#include "session/widgets/PlayScriptStopSessionButton.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "ui/AppStyle.h"
#include "ui/HeaderedWidget.h"
#include "ui/MainWindow.h"
#include "ui/PageDatabase.h"
#include "ui/UserEditor.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QListWidget>
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
    QDir().mkpath(QFileInfo(path).absolutePath());
    QCoreApplication::processEvents(); // lay out what has just been shown
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

// A subject for the header and the subject page, unless the folder already has some.
void fileDemoSubject(TarveloModel &model)
{
    if (!model.users().isEmpty())
        return;
    TarveloUser subject;
    subject.setLastName(QStringLiteral("Иванова"));
    subject.setFirstName(QStringLiteral("Анна"));
    subject.setMiddleName(QStringLiteral("Сергеевна"));
    subject.setDOBYear(1994);
    subject.setDOBMonth(7);
    subject.setDOBDay(12);
    subject.setGender(TarveloUser::Female);
    subject.setComment(QStringLiteral("Правша"));
    subject.createGuid();
    model.addUser(&subject);
}

// The subject page with the newest stored session of the current subject open.
bool saveDatabasePage(MainWindow &window, const QString &path)
{
    window.tabs()->setCurrentIndex(MainWindow::DatabasePage);
    auto *page = qobject_cast<PageDatabase *>(window.tabs()->widget(MainWindow::DatabasePage));
    page->sessionList()->setCurrentRow(page->sessionList()->count() - 1);
    return page->sessionView()->session() && save(window, path);
}

// The editor of the current subject, opened from the subject page.
bool saveSubjectEditor(MainWindow &window, const QString &path)
{
    auto *page = qobject_cast<PageDatabase *>(window.tabs()->widget(MainWindow::DatabasePage));
    page->editUserButton()->click();
    auto *editor = page->findChild<UserEditor *>();
    if (!editor)
        return false;
    const bool saved = save(*editor, path);
    editor->close();
    return saved;
}
} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarvelo-screenshot"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARVELO_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Renders the Tarvelo main window to PNG: idle with the box connected, during a "
        "session of the selected script, the subject page with that session stored, the "
        "subject editor and the Settings page."));
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
    const QCommandLineOption databaseOption(
        QStringLiteral("database"),
        QStringLiteral("Picture of the subject page with the stopped session stored."),
        QStringLiteral("FILE"));
    const QCommandLineOption editorOption(QStringLiteral("editor"),
                                          QStringLiteral("Picture of the subject editor."),
                                          QStringLiteral("FILE"));
    const QCommandLineOption settingsOption(QStringLiteral("settings"),
                                            QStringLiteral("Picture of the Settings page."),
                                            QStringLiteral("FILE"));
    const QCommandLineOption sizeOption(QStringLiteral("size"),
                                        QStringLiteral("Window size (default 1280x800)."),
                                        QStringLiteral("WxH"), QStringLiteral("1280x800"));
    const QCommandLineOption timeoutOption(
        QStringLiteral("timeout"),
        QStringLiteral("Seconds to wait for each picture (default 120)."), QStringLiteral("S"),
        QStringLiteral("120"));
    parser.addOptions({idleOption, sessionOption, databaseOption, editorOption, settingsOption,
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
    const QString databasePath = pathOf(databaseOption);
    const QString editorPath = pathOf(editorOption);
    const QString settingsPath = pathOf(settingsOption);
    if (idlePath.isEmpty() && runningPath.isEmpty() && databasePath.isEmpty()
        && editorPath.isEmpty() && settingsPath.isEmpty())
        return fail(QStringLiteral("nothing to do: give --idle, --running, --database, --editor "
                                   "or --settings with a FILE"));

    LanguageContext::setLanguage(QStringLiteral("ru-RU"));
    AppStyle::apply(app);
    MainWindow window;
    window.setWindowState(Qt::WindowNoState);
    window.resize(windowSize);
    window.show();

    TarveloModel *model = window.model();
    fileDemoSubject(*model);
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

    if (!runningPath.isEmpty() || !databasePath.isEmpty()) {
        // Played the way the operator does it: the play button in the header of the script
        // page, and stopped by the stop button there, which stores the session.
        auto *header =
            qobject_cast<HeaderedWidget *>(window.tabs()->widget(MainWindow::ScriptPage));
        header->playButton()->playButton()->click();
        if (!waitFor([&] { return playedEnough(*model, stages); }, timeoutMs))
            return fail(QStringLiteral("the session didn't get %1 stages far").arg(stages));
        if (!runningPath.isEmpty() && !save(window, runningPath))
            return fail(QStringLiteral("can't write %1").arg(runningPath));
        if (model->sessionRunning())
            header->playButton()->stopButton()->click();
    }
    if (!databasePath.isEmpty() && !saveDatabasePage(window, databasePath))
        return fail(QStringLiteral("no stored session shown in %1").arg(databasePath));
    if (!editorPath.isEmpty() && !saveSubjectEditor(window, editorPath))
        return fail(QStringLiteral("can't write %1").arg(editorPath));
    if (!settingsPath.isEmpty()) {
        window.tabs()->setCurrentIndex(MainWindow::SettingsPage);
        if (!save(window, settingsPath))
            return fail(QStringLiteral("can't write %1").arg(settingsPath));
    }
    return 0;
}
