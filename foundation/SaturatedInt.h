#pragma once

#include <cmath>
#include <limits>

// A double cut toward zero to an int, as for the coordinates of a point or size read from text.
// A plain cast of a value beyond the range of int is undefined behaviour, and a file can hold
// "1e300"; such values stick to the ends of the range instead, and NaN gives 0.
inline int saturatedInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value <= double(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    if (value >= double(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    return int(value);
}
