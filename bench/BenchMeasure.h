#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

// Runs the work the given number of rounds and prints the mean and the fastest round in
// milliseconds; the fastest is the figure least disturbed by whatever else the machine does.
inline void measure(const char *what, int rounds, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    double total = 0;
    for (const double t : times)
        total += t;
    std::printf("%-40s mean %8.3f ms   min %8.3f ms   (%d rounds)\n", what, total / rounds,
                *std::min_element(times.begin(), times.end()), rounds);
}
