#pragma once

#include "SimulatedSubject.h"

#include <QObject>
#include <QSharedPointer>
#include <QTimer>
#include <QVector>

#include <functional>

class TarveloScript;
struct ScriptStage;

// Plays an uploaded script as the box does: reports the start, each stage with its steps'
// reactions of the simulated subject at the steps' own times, the box's transfer decision at
// the end of each stage, and the end. Times are script milliseconds divided by the speed.
class ScriptPlayer : public QObject
{
    Q_OBJECT
public:
    ScriptPlayer(quint32 seed, const SimulatedSubject::Rates &rates, double speed,
                 QObject *parent = nullptr);

    void play(const QSharedPointer<TarveloScript> &script);
    // Ends a running script; a box answers that with "scriptFinished" too.
    void stop();
    bool isPlaying() const { return !m_script.isNull(); }

signals:
    void report(const QString &text);
    // For the status reports: a lamp that is lit for wallMs, a control held for wallMs.
    void stimulusShown(int stimulus, int wallMs);
    void buttonPressed(int button, int wallMs);

private:
    void startStage(int index);
    void runStep();
    void endStage();
    void finish();
    void after(int scriptMs, std::function<void()> action);
    int wall(int scriptMs) const;

    SimulatedSubject m_subject;
    double m_speed;
    QTimer m_timer;
    std::function<void()> m_next;
    QSharedPointer<TarveloScript> m_script;
    QVector<const ScriptStage *> m_stages;
    QVector<int> m_plays;
    int m_stage = 0;
    int m_step = 0;
    int m_errors = 0;
};
