#include "TarveloDevice.h"

#include "DeviceProtocol.h"
#include "PortCatalog.h"
#include "PortPermission.h"
#include "ScriptUploader.h"
#include "data/TarveloCommon.h"
#include "foundation/DeferredStart.h"

#include <QDebug>
#include <QPointer>
#include <QRandomGenerator>
#include <QSerialPort>

using namespace DeviceProtocol;

namespace {
constexpr int FirstSearchIntervalMs = 5000;
constexpr int PieceWaitMs = 10;
// How long the last commands may take to leave when the link is let go with the program.
constexpr int FlushOnCloseMs = 100;

// Errors after which the port is of no more use. A write that merely took longer than its wait
// is not one of them.
bool breaksLink(QSerialPort::SerialPortError error)
{
    return error != QSerialPort::NoError && error != QSerialPort::TimeoutError;
}
} // namespace

TarveloDevice::TarveloDevice(int comPort, QObject *parent)
    : QObject(parent)
    , m_comPort(comPort)
{
    m_connectionTimer.setInterval(FirstSearchIntervalMs);
    // Queued, so that a tick never runs inside a reply handler or an upload's write.
    m_connections << connect(&m_connectionTimer, &QTimer::timeout, this,
                             &TarveloDevice::connectionTimerHandler, Qt::QueuedConnection);
    m_connectionTimer.start();
    // The first search waits until the window is on screen: listing the ports takes a while.
    DeferredStart::call(this, [this] { connectionTimerHandler(); });
    m_connections << connect(&m_message, &TarveloMessage::messageReceived, this,
                             &TarveloDevice::handleMessage, Qt::DirectConnection);
    m_uploader = new ScriptUploader(
        [this](const QString &command, int delayMs) { return sendCommand(command, delayMs); },
        this);
    connect(m_uploader, &ScriptUploader::progress, this, &TarveloDevice::loadProgress);
    connect(m_uploader, &ScriptUploader::failed, this, &TarveloDevice::uploadFailed);
    qRegisterMetaType<TarveloCommon::Stimulus>("Stimulus");
}

TarveloDevice::~TarveloDevice()
{
    // The last words, such as the stop of a session aborted on closing, reach the box before
    // the port goes; nothing it says meanwhile is dispatched to a model that is going as well.
    m_portConnections.clear();
    if (m_port && m_port->isOpen())
        m_port->waitForBytesWritten(FlushOnCloseMs);
}

void TarveloDevice::setSearchInterval(int seconds)
{
    m_connectionTimer.setInterval(seconds * 1000);
}

void TarveloDevice::setSearchEnabled(bool on)
{
    if (on) {
        connectionTimerHandler();
        m_connectionTimer.start();
        return;
    }
    m_connectionTimer.stop();
    if (m_port) {
        // Connections go first: closing must not count as a lost link of its own.
        m_portConnections.clear();
        m_port->close();
        m_port->deleteLater();
        m_port = nullptr;
    }
    setConnected(false);
}

void TarveloDevice::setConnected(bool on)
{
    if (m_connected == on)
        return;
    m_connected = on;
    qDebug() << "Tarvelo" << (on ? "connected" : "DISCONNECTED");
    emit connectedChanged(on);
    if (on)
        emit onConnected();
    else
        emit onDisconnected();
}

bool TarveloDevice::sendText(const QString &command, QSerialPort *port, int delayMs)
{
    if (!port || !port->isOpen())
        return false;
    logCommand(command);
    const QList<QByteArray> pieces = framePieces(command);
    // A frame in pieces waits briefly after each; delayMs counts for a whole frame only.
    const int waitMs = pieces.size() == 1 ? delayMs : PieceWaitMs;
    for (const QByteArray &piece : pieces) {
        if (port->write(piece) != piece.size())
            return false;
        if (waitMs > 0)
            port->waitForBytesWritten(waitMs);
        if (breaksLink(port->error()))
            return false;
    }
    return true;
}

bool TarveloDevice::sendCommand(const QString &command, int delayMs)
{
    return sendText(command, m_port, delayMs);
}

void TarveloDevice::logCommand(const QString &command)
{
    qDebug() << "Tarvelo <<" << command;
}

void TarveloDevice::setStatusReports(bool on)
{
    sendCommand(on ? StatusOn : StatusOff);
}

void TarveloDevice::testLamp(int n)
{
    if (n > TarveloCommon::LED_BOT_WhiteRight)
        return;
    sendCommand(LampTest + QString::number(n));
}

void TarveloDevice::testStimulus(int n, bool on)
{
    if (n > TarveloCommon::LED_BOT_WhiteRight)
        sendCommand(ToneTest + QString::number(n));
    else
        sendCommand(LampSet + QString::number(n) + QLatin1Char('=') + (on ? "1" : "0"));
}

void TarveloDevice::uploadScript(const TarveloScript *script, int saveSlot, bool start)
{
    if (script)
        m_uploader->upload(*script, saveSlot, start);
}

QDate TarveloDevice::currentDate() const
{
    return QDate::currentDate();
}

void TarveloDevice::connectionTimerHandler()
{
    if (m_connected)
        watchLink();
    else
        searchPorts();
}

void TarveloDevice::watchLink()
{
    setConnected(m_port && m_port->isOpen());
    if (!m_port)
        return;
    // Asked again at every tick until answered; there is no other polling.
    if (m_serialNumber.isEmpty())
        sendText(AskSerialNumber, m_port);
    if (m_version.isEmpty())
        sendText(AskVersion, m_port);
}

void TarveloDevice::searchPorts()
{
    m_searchConnections.clear();
    // Closed only: they are released when a search is won.
    for (QSerialPort *port : qAsConst(m_searchPorts))
        port->close();
    const QList<PortCandidate> candidates = PortCatalog::candidates();
    for (const PortCandidate &candidate : candidates) {
        if (PortCatalog::isExcluded(candidate.description))
            continue;
        qDebug() << "PORT INFO" << candidate.name << candidate.description << candidate.manufacturer
                 << candidate.serialNumber;
        if (m_comPort >= 0 && PortCatalog::portNumber(candidate.name) != m_comPort)
            continue;
        tryCandidate(candidate);
    }
}

void TarveloDevice::tryCandidate(const PortCandidate &candidate)
{
    auto *port = new QSerialPort(candidate.name, this);
    port->setBaudRate(QSerialPort::Baud115200);
    port->setDataBits(QSerialPort::Data8);
    port->setParity(QSerialPort::NoParity);
    port->setStopBits(QSerialPort::OneStop);
    port->setFlowControl(QSerialPort::NoFlowControl);
    if (!port->open(QIODevice::ReadWrite)) {
        if (port->error() == QSerialPort::PermissionError)
            reportRefusal(port);
        port->close();
        port->deleteLater();
        return;
    }
    // Each candidate has a splitter of its own, so that its bytes never reach the live one.
    auto *splitter = new TarveloMessage(port);
    // Guarded: a queued reply may still arrive after a pass or a win has released the port.
    const QPointer<QSerialPort> guard(port);
    m_searchConnections << connect(
        port, &QSerialPort::readyRead, this,
        [this, guard, splitter] {
            if (guard)
                handleCandidateReply(guard, splitter);
        },
        Qt::QueuedConnection);
    m_searchPorts << port;
    // Tied to the port, so that a greeting to a port that is gone has no effect.
    QTimer::singleShot(GreetingDelayMs, port, [port] { sendText(Greeting, port); });
}

void TarveloDevice::handleCandidateReply(QSerialPort *port, TarveloMessage *splitter)
{
    // A reply queued before the pass that closed this port is stale.
    if (!m_searchPorts.contains(port) || !port->isOpen())
        return;
    const QStringList messages = splitter->parseBytes(port->readAll());
    if (!messages.contains(GreetingAnswer))
        return;
    splitter->deleteLater();
    takeLink(port);
}

void TarveloDevice::takeLink(QSerialPort *port)
{
    setConnected(true);
    m_searchConnections.clear();
    for (QSerialPort *other : qAsConst(m_searchPorts)) {
        if (other == port)
            continue;
        other->close();
        other->deleteLater();
    }
    m_searchPorts.clear();
    m_portName = port->portName();
    // An earlier link's port stays a child, alive and unread, but can no longer speak for the
    // new one.
    m_portConnections.clear();
    m_port = port;
    m_message.reset();
    m_portConnections << connect(
        port, &QSerialPort::errorOccurred, this,
        [this, port](QSerialPort::SerialPortError error) { handlePortError(port, error); },
        Qt::DirectConnection);
    m_portConnections << connect(port, &QSerialPort::readyRead, this,
                                 [this, port] { receive(port->readAll()); });
    sendText(AskSerialNumber, port);
    sendText(AskVersion, port);
    emit gotPortName(m_portName);
}

void TarveloDevice::handlePortError(QSerialPort *port, QSerialPort::SerialPortError error)
{
    if (!breaksLink(error))
        return;
    m_portConnections.clear();
    m_port = nullptr;
    setConnected(false);
    // Closed once this signal has returned, as the port may be inside a call of its own; its
    // device and lock are then free for the next search pass.
    QTimer::singleShot(0, port, [port] {
        port->close();
        port->deleteLater();
    });
}

void TarveloDevice::reportRefusal(const QSerialPort *port)
{
    const QString name = port->portName();
    // A lost link's port that this object still holds is no matter of rights (Windows would
    // take it for another program's).
    const bool heldHere = m_port && m_port->portName() == name;
    if (heldHere || m_refusedPorts.contains(name) || !PortPermission::refusesUser(name))
        return;
    const QString group = PortPermission::groupToJoin(name);
    m_refusedPorts.insert(name, group);
    emit portRefused(name, group);
}

void TarveloDevice::receive(const QByteArray &bytes)
{
    m_message.parseBytes(bytes);
}

void TarveloDevice::handleMessage(const QString &msg)
{
    if (!msg.startsWith(StateReport))
        qDebug() << "Tarvelo >>" << msg;
    if (msg.startsWith(SerialNumberReport)) {
        handleSerialNumber(msg);
    } else if (msg.startsWith(VersionReport)) {
        m_version = msg.mid(VersionReport.size());
        emit gotVersion(m_version);
    } else if (msg.startsWith(SettingsReport)) {
        handleSettings(msg);
    } else if (msg.startsWith(StateReport)) {
        handleState(msg.mid(StateReport.size()));
    }
    emit onMessage(msg);
}

void TarveloDevice::handleSerialNumber(const QString &msg)
{
    if (marksMissingSerialNumber(msg)) {
        const int suffix = QRandomGenerator::global()->bounded(10, 99);
        sendCommand(WriteSerialNumber + currentDate().toString(QStringLiteral("yyMM"))
                    + QString::number(suffix));
        sendCommand(AskSerialNumber);
    }
    // The old value shows until the answer to the new question arrives.
    m_serialNumber = msg.mid(SerialNumberReport.size());
    emit gotSerialNumber(m_serialNumber);
}

void TarveloDevice::handleSettings(const QString &msg)
{
    m_audioInvert = optionIsOn(msg, AudioInvert);
    m_pedalInvert = optionIsOn(msg, PedalInvert);
    m_flashAll = optionIsOn(msg, FlashAll);
    m_soundErrors = optionIsOn(msg, SoundErrors);
    emit gotSettings(m_audioInvert, m_pedalInvert, m_flashAll, m_soundErrors);
}

void TarveloDevice::handleState(const QString &body)
{
    const State state = parseState(body);
    emit ledChanged(state.lamps);
    if (!state.hasButtons)
        return;
    for (int i = 0; i < state.buttons.size(); ++i)
        emit btnChanged(i, state.buttons.at(i));
}
