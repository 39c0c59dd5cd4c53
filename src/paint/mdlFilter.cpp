#include "paint/mdlFilter.h"

#include "paint/FilterRows.h"
#include "platform/Rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <optional>
#include <vector>

namespace mdlFilter
{
namespace
{
constexpr int stripeWidth = 256; // columns between two words to the watcher
constexpr int smallAmount = 2;   // Brightness and Darkness in a small region
constexpr int amount = 32;
constexpr std::uint32_t opaque = 0xff000000U;

const std::uint32_t *row(const QImage &picture, int y)
{
    return reinterpret_cast<const std::uint32_t *>(picture.constScanLine(y));
}

/// From a pixel to the one below it.
int stride(const QImage &picture)
{
    return static_cast<int>(picture.bytesPerLine() / 4);
}

std::size_t numberOf(int first, int last)
{
    return static_cast<std::size_t>(std::int64_t{last} - first + 1);
}

/// Columns first..last and rows first..last, both included.
struct Box {
    int left, top, right, bottom;

    bool empty() const { return left > right || top > bottom; }
    std::uint64_t pixels() const { return numberOf(left, right) * numberOf(top, bottom); }
    Box within(const Box &other) const
    {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
};

Box boxOf(const QImage &picture)
{
    return {0, 0, picture.width() - 1, picture.height() - 1};
}

/// What a stripe of columns of a filter works on.
struct Work {
    const QImage &source;
    std::vector<std::uint32_t *> target; ///< by rows
    Box visited;                         ///< within the picture
    bool small = false;
};

struct Components {
    int red, green, blue;
};

/// Outside there is no colour.
Components at(const QImage &picture, int x, int y)
{
    if (x < 0 || y < 0 || x >= picture.width() || y >= picture.height())
        return {-1, 0, 0};
    const QRgb pixel = row(picture, y)[x];
    return {qRed(pixel), qGreen(pixel), qBlue(pixel)};
}

std::uint32_t composed(int red, int green, int blue)
{
    const auto limited = [](int value) { return static_cast<std::uint32_t>(std::clamp(value, 0, 255)); };
    return opaque | limited(red) << 16 | limited(green) << 8 | limited(blue);
}

/// Runs `inner` on the rows of those visited pixels whose neighbours are all in the picture, `edge` on each
/// of the others. `reach`: how far the neighbours are, to the left and above, to the right and below.
template <typename Inner, typename Edge>
void withNeighbours(Work &work, const Box &stripe, int before, int after, Inner inner, Edge edge)
{
    const Box picture = boxOf(work.source);
    const Box visited = work.visited.within(stripe);
    const Box safe = visited.within(
        {picture.left + before, picture.top + before, picture.right - after, picture.bottom - after});
    for (int y = visited.top; y <= visited.bottom; ++y) {
        const bool rowIsSafe = !safe.empty() && y >= safe.top && y <= safe.bottom;
        const int left = rowIsSafe ? safe.left : visited.right + 1;
        const int right = rowIsSafe ? safe.right : visited.right;
        std::uint32_t *target = work.target[static_cast<std::size_t>(y)];
        for (int x = visited.left; x < left; ++x)
            target[x] = edge(x, y);
        if (rowIsSafe) {
            inner(y, left, numberOf(left, right));
            for (int x = right + 1; x <= visited.right; ++x)
                target[x] = edge(x, y);
        }
    }
}

template <typename Row>
void pointwise(Work &work, const Box &stripe, Row function)
{
    const Box visited = work.visited.within(stripe);
    std::size_t count = numberOf(visited.left, visited.right);
    int bottom = visited.bottom;
    const bool wholeRows = count == static_cast<std::size_t>(stride(work.source));
    if (wholeRows) { // one after the other: one long row
        count *= numberOf(visited.top, visited.bottom);
        bottom = visited.top;
    }
    for (int y = visited.top; y <= bottom; ++y) {
        const std::uint32_t *source = row(work.source, y) + visited.left;
        std::uint32_t *target = work.target[static_cast<std::size_t>(y)] + visited.left;
        // The bulk begins where a cache line does.
        const std::size_t head = std::min(count, reinterpret_cast<std::uintptr_t>(target) / 4 * 15 % 16);
        function(source, target, head);
        function(source + head, target + head, count - head);
    }
}

void blur(Work &work, const Box &stripe)
{
    const QImage &source = work.source;
    withNeighbours(
        work, stripe, 1, 1,
        [&](int y, int x, std::size_t count) {
            FilterRows::blur(row(source, y - 1) + x, row(source, y) + x, row(source, y + 1) + x,
                             work.target[static_cast<std::size_t>(y)] + x, count);
        },
        [&](int x, int y) {
            std::array<int, 3> sums{};
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const Components near = at(source, x + dx, y + dy);
                    sums[0] += near.red;
                    sums[1] += near.green;
                    sums[2] += near.blue;
                }
            }
            const auto tenth = [](int sum) { return std::abs(Rounding::toInt(sum / 10.0)); };
            return composed(tenth(sums[0]), tenth(sums[1]), tenth(sums[2]));
        });
}

void emboss(Work &work, const Box &stripe)
{
    const QImage &source = work.source;
    withNeighbours(
        work, stripe, 0, 1,
        [&](int y, int x, std::size_t count) {
            FilterRows::emboss(row(source, y) + x, row(source, y + 1) + x + 1,
                               work.target[static_cast<std::size_t>(y)] + x, count);
        },
        [&](int x, int y) {
            const Components here = at(source, x, y);
            const Components other = at(source, x + 1, y + 1);
            return composed(std::abs(here.red - other.red - 128), std::abs(here.green - other.green - 128),
                            std::abs(here.blue - other.blue - 128));
        });
}

using PairRow = void (*)(const std::uint32_t *, const std::uint32_t *, std::uint32_t *, std::size_t);

/// Sharpen and Snow: a pixel against the one left above it.
void contrast(Work &work, const Box &stripe, PairRow inner, double factor)
{
    const QImage &source = work.source;
    const auto one = [factor](int here, int other) {
        return Rounding::toInt(std::abs(here + factor * (here - other)));
    };
    withNeighbours(
        work, stripe, 1, 0,
        [&](int y, int x, std::size_t count) {
            inner(row(source, y) + x, row(source, y - 1) + x - 1,
                  work.target[static_cast<std::size_t>(y)] + x, count);
        },
        [&](int x, int y) {
            const Components here = at(source, x, y);
            const Components other = at(source, x - 1, y - 1);
            return composed(one(here.red, other.red), one(here.green, other.green),
                            one(here.blue, other.blue));
        });
}

/// (x, y) goes down by amplitude times the sine of x; y is whole, so that a column moves as one.
void wave(Work &work, const Box &stripe, int amplitude, int firstColumn)
{
    const Box visited = work.visited.within(stripe);
    std::vector<int> shifts;
    for (int x = visited.left; x <= visited.right; ++x)
        shifts.push_back(Rounding::toInt(amplitude * std::sin(static_cast<double>(firstColumn + x))));
    // Neighbours come from rows far apart: few columns at a time, so that these rows stay in the cache.
    constexpr std::size_t band = 64;
    for (std::size_t first = 0; first < shifts.size(); first += band) {
        const std::size_t count = std::min(band, shifts.size() - first);
        const std::size_t column = static_cast<std::size_t>(visited.left) + first;
        for (int y = 0; y < work.source.height(); ++y)
            FilterRows::shifted(row(work.source, y) + column, stride(work.source),
                                work.target[static_cast<std::size_t>(y)] + column, count, &shifts[first],
                                y - visited.bottom, y - visited.top);
    }
}

/// The numbers are those of all visited pixels, column by column, wherever a stripe begins.
void diffuse(Work &work, const Box &stripe, std::uint64_t state)
{
    const QImage &source = work.source;
    const Box all = work.visited;
    const std::uint64_t rows = numberOf(all.top, all.bottom);
    const auto stateOf = [&](int x, int y) {
        const auto before =
            static_cast<std::uint64_t>(x - all.left) * rows + static_cast<std::uint64_t>(y - all.top);
        return state + (before + 1) * Random::step;
    };
    withNeighbours(
        work, stripe, 2, 2,
        [&](int y, int x, std::size_t count) {
            FilterRows::diffuse(row(source, y) + x, stride(source),
                                work.target[static_cast<std::size_t>(y)] + x, count, stateOf(x, y),
                                rows * Random::step);
        },
        [&](int x, int y) {
            const std::uint64_t four = Random::mixed(stateOf(x, y));
            const auto offset = [four](int which) { return Random::offset(four, which); };
            return composed(at(source, x, y + offset(0)).red, at(source, x + offset(1), y).green,
                            at(source, x + offset(2), y + offset(3)).blue);
        });
}

/// The visited part of a region; nothing for a number that is no filter.
std::optional<Box> visitedBy(int number, const Region &r)
{
    switch (number) {
    case Blur:
        return Box{r.x1 + 1, r.y1 + 1, r.x2 - 1, r.y2 - 1};
    case Diffuse:
        return Box{r.x1 + 2, r.y1 + 2, r.x2 - 3, r.y2 - 3};
    case Emboss:
        return Box{r.x1, r.y1, r.x2 - 1, r.y2 - 1};
    case Sharpen:
    case Snow:
        return Box{r.x1 + 1, r.y1 + 1, r.x2, r.y2};
    case BlackAndWhite:
    case Brightness:
    case Crease:
    case Darkness:
    case GrayBlackAndWhite:
    case Grayscale:
    case ReplaceColors:
    case Wave:
        return Box{r.x1, r.y1, r.x2, r.y2};
    default:
        return std::nullopt;
    }
}

void runStripe(int number, Work &work, const Box &stripe, const Parameters &parameters, std::uint64_t state)
{
    const auto by = static_cast<std::uint8_t>(work.small ? smallAmount : amount);
    switch (number) {
    case BlackAndWhite:
        return pointwise(work, stripe, FilterRows::blackAndWhite);
    case Blur:
        return blur(work, stripe);
    case Brightness:
        return pointwise(work, stripe, [by](auto source, auto target, auto count) {
            FilterRows::brightness(source, target, count, by);
        });
    case Darkness:
        return pointwise(work, stripe, [by](auto source, auto target, auto count) {
            FilterRows::darkness(source, target, count, by);
        });
    case Diffuse:
        return diffuse(work, stripe, state);
    case Emboss:
        return emboss(work, stripe);
    case GrayBlackAndWhite:
        return pointwise(work, stripe, FilterRows::grayBlackAndWhite);
    case Grayscale:
        return pointwise(work, stripe, FilterRows::grayscale);
    case ReplaceColors:
        return pointwise(work, stripe, [&](auto source, auto target, auto count) {
            FilterRows::replaceColours(source, target, count, parameters.replaceFrom, parameters.replaceTo);
        });
    case Sharpen:
        return contrast(work, stripe, FilterRows::sharpen, 0.5);
    case Snow:
        return contrast(work, stripe, FilterRows::snow, 24);
    case Wave:
        return wave(work, stripe, waveAmplitude, parameters.firstColumn);
    case Crease:
        return wave(work, stripe, creaseAmplitude, parameters.firstColumn);
    default:
        return;
    }
}

bool readsNeighbours(int number)
{
    constexpr std::array readers{Blur, Crease, Diffuse, Emboss, Sharpen, Snow, Wave};
    return std::find(readers.begin(), readers.end(), number) != readers.end();
}

/// A picture like another one, with pixels yet to be written.
QImage blankLike(const QImage &other)
{
    QImage result(other.size(), other.format());
    result.setDevicePixelRatio(other.devicePixelRatio());
    result.setDotsPerMeterX(other.dotsPerMeterX());
    result.setDotsPerMeterY(other.dotsPerMeterY());
    return result;
}

/// A copy of all pixels; null when the watcher, if there is one, has ended it.
QImage snapshot(const QImage &source, const Watcher &watcher)
{
    QImage result = blankLike(source);
    if (result.isNull())
        throw std::bad_alloc();
    for (int y = 0; y < source.height(); ++y) {
        if (watcher && y % stripeWidth == 0 && !watcher(y * 100 / source.height(), {}, 0))
            return {};
        std::copy_n(row(source, y), source.width(), reinterpret_cast<std::uint32_t *>(result.scanLine(y)));
    }
    return result;
}

void copyOutside(Work &work)
{
    const Box inner = work.visited;
    const int width = work.source.width();
    const auto copy = [&](int y, int from, int to) {
        std::copy(row(work.source, y) + from, row(work.source, y) + to,
                  work.target[static_cast<std::size_t>(y)] + from);
    };
    for (int y = 0; y < work.source.height(); ++y) {
        if (y < inner.top || y > inner.bottom) {
            copy(y, 0, width);
        } else {
            copy(y, 0, inner.left);
            copy(y, inner.right + 1, width);
        }
    }
}
} // namespace

QImage ApplyFilter(int number, const QImage &picture, const Region &region, const Parameters &parameters,
                   const Watcher &watcher)
{
    const QImage source =
        picture.format() == QImage::Format_RGB32 ? picture : picture.convertToFormat(QImage::Format_RGB32);
    const Region whole = resolved(region, source.size());
    const std::optional<Box> reached = visitedBy(number, whole);
    if (source.isNull() || !reached)
        return source;
    const Box visited = reached->within(boxOf(source));
    if (visited.empty())
        return source;

    const bool small = isSmall(whole);
    const bool watched = watcher && !small;
    // A watcher sees what is not done yet as it was; for nobody one pass over the pixels is enough.
    QImage result =
        watched ? snapshot(source, readsNeighbours(number) ? watcher : Watcher()) : blankLike(source);
    if (result.isNull()) {
        if (watched)
            return {};
        throw std::bad_alloc();
    }
    Work work{source, {}, visited, small};
    for (int y = 0; y < result.height(); ++y)
        work.target.push_back(reinterpret_cast<std::uint32_t *>(result.scanLine(y)));
    if (!watched)
        copyOutside(work);
    const std::uint64_t state = parameters.random ? parameters.random->state() : 0;
    const int width = watched ? stripeWidth : source.width();
    for (int left = visited.left; left <= visited.right; left += width) {
        const int right = std::min(left + width - 1, visited.right);
        runStripe(number, work, {left, 0, right, source.height() - 1}, parameters, state);
        const auto percent = static_cast<int>(std::int64_t{right} * 100 / std::max(whole.x2, 1));
        if (watched && !watcher(percent, result, right + 1))
            return {};
    }
    if (number == Diffuse && parameters.random)
        parameters.random->skip(visited.pixels());
    return result;
}
} // namespace mdlFilter
