#include "platform/sqlite/LikeFunction.h"

#include "platform/sqlite/TextSearch.h"

#include <QChar>

#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace
{
// Beyond every Unicode character.
constexpr char32_t anyCharacters = 0x110000;
constexpr char32_t oneCharacter = 0x110001;

char32_t foldedAscii(unsigned char byte) noexcept
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char32_t>(byte + ('a' - 'A')) : byte;
}

/// The character of more than one byte that begins at `next`, which goes behind it. What is no UTF-8 gives
/// the replacement character.
char32_t decoded(std::string_view utf8, std::size_t &next) noexcept
{
    const auto lead = static_cast<unsigned char>(utf8[next++]);
    const int more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
    if (lead < 0xc2 || lead > 0xf4)
        return QChar::ReplacementCharacter;
    char32_t character = lead & (0x3fU >> more);
    for (int i = 0; i < more; ++i, ++next) {
        if (next >= utf8.size() || (static_cast<unsigned char>(utf8[next]) & 0xc0U) != 0x80)
            return QChar::ReplacementCharacter;
        character = character << 6 | (static_cast<unsigned char>(utf8[next]) & 0x3fU);
    }
    // Beyond the last character lie the wildcards of a pattern.
    return character <= QChar::LastValidCodePoint ? character : char32_t{QChar::ReplacementCharacter};
}

/// Replaces `folded` by the characters of a UTF-8 text in one case.
void fold(std::string_view utf8, std::u32string &folded)
{
    folded.resize(utf8.size());
    std::size_t length = 0;
    for (std::size_t next = 0; next < utf8.size();) {
        const auto byte = static_cast<unsigned char>(utf8[next]);
        if (byte < 0x80) {
            folded[length++] = foldedAscii(byte);
            ++next;
        } else {
            folded[length++] = static_cast<char32_t>(QChar::toCaseFolded(decoded(utf8, next)));
        }
    }
    folded.resize(length);
}

struct Pattern {
    std::u32string characters;
    std::u32string value;  // kept between rows so that its memory is
    std::string contained; // of a pattern that only asks whether a text holds these ASCII characters
    bool isContained = false;

    explicit Pattern(std::string_view utf8)
    {
        fold(utf8, characters);
        if (utf8.size() > 2 && utf8.front() == '%' && utf8.back() == '%' && TextSearch::isAscii(utf8)) {
            contained.assign(characters.begin() + 1, characters.end() - 1);
            isContained = contained.find_first_of("%_") == std::string::npos;
        }
        for (char32_t &character : characters) {
            if (character == U'%')
                character = anyCharacters;
            else if (character == U'_')
                character = oneCharacter;
        }
    }

    bool matches(std::string_view utf8)
    {
        // Outside ASCII there are characters that are the other case of an ASCII letter.
        if (isContained && TextSearch::isAscii(utf8))
            return TextSearch::containsAscii(utf8, contained);
        fold(utf8, value);
        std::size_t inValue = 0;
        std::size_t inPattern = 0;
        std::size_t lastAny = std::u32string::npos;
        std::size_t covered = 0;
        while (inValue < value.size()) {
            const char32_t wanted = inPattern < characters.size() ? characters[inPattern] : U'\0';
            if (inPattern < characters.size() && wanted == anyCharacters) {
                lastAny = inPattern++;
                covered = inValue;
            } else if (inPattern < characters.size() &&
                       (wanted == oneCharacter || wanted == value[inValue])) {
                ++inPattern;
                ++inValue;
            } else if (lastAny != std::u32string::npos) {
                inPattern = lastAny + 1;
                inValue = ++covered;
            } else {
                return false;
            }
        }
        return characters.find_first_not_of(anyCharacters, inPattern) == std::u32string::npos;
    }
};

std::string_view textOf(sqlite3_value *value) noexcept
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))
                : std::string_view();
}

void deletePattern(void *pattern) noexcept
{
    delete static_cast<Pattern *>(pattern);
}

/// SQLite calls like(pattern, value) for "value like pattern".
void like(sqlite3_context *context, int, sqlite3_value **arguments) noexcept
{
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        return;
    try {
        auto *known = static_cast<Pattern *>(sqlite3_get_auxdata(context, 0));
        std::unique_ptr<Pattern> made;
        if (!known)
            made = std::make_unique<Pattern>(textOf(arguments[0]));
        Pattern &pattern = known ? *known : *made;
        sqlite3_result_int(context, pattern.matches(textOf(arguments[1])) ? 1 : 0);
        if (made)
            sqlite3_set_auxdata(context, 0, made.release(), deletePattern);
    } catch (const std::bad_alloc &) {
        sqlite3_result_error_nomem(context);
    }
}
} // namespace

int LikeFunction::install(sqlite3 *database) noexcept
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    return sqlite3_create_function_v2(database, "like", 2, flags, nullptr, like, nullptr, nullptr, nullptr);
}
