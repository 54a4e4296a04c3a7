#pragma once

#include <QList>

// Two-pass statistics over a list of values, in list order. The order of the additions is
// part of the result: the same list gives the same bits every time.

// M = mean; D = sample variance (divided by n - 1); cko = σ = √D. With no values all three are
// 0. With one value D is 0/0, a NaN, and σ with it: callers decide how to show that.
void m_d_cko(const QList<double> &values, double *m, double *d, double *cko);

// Plain sum from 0.0 in list order.
double sum(const QList<double> &values);

// Rounds a half upwards: truncate(x + 0.5) for x ≥ 0, and the same shifted by a whole number
// for negative x, so that -2.5 gives -2. Values beyond int and NaN give the nearest bound or 0.
int roundHalfUp(double value);
