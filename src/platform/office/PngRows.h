#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The loops over pixels and bytes of a PNG file (ISO/IEC 15948). Pixels are of 32 bits: blue, green, red and
/// a byte that does not count.

/// Gives the colours of a picture numbers, up to 256 of them.
class ColorTable
{
public:
    ColorTable();

    /// The numbers of a row's colours. False once there are more than 256; the row is not finished then.
    bool indices(const std::uint32_t *pixels, std::uint8_t *target, std::size_t count);

    /// By number, 0xRRGGBB.
    const std::vector<std::uint32_t> &colors() const { return m_colors; }

private:
    static constexpr std::size_t mostColors = 256;
    static constexpr std::size_t places = 4 * mostColors; // a power of two; most colours are in their place
    struct Place {
        std::uint32_t color; // above 0xffffff: empty
        std::uint8_t index;
    };
    std::array<Place, places> m_places{};
    std::vector<std::uint32_t> m_colors;
};

/// Red, green, blue: 3 * count bytes.
void swapPixels(const std::uint32_t *pixels, std::uint8_t *target, std::size_t count) noexcept;

/// Writes a row of three bytes a pixel through the filter none, sub or up, whichever leaves the smallest
/// bytes: length + 1 of them, the first of which tells the filter. Three zeros lie before `row`; `above` is
/// the row above it, zeros for the first. The format's two other filters gain nothing on pictures of the
/// screen.
void filterRow(const std::uint8_t *row, const std::uint8_t *above, std::uint8_t *target,
               std::size_t length) noexcept;
