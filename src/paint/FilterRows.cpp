#include "paint/FilterRows.h"

#include "paint/mdlFilter.h"

// Compiled with -O3. Where the processor has wider registers, its own version of a function is taken at the
// start of the program.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define SHOTLY_MULTIVERSION __attribute__((target_clones("default", "arch=x86-64-v3", "arch=x86-64-v4")))
#else
#define SHOTLY_MULTIVERSION
#endif

namespace
{
constexpr std::uint32_t opaque = 0xff000000U;

constexpr int redOf(std::uint32_t pixel)
{
    return static_cast<int>(pixel >> 16 & 0xff);
}
constexpr int greenOf(std::uint32_t pixel)
{
    return static_cast<int>(pixel >> 8 & 0xff);
}
constexpr int blueOf(std::uint32_t pixel)
{
    return static_cast<int>(pixel & 0xff);
}
constexpr int absolute(int value)
{
    return value < 0 ? -value : value;
}
constexpr int clamped(int value)
{
    return value > 255 ? 255 : value;
}
/// value / 256, halves to even; not negative.
constexpr int roundedBy256(int value)
{
    return (value + 127 + (value >> 8 & 1)) >> 8;
}

using Byte = std::uint8_t;
const Byte *bytes(const std::uint32_t *pixels)
{
    return reinterpret_cast<const Byte *>(pixels);
}
Byte *bytes(std::uint32_t *pixels)
{
    return reinterpret_cast<Byte *>(pixels);
}

/// Calls step(done, part) for pieces that stay in the first cache while a step goes over them more than once.
template <typename Step>
inline void inPieces(std::size_t count, Step step)
{
    constexpr std::size_t piece = 512;
    for (std::size_t done = 0; done < count; done += piece)
        step(done, count - done < piece ? count - done : piece);
}

/// The loops over bytes treat alpha like a component.
inline void makeOpaque(std::uint32_t *target, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        target[i] |= opaque;
}
} // namespace

SHOTLY_MULTIVERSION
void FilterRows::blackAndWhite(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                               std::size_t count)
{
    // 192 and above: the two highest bits of a component are set.
    for (std::size_t i = 0; i < count; ++i)
        target[i] = (source[i] & source[i] << 1 & 0x00808080U) != 0 ? 0xffffffffU : opaque;
}

SHOTLY_MULTIVERSION
void FilterRows::grayscale(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                           std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto sum =
            static_cast<std::uint32_t>(redOf(source[i]) + greenOf(source[i]) + blueOf(source[i]));
        // 0.32 sum = 8 sum / 25, which is never a half; 5243 / 2^17 is 1 / 25 up to 43,690.
        const std::uint32_t gray = (8 * sum + 12) * 5243U >> 17;
        target[i] = opaque | gray * 0x010101U;
    }
}

SHOTLY_MULTIVERSION
void FilterRows::grayBlackAndWhite(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                                   std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const int g = greenOf(source[i]);
        const int b = blueOf(source[i]);
        const int r = redOf(source[i]);
        const int newRed = roundedBy256(absolute((2 * g - b + r) * r));
        const int newGreen = roundedBy256(absolute((2 * b - g + newRed) * newRed));
        const int newBlue = roundedBy256(absolute((2 * b - newGreen + newRed) * newGreen));
        const auto sum = static_cast<std::uint32_t>(clamped(newRed) + clamped(newGreen) + clamped(newBlue));
        const std::uint32_t gray = (sum + 1) * 21846U >> 16; // a third is never a half
        target[i] = opaque | gray * 0x010101U;
    }
}

SHOTLY_MULTIVERSION
void FilterRows::replaceColours(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                                std::size_t count, std::uint32_t from, std::uint32_t to)
{
    for (std::size_t i = 0; i < count; ++i)
        target[i] = (source[i] | opaque) == (from | opaque) ? to | opaque : source[i] | opaque;
}

SHOTLY_MULTIVERSION
void FilterRows::brightness(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                            std::size_t count, std::uint8_t amount)
{
    inPieces(count, [&](std::size_t done, std::size_t part) {
        const Byte *from = bytes(source + done);
        Byte *to = bytes(target + done);
        for (std::size_t i = 0; i < 4 * part; ++i) {
            const auto sum = static_cast<Byte>(from[i] + amount);
            to[i] = sum < from[i] ? Byte{255} : sum;
        }
        makeOpaque(target + done, part);
    });
}

SHOTLY_MULTIVERSION
void FilterRows::darkness(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                          std::size_t count, std::uint8_t amount)
{
    inPieces(count, [&](std::size_t done, std::size_t part) {
        const Byte *from = bytes(source + done);
        Byte *to = bytes(target + done);
        for (std::size_t i = 0; i < 4 * part; ++i)
            to[i] = static_cast<Byte>(from[i] > amount ? from[i] - amount : amount - from[i]);
        makeOpaque(target + done, part);
    });
}

SHOTLY_MULTIVERSION
void FilterRows::blur(const std::uint32_t *above, const std::uint32_t *source, const std::uint32_t *below,
                      std::uint32_t *__restrict target, std::size_t count)
{
    constexpr std::size_t chunk = 512; // pixels; their sums stay in the first cache
    alignas(64) std::uint16_t sums[4 * (chunk + 2)];
    for (std::size_t done = 0; done < count; done += chunk) {
        const std::size_t part = count - done < chunk ? count - done : chunk;
        const Byte *a = bytes(above + done) - 4;
        const Byte *b = bytes(source + done) - 4;
        const Byte *c = bytes(below + done) - 4;
        for (std::size_t i = 0; i < 4 * (part + 2); ++i)
            sums[i] = static_cast<std::uint16_t>(a[i] + b[i] + c[i]);
        Byte *to = bytes(target + done);
        for (std::size_t i = 0; i < 4 * part; ++i) {
            const auto raised = static_cast<std::uint16_t>(sums[i] + sums[i + 4] + sums[i + 8] + 5);
            auto tenth = static_cast<std::uint16_t>(raised / 10U);
            // A half has been rounded up: to even.
            const bool half = tenth * 10U == raised;
            tenth = static_cast<std::uint16_t>(tenth - (half ? tenth & 1U : 0U));
            to[i] = static_cast<Byte>(tenth);
        }
        makeOpaque(target + done, part);
    }
}

SHOTLY_MULTIVERSION
void FilterRows::emboss(const std::uint32_t *source, const std::uint32_t *other,
                        std::uint32_t *__restrict target, std::size_t count)
{
    const Byte *from = bytes(source);
    const Byte *against = bytes(other);
    Byte *to = bytes(target);
    for (std::size_t i = 0; i < 4 * count; ++i) {
        const auto value = static_cast<std::int16_t>(from[i] - against[i] - 128);
        const auto size = static_cast<std::int16_t>(value < 0 ? -value : value);
        to[i] = static_cast<Byte>(size > 255 ? 255 : size);
    }
    makeOpaque(target, count);
}

SHOTLY_MULTIVERSION
void FilterRows::sharpen(const std::uint32_t *source, const std::uint32_t *other,
                         std::uint32_t *__restrict target, std::size_t count)
{
    const Byte *from = bytes(source);
    const Byte *against = bytes(other);
    Byte *to = bytes(target);
    for (std::size_t i = 0; i < 4 * count; ++i) {
        const auto twice = static_cast<std::int16_t>(3 * from[i] - against[i]);
        const auto size = static_cast<std::int16_t>(twice < 0 ? -twice : twice);
        const auto half = static_cast<std::int16_t>(size >> 1);
        const auto rounded = static_cast<std::int16_t>(half + (size & half & 1));
        to[i] = static_cast<Byte>(rounded > 255 ? 255 : rounded);
    }
    makeOpaque(target, count);
}

SHOTLY_MULTIVERSION
void FilterRows::snow(const std::uint32_t *source, const std::uint32_t *other,
                      std::uint32_t *__restrict target, std::size_t count)
{
    const Byte *from = bytes(source);
    const Byte *against = bytes(other);
    Byte *to = bytes(target);
    for (std::size_t i = 0; i < 4 * count; ++i) {
        const auto value = static_cast<std::int16_t>(25 * from[i] - 24 * against[i]);
        const auto size = static_cast<std::int16_t>(value < 0 ? -value : value);
        to[i] = static_cast<Byte>(size > 255 ? 255 : size);
    }
    makeOpaque(target, count);
}

SHOTLY_MULTIVERSION
void FilterRows::diffuse(const std::uint32_t *source, int stride, std::uint32_t *__restrict target,
                         std::size_t count, std::uint64_t state, std::uint64_t step)
{
    using mdlFilter::Random;
    constexpr std::size_t chunk = 256;
    std::uint64_t numbers[chunk];
    for (std::size_t done = 0; done < count; done += chunk) {
        const std::size_t part = count - done < chunk ? count - done : chunk;
        for (std::size_t i = 0; i < part; ++i)
            numbers[i] = Random::mixed(state + (done + i) * step);
        const std::uint32_t *from = source + done;
        for (std::size_t i = 0; i < part; ++i) {
            const auto here = static_cast<int>(i);
            const std::uint64_t four = numbers[i];
            const int red = here + Random::offset(four, 0) * stride;
            const int green = here + Random::offset(four, 1);
            const int blue = here + Random::offset(four, 2) + Random::offset(four, 3) * stride;
            target[done + i] =
                opaque | (from[red] & 0xff0000U) | (from[green] & 0x00ff00U) | (from[blue] & 0x0000ffU);
        }
    }
}

SHOTLY_MULTIVERSION
void FilterRows::shifted(const std::uint32_t *source, int stride, std::uint32_t *__restrict target,
                         std::size_t count, const int *__restrict shifts, int least, int most)
{
    for (std::size_t i = 0; i < count; ++i) {
        const int rows = shifts[i] >= least && shifts[i] <= most ? shifts[i] : 0;
        target[i] = source[static_cast<int>(i) - rows * stride] | opaque;
    }
}

SHOTLY_MULTIVERSION
void FilterRows::invert(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                        std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        target[i] = (source[i] ^ 0x00ffffffU) | opaque;
}

SHOTLY_MULTIVERSION
void FilterRows::reverse(const std::uint32_t *__restrict source, std::uint32_t *__restrict target,
                         std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        target[i] = source[count - 1 - i] | opaque;
}

SHOTLY_MULTIVERSION
void FilterRows::halve(const std::uint32_t *above, const std::uint32_t *below,
                       std::uint32_t *__restrict target, std::size_t count)
{
    // Two components of a pixel at a time: eight bits of room above each.
    constexpr std::uint32_t mask = 0x00ff00ffU;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t a = above[2 * i];
        const std::uint32_t b = above[2 * i + 1];
        const std::uint32_t c = below[2 * i];
        const std::uint32_t d = below[2 * i + 1];
        const std::uint32_t redBlue = (a & mask) + (b & mask) + (c & mask) + (d & mask) + 0x00020002U;
        const std::uint32_t green =
            (a >> 8 & mask) + (b >> 8 & mask) + (c >> 8 & mask) + (d >> 8 & mask) + 0x00020002U;
        target[i] = opaque | (redBlue >> 2 & mask) | (green >> 2 & mask) << 8;
    }
}

SHOTLY_MULTIVERSION
void FilterRows::along(const std::uint32_t *source, std::ptrdiff_t stride, std::uint32_t *__restrict target,
                       std::size_t count, Place start, Place step)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto distance = static_cast<std::int64_t>(i);
        const std::int64_t x = (start.x + distance * step.x) >> 32;
        const std::int64_t y = (start.y + distance * step.y) >> 32;
        target[i] = source[y * stride + x] | opaque;
    }
}
