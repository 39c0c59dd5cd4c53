#pragma once

#include <cstddef>
#include <cstdint>

/// Packs pixels of 32 bits (blue, green, red, one byte that is left out) into 24 bits (blue, green, red).
/// Exactly 3 * count bytes are written; the areas must not overlap.
void packPixels(const std::uint32_t *source, std::uint8_t *target, std::size_t count) noexcept;

/// The other way round; the fourth byte becomes 0xff. Exactly 3 * count bytes are read.
void unpackPixels(const std::uint8_t *source, std::uint32_t *target, std::size_t count) noexcept;
