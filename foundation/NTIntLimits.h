#pragma once

#include <QMetaObject>

#include <limits>

// Default and limits of an integer setting, read from the class information of its property
// (Default, Minimum, Maximum, Step), so that code which bounds a value uses the same numbers
// as the form.
struct NTIntLimits
{
    int defaultValue = 0;
    int minimum = std::numeric_limits<int>::min();
    int maximum = std::numeric_limits<int>::max();
    int step = 1;

    int bounded(int value) const;

    static NTIntLimits declared(const QMetaObject &metaObject, const char *property);
};
