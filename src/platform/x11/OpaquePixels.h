#pragma once

#include <cstddef>
#include <cstdint>

/// Copies 32-bit pixels and sets their alpha bytes, which the display leaves undefined, to 0xff. The areas
/// must not overlap.
void copyOpaque(const std::uint32_t *source, std::uint32_t *target, std::size_t count) noexcept;
