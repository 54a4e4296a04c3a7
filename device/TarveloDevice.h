#pragma once

#include "TarveloMessage.h"
#include "foundation/ConnectionHelper.h"

#include <QDate>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QTimer>
#include <QVector>

class ScriptUploader;
class TarveloScript;
struct PortCandidate;

// The single owner of the serial link to the box. A timer tries every suitable port at once,
// greets it, and the first one that answers with the box's own word becomes the live link; the
// same timer then watches that link and asks for whatever is still unknown. A port that fails
// (a pulled cable, a removed device) is let go at once, so that the next pass can find the
// same box again. Nothing here talks to the operator: the signals are the whole outcome, and a
// command without a live link is dropped, with false as its only trace.
class TarveloDevice : public QObject
{
    Q_OBJECT
public:
    // comPort -1 tries every port, a number from 0 up only the port of that number.
    explicit TarveloDevice(int comPort, QObject *parent = nullptr);
    ~TarveloDevice() override;

    bool isConnected() const { return m_connected; }
    QString version() const { return m_version; }
    QString serialNumber() const { return m_serialNumber; }
    QString portName() const { return m_portName; }
    bool audioInvert() const { return m_audioInvert; }
    bool pedalInvert() const { return m_pedalInvert; }
    bool flashAll() const { return m_flashAll; }
    bool soundErrors() const { return m_soundErrors; }
    int comPort() const { return m_comPort; }
    // The ports that exist but refuse this user, each with the group to join (see portRefused).
    QMap<QString, QString> refusedPorts() const { return m_refusedPorts; }

    // Acts at the next search pass; a live link isn't touched.
    void setComPort(int comPort) { m_comPort = comPort; }
    void setSearchInterval(int seconds);
    int searchInterval() const { return m_connectionTimer.interval() / 1000; }
    // Off releases the live port for an outside tool (the firmware flasher); on searches anew.
    void setSearchEnabled(bool on);
    void setConnected(bool on);

    // Frames one command and writes it; false when it didn't go out (a null or closed port, a
    // write the port refused, an error that broke the link).
    static bool sendText(const QString &command, QSerialPort *port, int delayMs = 0);
    bool sendCommand(const QString &command, int delayMs = 0);

    void setStatusReports(bool on);
    void testLamp(int n);
    void testStimulus(int n, bool on);
    // Blocks the calling thread in short paced waits, with an event pass between commands, and
    // arms "startScript" a second after the last one when start is set (see ScriptUploader).
    // Stops at the first command that doesn't go out, with uploadFailed.
    void uploadScript(const TarveloScript *script, int saveSlot = -1, bool start = true);

    // Dispatches one whole message of the live link and passes it on through onMessage. Public
    // so that a recorded stream can be replayed without a port.
    void handleMessage(const QString &msg);

    // One read of the live link: decoded by itself, split into messages, and each message
    // dispatched as soon as it is whole. The live port's readyRead is the caller; public so
    // that a test or a fuzzer can speak for the box without a serial port.
    void receive(const QByteArray &bytes);

signals:
    void onConnected();
    void onDisconnected();
    void connectedChanged(bool connected);
    void gotVersion(const QString &version);
    void gotSerialNumber(const QString &sn);
    void gotPortName(const QString &portName);
    void ledChanged(const QList<bool> &leds);
    void btnChanged(int btn, bool on);
    void gotSettings(bool audioInvert, bool pedalsInvert, bool flashAll, bool soundErrors);
    void loadProgress(int progress);
    // An upload stopped at a command that didn't go out; the script isn't started.
    void uploadFailed();
    void onMessage(const QString &msg);
    // A port exists but refuses this user; told once per port, and the search goes on. The group
    // is the one to join, empty where no group applies (Windows: another program holds the port).
    void portRefused(const QString &portName, const QString &group);

protected:
    // The date that goes into a serial number written to a box without one.
    virtual QDate currentDate() const;

private slots:
    void connectionTimerHandler();

private:
    void watchLink();
    void searchPorts();
    void tryCandidate(const PortCandidate &candidate);
    void handleCandidateReply(QSerialPort *port, TarveloMessage *splitter);
    void takeLink(QSerialPort *port);
    void handlePortError(QSerialPort *port, QSerialPort::SerialPortError error);
    void reportRefusal(const QSerialPort *port);

    void handleSerialNumber(const QString &msg);
    void handleSettings(const QString &msg);
    void handleState(const QString &body);

    static void logCommand(const QString &command);

    bool m_audioInvert = false;
    bool m_pedalInvert = false;
    bool m_flashAll = false;
    bool m_soundErrors = false;
    bool m_connected = false;
    QString m_version;
    QString m_serialNumber;
    QString m_portName;
    int m_comPort = -1;
    QTimer m_connectionTimer;
    ConnectionHelper m_connections;
    ConnectionHelper m_searchConnections;
    ConnectionHelper m_portConnections;
    QVector<QSerialPort *> m_searchPorts;
    QMap<QString, QString> m_refusedPorts;
    TarveloMessage m_message;
    QSerialPort *m_port = nullptr;
    ScriptUploader *m_uploader = nullptr;
};
