#include "platform/x11/OpaquePixels.h"

// A loop of its own file, so that it alone is compiled for speed: the compiler turns it into vector code.
void copyOpaque(const std::uint32_t *source, std::uint32_t *target, std::size_t count) noexcept
{
    constexpr std::uint32_t opaque = 0xff000000;
    for (std::size_t i = 0; i < count; ++i)
        target[i] = source[i] | opaque;
}
