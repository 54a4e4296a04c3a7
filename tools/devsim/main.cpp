// tarvelo-devsim: a Tarvelo box on a pseudo-terminal, for tests and demonstrations.
#include "DeviceEmulator.h"
#include "PseudoTerminal.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QTextStream>

#include <csignal>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace {
int signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[1], &byte, 1);
}

// SIGTERM and SIGINT end the event loop, so that a --link symlink is removed on the way out.
void quitOnSignals(QCoreApplication &app)
{
    if (::pipe(signalPipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
    struct sigaction action
    {
    };
    action.sa_handler = onSignal;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
#ifdef Q_OS_LINUX
    // The box goes with whatever started it: a test killed on its timeout leaves no emulator
    // behind to hold its output open.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
}

bool readRate(const QCommandLineParser &parser, const QString &name, double &rate)
{
    if (!parser.isSet(name))
        return true;
    bool ok = false;
    rate = parser.value(name).toDouble(&ok);
    return ok && rate >= 0.0 && rate <= 1.0;
}

int fail(const QString &message)
{
    QTextStream(stderr) << "tarvelo-devsim: " << message << '\n';
    return 2;
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarvelo-devsim"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Emulates a Tarvelo box on a pseudo-terminal. Prints the terminal's path "
                       "on the first line of standard output."));
    parser.addHelpOption();
    const QList<QCommandLineOption> options {
        {QStringLiteral("link"), QStringLiteral("Make a symlink PATH to the terminal."),
         QStringLiteral("PATH")},
        {QStringLiteral("log"), QStringLiteral("Write the link's traffic to FILE."),
         QStringLiteral("FILE")},
        {QStringLiteral("serial"), QStringLiteral("Serial number (default 240315)."),
         QStringLiteral("SN")},
        {QStringLiteral("no-serial"),
         QStringLiteral("Answer sn=000000 until a serial number is written.")},
        {QStringLiteral("firmware-version"), QStringLiteral("Firmware version (default 2.4.1)."),
         QStringLiteral("V")},
        {QStringLiteral("greeting-answer"),
         QStringLiteral("Answer to the greeting (default iamtarvelo)."), QStringLiteral("TEXT")},
        {QStringLiteral("speed"), QStringLiteral("Divide all times by F (default 1)."),
         QStringLiteral("F")},
        {QStringLiteral("seed"), QStringLiteral("Seed of the simulated subject (default 1)."),
         QStringLiteral("N")},
        {QStringLiteral("wrong"), QStringLiteral("Rate of wrong controls (default 0.1)."),
         QStringLiteral("P")},
        {QStringLiteral("late"), QStringLiteral("Rate of late reactions (default 0.05)."),
         QStringLiteral("P")},
        {QStringLiteral("miss"), QStringLiteral("Rate of missed reactions (default 0.05)."),
         QStringLiteral("P")},
        {QStringLiteral("drop-after"),
         QStringLiteral("Close the link after N messages sent, then exit."), QStringLiteral("N")},
        {QStringLiteral("noise"), QStringLiteral("Put garbage and line ends between frames.")},
        {QStringLiteral("split"), QStringLiteral("Write frames in pieces with small pauses.")},
    };
    parser.addOptions(options);
    parser.process(app);

    EmulatorOptions settings;
    if (parser.isSet(QStringLiteral("serial")))
        settings.serialNumber = parser.value(QStringLiteral("serial"));
    settings.noSerialNumber = parser.isSet(QStringLiteral("no-serial"));
    if (parser.isSet(QStringLiteral("firmware-version")))
        settings.version = parser.value(QStringLiteral("firmware-version"));
    if (parser.isSet(QStringLiteral("greeting-answer")))
        settings.greetingAnswer = parser.value(QStringLiteral("greeting-answer"));
    bool ok = true;
    if (parser.isSet(QStringLiteral("speed")))
        settings.speed = parser.value(QStringLiteral("speed")).toDouble(&ok);
    if (!ok || settings.speed <= 0.0)
        return fail(QStringLiteral("--speed needs a number above 0"));
    if (parser.isSet(QStringLiteral("seed")))
        settings.seed = parser.value(QStringLiteral("seed")).toUInt(&ok);
    if (!ok)
        return fail(QStringLiteral("--seed needs a whole number"));
    SimulatedSubject::Rates &rates = settings.rates;
    if (!readRate(parser, QStringLiteral("wrong"), rates.wrong)
        || !readRate(parser, QStringLiteral("late"), rates.late)
        || !readRate(parser, QStringLiteral("miss"), rates.miss)
        || rates.wrong + rates.late + rates.miss > 1.0)
        return fail(QStringLiteral("rates go from 0 to 1 and add up to 1 at most"));
    if (parser.isSet(QStringLiteral("drop-after")))
        settings.faults.dropAfter = parser.value(QStringLiteral("drop-after")).toInt(&ok);
    if (!ok || settings.faults.dropAfter == 0)
        return fail(QStringLiteral("--drop-after needs a number above 0"));
    settings.faults.noise = parser.isSet(QStringLiteral("noise"));
    settings.faults.split = parser.isSet(QStringLiteral("split"));
    settings.logPath = parser.value(QStringLiteral("log"));

    PseudoTerminal terminal;
    if (!terminal.open())
        return fail(terminal.errorString());
    const QString link = parser.value(QStringLiteral("link"));
    if (!link.isEmpty()) {
        QFile::remove(link);
        if (!QFile::link(terminal.slavePath(), link))
            return fail(QStringLiteral("can't make the link %1").arg(link));
    }
    QTextStream(stdout) << terminal.slavePath() << Qt::endl;

    DeviceEmulator emulator(&terminal, settings);
    QObject::connect(&emulator, &DeviceEmulator::linkDropped, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    quitOnSignals(app);
    const int result = app.exec();
    if (!link.isEmpty())
        QFile::remove(link);
    return result;
}
