#pragma once

#include <cstdint>

/// Whether the display's time stamp `a` is later than `b`. Stamps wrap at 32 bits, about every 50 days; two
/// that lie further apart than half of that cannot be compared.
constexpr bool isLater(std::uint32_t a, std::uint32_t b) noexcept
{
    return static_cast<std::int32_t>(a - b) > 0;
}
