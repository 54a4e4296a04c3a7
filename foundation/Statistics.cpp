#include "Statistics.h"

#include <cmath>
#include <limits>

void m_d_cko(const QList<double> &values, double *m, double *d, double *cko)
{
    *m = *d = *cko = 0.0;
    const int n = values.size();
    if (n < 1)
        return;
    const double mean = sum(values) / n;
    double squares = 0.0;
    for (const double value : values)
        squares += (value - mean) * (value - mean);
    // n == 1 divides 0 by 0 on purpose: one value has no spread, and NaN says so.
    const double variance = squares / double(n - 1);
    *m = mean;
    *d = variance;
    *cko = std::sqrt(variance);
}

double sum(const QList<double> &values)
{
    double total = 0.0;
    for (const double value : values)
        total += value;
    return total;
}

int roundHalfUp(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    if (value <= low)
        return std::numeric_limits<int>::min();
    if (value >= high)
        return std::numeric_limits<int>::max();
    if (value >= 0)
        return int(std::trunc(value + 0.5));
    // Shift into the non-negative range, round there, shift back.
    const double shift = std::trunc(value - 1);
    return int(std::trunc(value - shift + 0.5) + shift);
}
