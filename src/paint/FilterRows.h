#pragma once

#include <cstddef>
#include <cstdint>

/// The arithmetic of filters and effects on rows of pixels 0xffRRGGBB, for compilers to vectorise. `count`
/// pixels are written to `target`, alpha 0xff. Sources and target do not overlap. `stride`: from a pixel of a
/// source to the one below it.
namespace FilterRows
{
void blackAndWhite(const std::uint32_t *source, std::uint32_t *target, std::size_t count);
void grayscale(const std::uint32_t *source, std::uint32_t *target, std::size_t count);
void grayBlackAndWhite(const std::uint32_t *source, std::uint32_t *target, std::size_t count);
void replaceColours(const std::uint32_t *source, std::uint32_t *target, std::size_t count, std::uint32_t from,
                    std::uint32_t to);
/// min(component + amount, 255)
void brightness(const std::uint32_t *source, std::uint32_t *target, std::size_t count, std::uint8_t amount);
/// |component - amount|
void darkness(const std::uint32_t *source, std::uint32_t *target, std::size_t count, std::uint8_t amount);
/// The rows above, at and below the target; reads one pixel before and one after `count` pixels.
void blur(const std::uint32_t *above, const std::uint32_t *source, const std::uint32_t *below,
          std::uint32_t *target, std::size_t count);
/// `other` begins at the pixel right below the first one.
void emboss(const std::uint32_t *source, const std::uint32_t *other, std::uint32_t *target,
            std::size_t count);
/// `other` begins at the pixel left above the first one.
void sharpen(const std::uint32_t *source, const std::uint32_t *other, std::uint32_t *target,
             std::size_t count);
void snow(const std::uint32_t *source, const std::uint32_t *other, std::uint32_t *target, std::size_t count);
/// From (x, y + d), (x + d, y) and (x + d, y + d); the four numbers of the pixel i are mixed(state + i *
/// step).
void diffuse(const std::uint32_t *source, int stride, std::uint32_t *target, std::size_t count,
             std::uint64_t state, std::uint64_t step);
/// target[i] comes from shifts[i] rows above source[i] if `least` <= shifts[i] <= `most`, else from
/// source[i].
void shifted(const std::uint32_t *source, int stride, std::uint32_t *target, std::size_t count,
             const int *shifts, int least, int most);

/// 255 - each component.
void invert(const std::uint32_t *source, std::uint32_t *target, std::size_t count);
/// The first becomes the last.
void reverse(const std::uint32_t *source, std::uint32_t *target, std::size_t count);
/// The mean of two neighbours above and two below, rounded up from a half; reads twice `count` pixels.
void halve(const std::uint32_t *above, const std::uint32_t *below, std::uint32_t *target, std::size_t count);
/// Has the processor bring pixels that are going to be read.
inline void fetch(const std::uint32_t *source, std::ptrdiff_t count)
{
    for (std::ptrdiff_t i = 0; i < count; i += 16)
        __builtin_prefetch(source + i);
}
/// A place between pixels, in 1 / 2^32 of a pixel.
struct Place {
    std::int64_t x, y;
};
/// Pixels along a line through the source, at start + i * step, rounded down.
void along(const std::uint32_t *source, std::ptrdiff_t stride, std::uint32_t *target, std::size_t count,
           Place start, Place step);
} // namespace FilterRows
