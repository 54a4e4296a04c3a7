#include "DeviceEmulator.h"

#include "PseudoTerminal.h"
#include "ScriptPlayer.h"
#include "data/KeyValueText.h"
#include "data/TarveloScript.h"
#include "device/DeviceProtocol.h"

#include <QTextCodec>

using namespace DeviceProtocol;

namespace {
constexpr int LampCount = 12;
constexpr int StatePeriodMs = 200;
constexpr int FastestStatePeriodMs = 10;
constexpr int LampTestMs = 500;
const QString MissingSerialNumber = QStringLiteral("000000");

bool isLamp(int n)
{
    return n >= 0 && n < LampCount;
}
} // namespace

DeviceEmulator::DeviceEmulator(PseudoTerminal *terminal, const EmulatorOptions &options,
                               QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_decoder(QTextCodec::codecForName("UTF-8")->makeDecoder())
    , m_writer(terminal, options.faults, ~options.seed)
    , m_player(new ScriptPlayer(options.seed, options.rates, options.speed, this))
    , m_serialNumber(options.serialNumber)
    , m_lampUntil(LampCount, 0)
    , m_buttonUntil(ReportedButtons, 0)
{
    if (!options.logPath.isEmpty())
        m_log.open(options.logPath);
    for (const QString &option : {AudioInvert, PedalInvert, FlashAll, SoundErrors})
        m_settings.insert(option, false);
    m_clock.start();
    m_statusTimer.setInterval(qMax(FastestStatePeriodMs, scaled(StatePeriodMs)));

    // The box reads bytes: a character cut across two writes of a long frame joins up again.
    connect(terminal, &PseudoTerminal::received, this,
            [this](const QByteArray &bytes) { m_splitter.parse(m_decoder->toUnicode(bytes)); });
    connect(&m_splitter, &TarveloMessage::messageReceived, this, &DeviceEmulator::handleCommand);
    connect(&m_writer, &ReportWriter::linkDropped, this, [this] {
        m_log.note(QStringLiteral("link dropped"));
        emit linkDropped();
    });
    connect(&m_statusTimer, &QTimer::timeout, this, &DeviceEmulator::sendState);
    connect(m_player, &ScriptPlayer::report, this, &DeviceEmulator::send);
    connect(m_player, &ScriptPlayer::stimulusShown, this, &DeviceEmulator::light);
    connect(m_player, &ScriptPlayer::buttonPressed, this, &DeviceEmulator::press);
}

DeviceEmulator::~DeviceEmulator()
{
    delete m_openStage;
}

void DeviceEmulator::handleCommand(const QString &command)
{
    m_log.command(command);
    if (command == Greeting) {
        send(m_options.greetingAnswer);
    } else if (command == AskSerialNumber) {
        send(SerialNumberReport
             + (m_options.noSerialNumber ? MissingSerialNumber : m_serialNumber));
    } else if (command == AskVersion) {
        send(VersionReport + m_options.version);
    } else if (command.startsWith(WriteSerialNumber)) {
        m_serialNumber = command.mid(WriteSerialNumber.size());
        m_options.noSerialNumber = false;
    } else if (command == GetSettings) {
        send(settingsReport());
    } else if (command.startsWith(SetSettings)) {
        changeSettings(command.mid(SetSettings.size()));
    } else if (command == StatusOn) {
        m_statusTimer.start();
    } else if (command == StatusOff) {
        m_statusTimer.stop();
    } else if (command == StartScript) {
        m_player->play(m_script ? m_script : QSharedPointer<TarveloScript>::create());
    } else if (command == Stop) {
        m_player->stop();
    } else if (!handleTest(command) && !handleUpload(command)) {
        m_log.note(QStringLiteral("unknown command ignored"));
    }
}

bool DeviceEmulator::handleTest(const QString &command)
{
    if (command.startsWith(LampTest)) {
        light(command.mid(LampTest.size()).toInt(), scaled(LampTestMs));
    } else if (command.startsWith(ToneTest)) {
        const int n = command.mid(ToneTest.size()).toInt();
        if (isLamp(n))
            light(n, scaled(LampTestMs));
        else
            m_log.note(QStringLiteral("tone %1").arg(n));
    } else if (command.startsWith(LampSet)) {
        const QStringList parts = command.mid(LampSet.size()).split(QLatin1Char('='));
        const int n = parts.constFirst().toInt();
        if (parts.size() == 2 && isLamp(n))
            m_lampUntil[n] = parts.at(1) == QLatin1String("1") ? -1 : 0;
    } else {
        return false;
    }
    return true;
}

bool DeviceEmulator::handleUpload(const QString &command)
{
    if (command.startsWith(ScriptHeader)) {
        const QString entry = command.mid(ScriptHeader.size());
        // The header always begins with the title: that is where a new upload starts.
        if (!m_script || entry.startsWith(QLatin1String("title="))) {
            m_script = QSharedPointer<TarveloScript>::create();
            m_headerText.clear();
            delete m_openStage;
            m_openStage = nullptr;
        }
        m_headerText += entry;
        const QMap<QString, QString> header =
            parseKeyValues(m_headerText, QStringLiteral(";"), QStringLiteral("="));
        m_script->setTitle(header.value(QStringLiteral("title")));
        m_script->setDescription(header.value(QStringLiteral("description")));
        m_script->setMessage(header.value(QStringLiteral("message")));
        m_script->setFullDuration(header.value(QStringLiteral("fullDuration"))
                                  == QLatin1String("1"));
        m_script->setToneLo(
            quint16(header.value(QStringLiteral("toneLo"), QStringLiteral("100")).toInt()));
        m_script->setToneHi(
            quint16(header.value(QStringLiteral("toneHi"), QStringLiteral("1000")).toInt()));
    } else if (command.startsWith(StartAddStage)) {
        if (!m_script)
            m_script = QSharedPointer<TarveloScript>::create();
        delete m_openStage;
        m_openStage = ScriptStage::fromText(command.mid(StartAddStage.size()));
    } else if (command.startsWith(AddItem)) {
        if (!m_openStage) {
            m_log.note(QStringLiteral("item outside a stage ignored"));
            return true;
        }
        const QMap<QString, QString> values =
            parseKeyValues(command.mid(AddItem.size()), QStringLiteral(";"), QStringLiteral("="));
        auto *step = new ScriptStep;
        step->stimulus = values.value(QStringLiteral("s"), QStringLiteral("1")).toInt();
        step->duration = values.value(QStringLiteral("t"), QStringLiteral("2000")).toInt();
        step->delay = values.value(QStringLiteral("d"), QStringLiteral("1000")).toInt();
        m_openStage->steps << step;
    } else if (command == StopAddStage) {
        if (m_openStage && m_script)
            m_script->addStage(m_openStage);
        m_openStage = nullptr;
    } else if (command.startsWith(SaveScript)) {
        m_savedScripts.insert(command.mid(SaveScript.size()).toInt(), m_script);
    } else {
        return false;
    }
    return true;
}

void DeviceEmulator::send(const QString &report)
{
    if (m_writer.send(report))
        m_log.report(report);
}

QString DeviceEmulator::settingsReport() const
{
    QStringList pairs;
    for (const QString &option : {AudioInvert, PedalInvert, FlashAll, SoundErrors})
        pairs << option + QLatin1Char('=') + (m_settings.value(option) ? '1' : '0');
    return SettingsReport + pairs.join(QLatin1Char(';'));
}

void DeviceEmulator::changeSettings(const QString &pairs)
{
    const QMap<QString, QString> values =
        parseKeyValues(pairs, QStringLiteral(";"), QStringLiteral("="));
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (m_settings.contains(it.key()))
            m_settings[it.key()] = it.value() == QLatin1String("1");
    }
}

void DeviceEmulator::sendState()
{
    const qint64 now = m_clock.elapsed();
    auto lit = [now](qint64 until) {
        return until < 0 || until > now ? '1' : '0';
    };
    QString lamps;
    for (const qint64 until : qAsConst(m_lampUntil))
        lamps += QLatin1Char(lit(until));
    QString buttons;
    for (const qint64 until : qAsConst(m_buttonUntil))
        buttons += QLatin1Char(lit(until));
    send(StateReport + lamps + QLatin1Char(';') + ButtonsPiece + buttons);
}

void DeviceEmulator::light(int lamp, int wallMs)
{
    if (isLamp(lamp) && m_lampUntil.at(lamp) >= 0)
        m_lampUntil[lamp] = qMax(m_lampUntil.at(lamp), m_clock.elapsed() + wallMs);
}

void DeviceEmulator::press(int button, int wallMs)
{
    if (button >= 0 && button < m_buttonUntil.size())
        m_buttonUntil[button] = qMax(m_buttonUntil.at(button), m_clock.elapsed() + wallMs);
}

int DeviceEmulator::scaled(int ms) const
{
    return qRound(ms / m_options.speed);
}
