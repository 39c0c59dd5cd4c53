#include "platform/sqlite/TextSearch.h"

#include <bit>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace
{
bool isLetter(char character) noexcept
{
    return character >= 'a' && character <= 'z';
}

char folded(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

bool matchesAt(const char *text, std::string_view needle) noexcept
{
    for (std::size_t i = 0; i < needle.size(); ++i) {
        if (folded(text[i]) != needle[i])
            return false;
    }
    return true;
}

#ifdef __SSE2__
/// A character that sixteen others are compared with.
class Wanted
{
public:
    /// Setting one bit makes a letter lower case, and makes a letter of nothing else.
    explicit Wanted(char character) noexcept
        : m_character(_mm_set1_epi8(character)),
          m_caseBit(isLetter(character) ? _mm_set1_epi8(0x20) : _mm_setzero_si128())
    {
    }
    __m128i equalTo(const char *text) const noexcept
    {
        const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text));
        return _mm_cmpeq_epi8(_mm_or_si128(characters, m_caseBit), m_character);
    }

private:
    __m128i m_character;
    __m128i m_caseBit;
};
#endif
} // namespace

bool TextSearch::isAscii(std::string_view text) noexcept
{
    unsigned char all = 0;
    for (const char character : text)
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(character));
    return all < 0x80;
}

bool TextSearch::containsAscii(std::string_view text, std::string_view needle) noexcept
{
    if (needle.empty())
        return true;
    if (text.size() < needle.size())
        return false;
    const std::size_t places = text.size() - needle.size() + 1;
    std::size_t place = 0;
#ifdef __SSE2__
    const Wanted first(needle.front());
    const Wanted last(needle.back());
    constexpr std::size_t step = 16;
    for (; place + step <= places; place += step) {
        const char *start = text.data() + place;
        auto candidates = static_cast<unsigned>(
            _mm_movemask_epi8(_mm_and_si128(first.equalTo(start), last.equalTo(start + needle.size() - 1))));
        for (; candidates != 0; candidates &= candidates - 1) {
            if (matchesAt(start + std::countr_zero(candidates), needle))
                return true;
        }
    }
#endif
    for (; place < places; ++place) {
        if (matchesAt(text.data() + place, needle))
            return true;
    }
    return false;
}
