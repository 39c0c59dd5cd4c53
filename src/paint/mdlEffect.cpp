#include "paint/mdlEffect.h"

#include "paint/FilterRows.h"
#include "platform/Rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <numbers>

namespace mdlEffect
{
namespace
{
const std::uint32_t *row(const QImage &picture, int y)
{
    return reinterpret_cast<const std::uint32_t *>(picture.constScanLine(y));
}
std::uint32_t *row(QImage &picture, int y)
{
    return reinterpret_cast<std::uint32_t *>(picture.scanLine(y));
}
std::ptrdiff_t stride(const QImage &picture)
{
    return picture.bytesPerLine() / 4;
}

/// Pixels yet to be written.
QImage blank(QSize size, const QImage &like)
{
    QImage result(size, QImage::Format_RGB32);
    if (result.isNull())
        throw std::bad_alloc();
    result.setDotsPerMeterX(like.dotsPerMeterX());
    result.setDotsPerMeterY(like.dotsPerMeterY());
    return result;
}

QImage asRgb(const QImage &picture)
{
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    result.setDevicePixelRatio(1);
    return result;
}

int scaledLength(int length, float factor)
{
    return std::max(1, Rounding::toInt(static_cast<float>(length) * factor));
}

/// Every pixel of the result is the mean of four.
QImage halved(const QImage &picture)
{
    QImage result = blank(picture.size() / 2, picture);
    for (int y = 0; y < result.height(); ++y)
        FilterRows::halve(row(picture, 2 * y), row(picture, 2 * y + 1), row(result, y),
                          static_cast<std::size_t>(result.width()));
    return result;
}

QImage resize(const QImage &picture, const Parameters &parameters)
{
    const QSize size = mdlEffect::resizedSize(picture.size(), parameters);
    if (size * 2 == picture.size())
        return halved(picture);
    // Qt's smooth scaling is an area average downwards and bilinear upwards; it needs 32 bits a pixel.
    QImage result = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (result.isNull())
        throw std::bad_alloc();
    return result;
}

using Row = void (*)(const std::uint32_t *, std::uint32_t *, std::size_t);

void copyRow(const std::uint32_t *source, std::uint32_t *target, std::size_t count)
{
    std::copy_n(source, count, target);
}

/// Every row through a function, from the top or from the bottom.
QImage byRows(const QImage &picture, Row function, bool fromBottom)
{
    QImage result = blank(picture.size(), picture);
    const int height = picture.height();
    for (int y = 0; y < height; ++y)
        function(row(picture, fromBottom ? height - 1 - y : y), row(result, y),
                 static_cast<std::size_t>(picture.width()));
    return result;
}

/// A quarter turn clockwise, or back. Columns become rows, in squares of which both sides stay in the cache.
QImage quarterTurn(const QImage &picture, bool clockwise)
{
    constexpr int side = 64;
    const int width = picture.height();
    const int height = picture.width();
    QImage result = blank({width, height}, picture);
    const std::ptrdiff_t down = clockwise ? -stride(picture) : stride(picture);
    for (int top = 0; top < height; top += side) {
        for (int left = 0; left < width; left += side) {
            const int count = std::min(side, width - left);
            for (int y = top; y < std::min(top + side, height); ++y) {
                const std::uint32_t *source =
                    clockwise ? row(picture, width - 1 - left) + y : row(picture, left) + height - 1 - y;
                std::uint32_t *target = row(result, y) + left;
                for (int i = 0; i < count; ++i)
                    target[i] = source[i * down];
            }
        }
    }
    return result;
}

std::int64_t floorOfRatio(std::int64_t dividend, std::int64_t divisor)
{
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

/// Whole numbers, both ends included.
struct Range {
    std::int64_t first, last;
};

/// The part of `range` for which 0 <= start + number * step < end.
Range inside(Range range, std::int64_t start, std::int64_t step, std::int64_t end)
{
    if (step < 0)
        return inside(range, end - 1 - start, -step, end);
    if (step == 0)
        return start >= 0 && start < end ? range : Range{range.first, range.first - 1};
    return {std::max(range.first, -floorOfRatio(start, step)),
            std::min(range.last, floorOfRatio(end - 1 - start, step))};
}

/// Pixels of a new picture of the same size, both ends included.
struct Tile {
    std::int64_t left, top, right, bottom;
};

/// Any angle: every new pixel looks where it comes from.
class Turn
{
public:
    Turn(const QImage &picture, double radians)
        : m_picture(picture), m_width(picture.width()), m_height(picture.height()),
          m_cosine(std::llround(std::ldexp(std::cos(radians), unit - 1))),
          m_sine(std::llround(std::ldexp(std::sin(radians), unit - 1)))
    {
    }

    void fill(QImage &result, const Tile &tile, std::uint32_t background) const
    {
        fetch(tile);
        const FilterRows::Place step{2 * m_cosine, -2 * m_sine};
        for (std::int64_t y = tile.top; y <= tile.bottom; ++y) {
            const FilterRows::Place start = comesFrom(0, y);
            Range part = inside({tile.left, tile.right}, start.x, step.x, m_width << unit);
            part = inside(part, start.y, step.y, m_height << unit);
            if (part.first > part.last)
                part = {tile.left, tile.left - 1};
            std::uint32_t *target = row(result, static_cast<int>(y));
            std::fill(target + tile.left, target + part.first, background);
            FilterRows::along(row(m_picture, 0), stride(m_picture), target + part.first,
                              static_cast<std::size_t>(part.last - part.first + 1), comesFrom(part.first, y),
                              step);
            std::fill(target + part.last + 1, target + tile.right + 1, background);
        }
    }

private:
    static constexpr int unit = 32; ///< places are in 1 / 2^32 of a pixel

    /// The place of a pixel's centre, turned back about the centre of the picture.
    FilterRows::Place comesFrom(std::int64_t x, std::int64_t y) const
    {
        // Twice the distance, half the unit: whole numbers.
        const std::int64_t right = 2 * x + 1 - m_width;
        const std::int64_t down = 2 * y + 1 - m_height;
        return {m_cosine * right + m_sine * down + (m_width << (unit - 1)),
                m_cosine * down - m_sine * right + (m_height << (unit - 1))};
    }

    /// The lines cross the rows of the picture in a way that no processor foresees.
    void fetch(const Tile &tile) const
    {
        const std::array corners{comesFrom(tile.left, tile.top), comesFrom(tile.right, tile.top),
                                 comesFrom(tile.left, tile.bottom), comesFrom(tile.right, tile.bottom)};
        const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
        const auto [top, bottom] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
        const std::int64_t first = std::max<std::int64_t>(left >> unit, 0);
        const std::int64_t last = std::min(right >> unit, m_width - 1);
        for (std::int64_t y = std::max<std::int64_t>(top >> unit, 0);
             y <= std::min(bottom >> unit, m_height - 1); ++y)
            FilterRows::fetch(row(m_picture, static_cast<int>(y)) + first, last - first + 1);
    }

    const QImage &m_picture;
    std::int64_t m_width, m_height;
    std::int64_t m_cosine, m_sine; ///< in 1 / 2^31
};

QImage turned(const QImage &picture, double radians, QRgb background)
{
    constexpr std::int64_t side = 64;
    const Turn turn(picture, radians);
    QImage result = blank(picture.size(), picture);
    const std::int64_t width = result.width();
    const std::int64_t height = result.height();
    for (std::int64_t top = 0; top < height; top += side)
        for (std::int64_t left = 0; left < width; left += side)
            turn.fill(result, {left, top, std::min(left + side, width) - 1, std::min(top + side, height) - 1},
                      background | 0xff000000U);
    return result;
}
} // namespace

QImage RotatePicture(const QImage &picture, float angle, bool counterClockwise, QRgb background)
{
    if (picture.isNull())
        return {};
    const QImage source = asRgb(picture);
    const double whole = std::isfinite(angle) ? static_cast<double>(angle) : 0;
    double degrees = std::fmod(counterClockwise ? 360 - whole : whole, 360);
    if (degrees < 0)
        degrees += 360;
    if (degrees == 0)
        return source;
    if (degrees == 90 || degrees == 270)
        return quarterTurn(source, degrees == 90);
    if (degrees == 180)
        return byRows(source, FilterRows::reverse, true);
    return turned(source, degrees * std::numbers::pi / 180, background);
}

QSize resizedSize(QSize size, const Parameters &parameters)
{
    return {scaledLength(size.width(), parameters.widthFactor),
            scaledLength(size.height(), parameters.heightFactor)};
}

QImage TransformPicture(const QImage &picture, Kind kind, const Parameters &parameters)
{
    if (picture.isNull())
        return {};
    const QImage source = asRgb(picture);
    switch (kind) {
    case Kind::FlipHorizontal:
        return byRows(source, FilterRows::reverse, false);
    case Kind::FlipVertical:
        return byRows(source, copyRow, true);
    case Kind::Resize:
        return resize(source, parameters);
    case Kind::Rotate:
        return RotatePicture(source, parameters.angle, parameters.counterClockwise, parameters.background);
    case Kind::Invert:
        return byRows(source, FilterRows::invert, false);
    }
    return source;
}
} // namespace mdlEffect
