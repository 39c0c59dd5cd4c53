#include "platform/sqlite/LikeFunction.h"

#include <QList>
#include <QString>

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

/// Replaces `folded` by the characters of a UTF-8 text in one case.
void fold(std::string_view utf8, std::u32string &folded)
{
    folded.resize(utf8.size());
    std::size_t next = 0;
    for (; next < utf8.size() && static_cast<unsigned char>(utf8[next]) < 0x80; ++next)
        folded[next] = foldedAscii(static_cast<unsigned char>(utf8[next]));
    if (next == utf8.size())
        return;
    folded.resize(next);
    const std::string_view rest = utf8.substr(next);
    const QString text = QString::fromUtf8(rest.data(), static_cast<qsizetype>(rest.size()));
    for (const uint code : text.toUcs4())
        folded += static_cast<char32_t>(QChar::toCaseFolded(code));
}

struct Pattern {
    std::u32string characters;
    std::u32string value; // kept between rows so that its memory is

    explicit Pattern(std::string_view utf8)
    {
        fold(utf8, characters);
        for (char32_t &character : characters) {
            if (character == U'%')
                character = anyCharacters;
            else if (character == U'_')
                character = oneCharacter;
        }
    }

    bool matches(std::string_view utf8)
    {
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
