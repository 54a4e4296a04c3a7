// tarvelo-screenshot: renders the main window to PNG files for review. It runs against whatever
// box and data folder the environment gives (scripts/screenshots.sh sets up the emulator and a
// demo folder): the window once the box has answered and a script is selected, the device page
// with some lamps lit by the box, the device settings dialog, and the live report after some
// stages of the selected script have been played.
#include "app/TarveloCommon.h"
#include "app/TarveloModel.h"
#include "data/TarveloSession.h"
#include "device/FirmwarePackage.h"
#include "device/TarveloDevice.h"
#include "device/widgets/ComUpdaterWidget.h"
#include "device/widgets/TarveloSettingsWidget.h"
#include "foundation/LanguageContext.h"
#include "session/widgets/PlayScriptStopSessionButton.h"
#include "ui/AppStyle.h"
#include "ui/HeaderedWidget.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommandLineParser>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
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

bool save(QWidget &window, const QString &path)
{
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
    window.tabs()->setCurrentIndex(MainWindow::DevicePage);
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
    window.tabs()->setCurrentIndex(MainWindow::ScriptPage);
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
    const QCommandLineOption deviceOption(
        QStringLiteral("device"), QStringLiteral("Picture of the device page with lamps lit."),
        QStringLiteral("FILE"));
    const QCommandLineOption settingsOption(
        QStringLiteral("device-settings"), QStringLiteral("Picture of the device settings dialog."),
        QStringLiteral("FILE"));
    const QCommandLineOption firmwareOption(QStringLiteral("firmware"),
                                            QStringLiteral("Picture of the firmware dialog."),
                                            QStringLiteral("FILE"));
    parser.addOptions({idleOption, sessionOption, deviceOption, settingsOption, firmwareOption,
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
    const QString devicePath = pathOf(deviceOption);
    const QString settingsPath = pathOf(settingsOption);
    const QString firmwarePath = pathOf(firmwareOption);
    if (idlePath.isEmpty() && runningPath.isEmpty() && devicePath.isEmpty()
        && settingsPath.isEmpty() && firmwarePath.isEmpty())
        return fail(QStringLiteral("nothing to do: give --idle, --running, --device, "
                                   "--device-settings or --firmware with a FILE"));

    LanguageContext::setLanguage(QStringLiteral("ru-RU"));
    AppStyle::apply(app);
    MainWindow window;
    window.setWindowState(Qt::WindowNoState);
    window.resize(windowSize);
    window.show();

    TarveloModel *model = window.model();
    TarveloDevice *device = model->device();
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
    if (!devicePath.isEmpty() && !saveDevicePage(window, device, devicePath, timeoutMs))
        return fail(QStringLiteral("the box didn't light its lamps, or %1 can't be written")
                        .arg(devicePath));
    if (!settingsPath.isEmpty() && !saveDeviceSettings(window, settingsPath, timeoutMs))
        return fail(QStringLiteral("the box didn't tell its options, or %1 can't be written")
                        .arg(settingsPath));
    if (!firmwarePath.isEmpty() && !saveFirmwareUpdate(device, firmwarePath))
        return fail(QStringLiteral("can't write %1").arg(firmwarePath));
    if (runningPath.isEmpty())
        return 0;

    // Played the way the operator does it: the play button in the header of the script page.
    auto *header = qobject_cast<HeaderedWidget *>(window.tabs()->widget(MainWindow::ScriptPage));
    header->playButton()->playButton()->click();
    if (!waitFor([&] { return playedEnough(*model, stages); }, timeoutMs))
        return fail(QStringLiteral("the session didn't get %1 stages far").arg(stages));
    if (!save(window, runningPath))
        return fail(QStringLiteral("can't write %1").arg(runningPath));
    return 0;
}
