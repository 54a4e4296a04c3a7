#pragma once

#include "ReportWriter.h"
#include "SimulatedSubject.h"
#include "TrafficLog.h"
#include "device/TarveloMessage.h"

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QTextDecoder>
#include <QTimer>
#include <QVector>

#include <memory>

class PseudoTerminal;
class ScriptPlayer;
class TarveloScript;
struct ScriptStage;

struct EmulatorOptions
{
    QString serialNumber = QStringLiteral("240315");
    bool noSerialNumber = false; // answers "sn=000000" until a serial number is written
    QString version = QStringLiteral("2.4.1");
    QString greetingAnswer = QStringLiteral("iamtarvelo");
    double speed = 1.0;
    quint32 seed = 1;
    SimulatedSubject::Rates rates;
    ReportWriter::Faults faults;
    QString logPath;
};

// The box's side of the protocol on a pseudo-terminal: greets, tells its serial number,
// version and options, lights lamps for tests, reports its state while asked to, takes script
// uploads and plays them with a simulated subject.
class DeviceEmulator : public QObject
{
    Q_OBJECT
public:
    DeviceEmulator(PseudoTerminal *terminal, const EmulatorOptions &options,
                   QObject *parent = nullptr);
    ~DeviceEmulator() override;

signals:
    void linkDropped();

private:
    void handleCommand(const QString &command);
    bool handleUpload(const QString &command);
    bool handleTest(const QString &command);
    void send(const QString &report);
    QString settingsReport() const;
    void changeSettings(const QString &pairs);
    void sendState();
    void light(int lamp, int wallMs);
    void press(int button, int wallMs);
    int scaled(int ms) const;

    EmulatorOptions m_options;
    std::unique_ptr<QTextDecoder> m_decoder;
    TarveloMessage m_splitter;
    ReportWriter m_writer;
    TrafficLog m_log;
    ScriptPlayer *m_player;
    QString m_serialNumber;
    QMap<QString, bool> m_settings;
    QTimer m_statusTimer;
    QElapsedTimer m_clock;
    // Until when (clock ms) each lamp is lit and each control held; -1 lit until told otherwise.
    QVector<qint64> m_lampUntil;
    QVector<qint64> m_buttonUntil;
    QSharedPointer<TarveloScript> m_script;
    QString m_headerText;
    ScriptStage *m_openStage = nullptr;
    QMap<int, QSharedPointer<TarveloScript>> m_savedScripts;
};
