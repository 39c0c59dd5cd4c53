#pragma once

#include <string_view>

/// Plain searches in ASCII text, letter case ignored.
namespace TextSearch
{
/// Has the text bytes below 0x80 only?
bool isAscii(std::string_view text) noexcept;

/// Is `needle`, which is ASCII without upper-case letters, somewhere in `text`, which is ASCII? The first and
/// the last character of the needle are compared at sixteen places of the text at once where the machine can
/// (after W. Mula, "SIMD-friendly algorithms for substring searching").
bool containsAscii(std::string_view text, std::string_view needle) noexcept;
} // namespace TextSearch
