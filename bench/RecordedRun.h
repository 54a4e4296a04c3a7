#pragma once

#include "data/TarveloCommon.h"

#include <QByteArray>
#include <QRandomGenerator>
#include <QString>

// A run as the box reports it, the same for every call with the same shape: the start, then per
// stage its number, its size, a reaction per step (some missed, some with the wrong control) and
// the transfer. The finish is left to the caller.
struct RecordedRun
{
    QByteArray bytes;
    int messages = 0;

    static RecordedRun play(int stages, int steps)
    {
        QRandomGenerator random(quint32(stages * 1000 + steps));
        RecordedRun run;
        run.add(QStringLiteral("scriptStarted=Проба внимания").toUtf8());
        const char *actions[] = {"+1", "repeat", "-1", "maxRepeats", "+2"};
        for (int stage = 0; stage < stages; ++stage) {
            run.add("stageStarted=" + QByteArray::number(stage % 12));
            run.add("stageItems=" + QByteArray::number(steps));
            for (int step = 0; step < steps; ++step) {
                const int s = int(random.bounded(18));
                const int b2 = requiredButton(s);
                const int t = int(random.bounded(5, 20)) * 100;
                const int d = int(random.bounded(5, 15)) * 100;
                const bool missed = random.bounded(20) == 0;
                const int r = missed ? -(t + d) : int(random.bounded(150, t + d));
                const int b = missed ? 10 : random.bounded(8) == 0 ? int(random.bounded(9)) : b2;
                run.add(QStringLiteral("r=%1;b=%2;b2=%3;s=%4;t=%5;d=%6")
                            .arg(r)
                            .arg(b)
                            .arg(b2)
                            .arg(s)
                            .arg(t)
                            .arg(d)
                            .toLatin1());
            }
            run.add(QByteArray("stageAction=") + actions[random.bounded(5)]);
        }
        return run;
    }

private:
    void add(const QByteArray &text)
    {
        bytes += '{' + text + '}';
        ++messages;
    }
};
