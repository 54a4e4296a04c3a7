#pragma once

#include <QRandomGenerator>

// What the simulated subject did on one step.
struct Reaction
{
    enum Kind { Correct, Wrong, Late, Missed };
    Kind kind = Correct;
    int time = 0;   // ms after the stimulus came on; for a miss, how long the box waited
    int button = 0; // the control pressed; the "no control" value for a miss
    bool isError() const { return kind != Correct; }
};

// A test subject with a fixed seed, so that a run can be replayed. Reaction times follow a
// log-normal distribution around 400 ms, as human simple reaction times do; the rates of wrong
// controls, late and missed reactions are chosen by the caller.
class SimulatedSubject
{
public:
    struct Rates
    {
        double wrong = 0.1;
        double late = 0.05;
        double miss = 0.05;
    };

    SimulatedSubject(quint32 seed, const Rates &rates);

    // The reaction to a stimulus shown for duration ms and followed by delay ms. A reaction is
    // taken until duration + delay; a late one comes after duration, a miss never.
    Reaction react(int stimulus, int duration, int delay);

private:
    int reactionTime(int limit);
    double standardNormal();

    QRandomGenerator m_random;
    Rates m_rates;
};
