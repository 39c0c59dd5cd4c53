#pragma once

#include <QImage>

#include <cstdint>
#include <functional>

/// Filters that change the colours of a picture. Functions of a picture, a region and parameters; no state,
/// no widget. A filter reads the picture as it was: what it writes never feeds back into later pixels.
///
/// Components are red, green and blue, 0 to 255. Results are rounded to the nearest integer, halves to the
/// even one; a component above 255 becomes 255. Outside the picture there is no colour: read there, red
/// counts as -1, green and blue as 0; nothing is written there.
namespace mdlFilter
{
/// The numbers of the filters. 9 is none; any other number leaves the picture as it is.
enum Filter : int {
    BlackAndWhite = 0,
    Blur = 1,
    Brightness = 2,
    Crease = 3,
    Darkness = 4,
    Diffuse = 5,
    Emboss = 6,
    GrayBlackAndWhite = 7,
    Grayscale = 8,
    ReplaceColors = 10,
    Sharpen = 11,
    Snow = 12,
    Wave = 13
};

/// How far Wave and Crease move pixels.
inline constexpr int waveAmplitude = 4;
inline constexpr int creaseAmplitude = 512;

/// Pixels, all bounds included; they may lie outside the picture. All four -1: the whole picture, with
/// x2 = width and y2 = height, so that the last row and column have neighbours without colour.
struct Region {
    int x1 = -1;
    int y1 = -1;
    int x2 = -1;
    int y2 = -1;
};

/// Uniform random numbers for Diffuse: SplitMix64 (Steele, Lea and Flood 2014). Equal seeds give equal
/// numbers, and any of them can be had without those before it.
class Random
{
public:
    static constexpr std::uint64_t step = 0x9e3779b97f4a7c15ULL;

    explicit Random(std::uint64_t seed) : m_state(seed) {}

    /// Four numbers of 16 bits, the lowest first, each a fraction of 2^16.
    std::uint64_t next() { return mixed(m_state += step); }
    /// As if next() had been called `count` times.
    void skip(std::uint64_t count) { m_state += count * step; }

    std::uint64_t state() const { return m_state; }
    /// What next() gives when it leaves this state.
    static constexpr std::uint64_t mixed(std::uint64_t state)
    {
        state = (state ^ state >> 30) * 0xbf58476d1ce4e5b9ULL;
        state = (state ^ state >> 27) * 0x94d049bb133111ebULL;
        return state ^ state >> 31;
    }
    /// -2 to 2, by the number `which` (0 to 3) of four: the integer part of 5 times a number in [0, 1),
    /// less 2.
    static constexpr int offset(std::uint64_t four, int which)
    {
        const auto number = static_cast<int>(four >> 16 * which & 0xffff);
        return (number * 5 >> 16) - 2;
    }

private:
    std::uint64_t m_state;
};

struct Parameters {
    QRgb replaceFrom = 0;     ///< Replace colours: pixels of exactly this colour (alpha ignored) ...
    QRgb replaceTo = 0;       ///< ... become this one
    Random *random = nullptr; ///< Diffuse; without one the seed 0
    int firstColumn = 0;      ///< Wave, Crease: x of the picture's first column, where it is part of another
};

/// Hears about a filter that takes its time: so many percent are done, and which columns are, from the left;
/// the others are as they were. `result` goes on changing: keep a copy() if any. No columns: a filter that
/// reads neighbours is still taking its snapshot of the colours, and `result` is null. False ends the filter.
using Watcher = std::function<bool(int percent, const QImage &result, int columnsDone)>;

// clang-format off
/// Runs a filter over a region. The result has the size of the picture and Format_RGB32; it is null when the
/// watcher has ended the filter. The picture itself stays. What each filter visits within the region, and
/// gives:
///
///     Black and white    all                       white if any component is at least 192, else black
///     Blur               x1+1..x2-1, y1+1..y2-1    |sum of the 3 x 3 pixels / 10|
///     Brightness         all                       component + 32; + 2 in a small region
///     Darkness           all                       |component - 32|; |component - 2| in a small region
///     Diffuse            x1+2..x2-3, y1+2..y2-3    red of (x, y + d), green of (x + d, y), blue of
///                                                  (x + d, y + d), each d a new offset of `random`: four a
///                                                  pixel, in this order, for the visited pixels in the
///                                                  picture, column by column
///     Emboss             x1..x2-1, y1..y2-1        |-128 + P(x, y) - P(x + 1, y + 1)|
///     Gray black and     all                       r' = |(2g - b + r) r| / 256, g' = |(2b - g + r') r'| / 256,
///     white                                        b' = |(2b - g' + r') g'| / 256, then the mean of the three
///     Grayscale          all                       0.32 (r + g + b)
///     Replace colours    all                       see Parameters
///     Sharpen            x1+1..x2, y1+1..y2        |P(x, y) + 0.5 (P(x, y) - P(x - 1, y - 1))|
///     Snow               as Sharpen, with the factor 24
///     Wave               all                       (x, y) goes to (x, y + 4 sin x), x in radians, rounded;
///                                                  pixels to which nothing goes stay
///     Crease             as Wave, with the amplitude 512
///
/// A region is small if (x2 - x1) (y2 - y1) < 256. Unless it is, the watcher is called after every 256
/// columns and after the last one; the percentage is that of the last finished column in x2.
// clang-format on
QImage ApplyFilter(int number, const QImage &picture, const Region &region, const Parameters &parameters = {},
                   const Watcher &watcher = {});

/// The same on a picture of Format_RGB32 itself. Takes time for the region and what lies around it, not for
/// the whole picture.
void ApplyFilterInPlace(int number, QImage &picture, const Region &region, const Parameters &parameters = {});

/// The region that is meant: itself, or the whole picture for four times -1.
Region resolved(const Region &region, QSize picture);
bool isSmall(const Region &region);
} // namespace mdlFilter
