// tarvelo-screenshot: renders the main window to PNG files for review. It runs against whatever
// box, data folder and system language the environment gives (scripts/screenshots.sh sets up
// the emulator and a demo folder, and runs it once per language): the first pictures show the
// window once the box has answered and a script is selected, with the device page showing lamps
// lit by the box, the device settings and firmware dialogs, the Script page also editing that
// script and its creator open, the next the live report after some stages of that script have
// been played and the export's file dialog, and the last, once that run has been stopped and
// stored, the subject page showing it and the subject editor. A demo subject is filed first when
// the folder has none.
#include "app/TarveloModel.h"
#include "data/TarveloCommon.h"
#include "data/TarveloSession.h"
#include "data/TarveloUser.h"
#include "device/FirmwarePackage.h"
#include "device/TarveloDevice.h"
#include "device/widgets/ComUpdaterWidget.h"
#include "device/widgets/TarveloSettingsWidget.h"
#include "foundation/LanguageContext.h"
#include "frame/HeaderedWidget.h"
#include "frame/PlayScriptStopSessionButton.h"
#include "frame/UserEditor.h"
#include "session/widgets/PageSession.h"
#include "session/widgets/TarveloSessionWidget.h"
#include "ui/MainWindow.h"
#include "ui/PageDatabase.h"
#include "ui/PageScript.h"
#include "ui/ScriptCreatorWidget.h"
#include "ui/TarveloScriptEditor.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
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

// The pages pictured before the session, by tab; the session page has the running picture and
// the subject page is pictured once the session is stored.
const std::pair<MainWindow::Page, const char *> PagePictures[] = {
    {MainWindow::ScriptPage, "script.png"},
    {MainWindow::DevicePage, "device.png"},
    {MainWindow::SettingsPage, "settings.png"},
};

bool save(QWidget &window, const QString &path)
{
    // Layouts settle in posted events: a widget just shown or hidden takes its place first, and
    // a page built as it is shown needs a pass more for its scroll areas.
    for (int pass = 0; pass < 3; ++pass)
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

// The lamps that the device page picture shows lit, one of each row.
const QList<int> LitLamps {TarveloCommon::LED_TOP_Blue, TarveloCommon::LED_MID_Red,
                           TarveloCommon::LED_MID_Green, TarveloCommon::LED_BOT_WhiteLeft};

// The device page once the box reports the lamps lit, which it keeps so until told otherwise.
bool saveDevicePage(MainWindow &window, TarveloDevice *device, const QString &path, int timeoutMs)
{
    bool lit = false;
    const QMetaObject::Connection reports =
        QObject::connect(device, &TarveloDevice::ledChanged, [&lit](const QList<bool> &leds) {
            lit = true;
            for (int lamp : LitLamps)
                lit = lit && leds.value(lamp);
        });
    for (int lamp : LitLamps)
        device->testStimulus(lamp, true);
    const bool shown = waitFor([&lit] { return lit; }, timeoutMs);
    QObject::disconnect(reports);
    // The page takes the report queued.
    QCoreApplication::processEvents();
    const bool saved = shown && save(window, path);
    for (int lamp : LitLamps)
        device->testStimulus(lamp, false);
    return saved;
}

// The settings dialog in service mode, once the box has told its options.
bool saveDeviceSettings(MainWindow &window, const QString &path, int timeoutMs)
{
    TarveloSettingsWidget dialog(true, &window);
    dialog.show();
    const QList<QCheckBox *> boxes = dialog.findChildren<QCheckBox *>();
    const bool answered = waitFor(
        [&boxes] {
            return std::all_of(boxes.cbegin(), boxes.cend(),
                               [](const QCheckBox *box) { return box->isEnabled(); });
        },
        timeoutMs);
    return answered && save(dialog, path);
}

// The firmware dialog as "Flash" opens it, with the box's port as the only one.
bool saveFirmwareUpdate(const TarveloDevice *device, const QString &path)
{
    ComUpdaterWidget dialog(FirmwarePackage::AtMega2560, QStringLiteral("tvl"),
                            FirmwarePackage::SelfPrefix + QStringLiteral("avrdude"),
                            {QLatin1Char('-') + device->portName()});
    dialog.show();
    return save(dialog, path);
}

// Stops the session the way the operator does and opens the export's file dialog: the dialog
// runs modally, so it is pictured and closed from within its own event loop.
bool saveExportDialog(MainWindow &window, const QString &path, int timeoutMs)
{
    auto *header = qobject_cast<HeaderedWidget *>(window.page(MainWindow::ScriptPage));
    // Stop asks first; the question is answered with its first button, abort.
    QTimer::singleShot(0, &window, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->defaultButton()->click();
    });
    header->playButton()->stopButton()->click();
    auto *page = qobject_cast<PageSession *>(window.page(MainWindow::SessionPage));
    QPushButton *exportButton = page->sessionWidget()->exportButton();
    if (!waitFor([&] { return exportButton->isVisible(); }, timeoutMs))
        return false;
    bool saved = false;
    QTimer::singleShot(0, &window, [&] {
        QFileDialog *dialog = nullptr;
        waitFor(
            [&] {
                dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
                return dialog != nullptr;
            },
            timeoutMs);
        if (dialog) {
            saved = save(*dialog, path);
            dialog->reject();
        }
    });
    exportButton->click();
    return saved;
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

// The subject page with the newest stored session of the current subject open, if any.
bool saveDatabasePage(MainWindow &window, const QString &path)
{
    window.tabs()->setCurrentIndex(MainWindow::DatabasePage);
    auto *page = qobject_cast<PageDatabase *>(window.page(MainWindow::DatabasePage));
    page->sessionList()->setCurrentRow(page->sessionList()->count() - 1);
    return save(window, path);
}

// The editor of the current subject, opened from the subject page.
bool saveSubjectEditor(MainWindow &window, const QString &path)
{
    auto *page = qobject_cast<PageDatabase *>(window.page(MainWindow::DatabasePage));
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
    const QCommandLineOption pagesOption(
        QStringLiteral("pages"),
        QStringLiteral("Pictures of the pages before the session (script.png, subjects.png, "
                       "device.png, settings.png), and after it of the export's file dialog "
                       "(export-dialog.png), into FOLDER."),
        QStringLiteral("FOLDER"));
    const QCommandLineOption newVersionOption(
        QStringLiteral("new-version"),
        QStringLiteral("Wait for the version service's offer before the first picture."));
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
    parser.addOptions({idleOption, sessionOption, pagesOption, newVersionOption, stagesOption,
                       sizeOption, timeoutOption});
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
    if (!parser.isSet(idleOption) && !parser.isSet(sessionOption) && !parser.isSet(pagesOption))
        return fail(QStringLiteral("nothing to do: give --idle FILE, --running FILE, --pages "
                                   "FOLDER or several"));

    // Made absolute now: the model makes the data folder the working folder.
    const QString idlePath = parser.isSet(idleOption)
        ? QFileInfo(parser.value(idleOption)).absoluteFilePath()
        : QString();
    const QString runningPath = parser.isSet(sessionOption)
        ? QFileInfo(parser.value(sessionOption)).absoluteFilePath()
        : QString();
    const QString pagesFolder = parser.isSet(pagesOption)
        ? QFileInfo(parser.value(pagesOption)).absoluteFilePath()
        : QString();

    LanguageContext::setLanguage(QStringLiteral("ru-RU"));
    // The window gives itself the program's look, as in the program.
    MainWindow window;
    window.setWindowState(Qt::WindowNoState);
    window.resize(windowSize);
    window.show();

    TarveloModel *model = window.model();
    fileDemoSubject(*model);
    TarveloDevice *device = model->device();
    const bool ready = waitFor(
        [&] {
            return device->isConnected() && !device->serialNumber().isEmpty()
                && !device->version().isEmpty() && model->currentScript()
                && (!parser.isSet(newVersionOption) || window.versionHolder()->isVisible());
        },
        timeoutMs);
    if (!ready)
        return fail(device->isConnected()
                        ? QStringLiteral("no script selected: is there a .script in %1?")
                              .arg(model->scriptsFolder())
                        : QStringLiteral("no box answered: is TARVELO_EXTRA_PORTS set?"));
    if (!idlePath.isEmpty() && !save(window, idlePath))
        return fail(QStringLiteral("can't write %1").arg(idlePath));
    auto *page = qobject_cast<PageScript *>(window.page(MainWindow::ScriptPage));
    if (!pagesFolder.isEmpty()) {
        TarveloScriptEditor *editor = page->editor();
        // The second stage, so that the pictures show a stage other than the default one.
        if (editor->stageButtons().size() > 1)
            editor->stageButtons().at(1)->click();
        for (const auto &[tab, name] : PagePictures) {
            window.tabs()->setCurrentIndex(tab);
            const QString path = pagesFolder + QLatin1Char('/') + QLatin1String(name);
            const bool saved = tab == MainWindow::DevicePage
                ? saveDevicePage(window, device, path, timeoutMs)
                : save(window, path);
            if (!saved)
                return fail(QStringLiteral("the box didn't light its lamps, or %1 can't be written")
                                .arg(path));
        }
        window.tabs()->setCurrentIndex(MainWindow::ScriptPage);
        const QString settingsPath = pagesFolder + QStringLiteral("/device-settings.png");
        if (!saveDeviceSettings(window, settingsPath, timeoutMs))
            return fail(QStringLiteral("the box didn't tell its options, or %1 can't be written")
                            .arg(settingsPath));
        const QString firmwarePath = pagesFolder + QStringLiteral("/firmware-update.png");
        if (!saveFirmwareUpdate(device, firmwarePath))
            return fail(QStringLiteral("can't write %1").arg(firmwarePath));

        page->editButton()->click();
        // A title the file name can't carry, to show the inline reason and the held-back Save.
        editor->titleEdit()->setText(editor->titleEdit()->text() + QStringLiteral("/2"));
        const QString editingPath = pagesFolder + QStringLiteral("/script-editing.png");
        const bool editingSaved = save(window, editingPath);
        page->cancelButton()->click();
        if (!editingSaved)
            return fail(QStringLiteral("can't write %1").arg(editingPath));

        page->createButton()->click();
        auto *creator = page->findChild<ScriptCreatorWidget *>();
        creator->nameEdit()->setText(QStringLiteral("Новый сценарий"));
        creator->resize(creator->sizeHint().expandedTo(QSize(760, 640)));
        const QString creatorPath = pagesFolder + QStringLiteral("/script-creator.png");
        const bool creatorSaved = save(*creator, creatorPath);
        creator->close();
        if (!creatorSaved)
            return fail(QStringLiteral("can't write %1").arg(creatorPath));
    }
    if (!runningPath.isEmpty()) {
        // Played the way the operator does it: the play button in the header of the script
        // page; stopping it, for the export dialog, stores the session.
        page->playButton()->playButton()->click();
        if (!waitFor([&] { return playedEnough(*model, stages); }, timeoutMs))
            return fail(QStringLiteral("the session didn't get %1 stages far").arg(stages));
        if (!save(window, runningPath))
            return fail(QStringLiteral("can't write %1").arg(runningPath));
        const QString dialogPath = pagesFolder + QStringLiteral("/export-dialog.png");
        if (!pagesFolder.isEmpty() && !saveExportDialog(window, dialogPath, timeoutMs))
            return fail(QStringLiteral("no export dialog pictured in %1").arg(dialogPath));
    }
    if (!pagesFolder.isEmpty()) {
        const QString subjectsPath = pagesFolder + QStringLiteral("/subjects.png");
        if (!saveDatabasePage(window, subjectsPath))
            return fail(QStringLiteral("can't write %1").arg(subjectsPath));
        const QString editorPath = pagesFolder + QStringLiteral("/subject-editor.png");
        if (!saveSubjectEditor(window, editorPath))
            return fail(QStringLiteral("can't write %1").arg(editorPath));
    }
    return 0;
}
