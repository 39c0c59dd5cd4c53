#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

/// Conversions between kinds of numbers, the same everywhere in the program.
namespace Rounding
{
/// To the nearest integer, halves to the even one; values outside the 32-bit range stop at its ends, NaN
/// gives 0.
inline std::int32_t toInt(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::nearbyint(value);
    if (rounded <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    if (rounded >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(rounded);
}

/// Twips are 15 to a pixel.
inline constexpr int twipsPerPixel = 15;
} // namespace Rounding
