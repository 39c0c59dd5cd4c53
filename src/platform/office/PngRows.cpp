#include "platform/office/PngRows.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr std::uint32_t colorBits = 0xffffff;
constexpr std::size_t pixelBytes = 3;

/// How far a difference is from 0, upwards or downwards.
std::uint8_t magnitude(std::uint8_t difference) noexcept
{
    return std::min(difference, static_cast<std::uint8_t>(-difference));
}

std::uint8_t difference(std::uint8_t one, std::uint8_t other) noexcept
{
    return static_cast<std::uint8_t>(one - other);
}

void subtract(const std::uint8_t *row, const std::uint8_t *other, std::uint8_t *target,
              std::size_t length) noexcept
{
    for (std::size_t i = 0; i < length; ++i)
        target[i] = difference(row[i], other[i]);
}
} // namespace

ColorTable::ColorTable()
{
    m_places.fill({~colorBits, 0});
    m_colors.reserve(mostColors);
}

bool ColorTable::indices(const std::uint32_t *pixels, std::uint8_t *target, std::size_t count)
{
    std::uint32_t last = ~colorBits;
    std::uint8_t index = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t color = pixels[i] & colorBits;
        if (color != last) {
            last = color;
            std::size_t place = (color * 0x9e3779b1U) >> 22;
            while (m_places[place].color != color && m_places[place].color <= colorBits)
                place = (place + 1) % places;
            if (m_places[place].color != color) {
                if (m_colors.size() == mostColors)
                    return false;
                m_places[place] = {color, static_cast<std::uint8_t>(m_colors.size())};
                m_colors.push_back(color);
            }
            index = m_places[place].index;
        }
        target[i] = index;
    }
    return true;
}

void swapPixels(const std::uint32_t *pixels, std::uint8_t *target, std::size_t count) noexcept
{
    for (std::size_t i = 0; i < count; ++i, target += pixelBytes) {
        target[0] = static_cast<std::uint8_t>(pixels[i] >> 16);
        target[1] = static_cast<std::uint8_t>(pixels[i] >> 8);
        target[2] = static_cast<std::uint8_t>(pixels[i]);
    }
}

void filterRow(const std::uint8_t *row, const std::uint8_t *above, std::uint8_t *target,
               std::size_t length) noexcept
{
    const std::uint8_t *left = row - pixelBytes;
    std::uint64_t none = 0;
    std::uint64_t sub = 0;
    std::uint64_t up = 0;
    for (std::size_t i = 0; i < length; ++i) {
        none += magnitude(row[i]);
        sub += magnitude(difference(row[i], left[i]));
        up += magnitude(difference(row[i], above[i]));
    }
    if (none <= sub && none <= up) {
        target[0] = 0;
        std::memcpy(target + 1, row, length);
    } else if (sub <= up) {
        target[0] = 1;
        subtract(row, left, target + 1, length);
    } else {
        target[0] = 2;
        subtract(row, above, target + 1, length);
    }
}
