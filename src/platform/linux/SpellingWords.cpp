#include "platform/linux/SpellingWords.h"

#include <QChar>
#include <QString>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qsizetype longestAbbreviation = 5;
constexpr qsizetype longestExtension = 5;

bool isApostrophe(QChar character)
{
    return character == u'\'' || character == u'\u2019';
}

/// Ends an address on the web too, which may hold brackets and commas.
bool endsAddress(QChar character)
{
    return character.isSpace() || character.category() == QChar::Other_Control ||
           u"\"<>\u00ab\u00bb\u2018\u201a\u201b\u201c\u201d\u201e\u201f\u2039\u203a"_s.contains(character);
}

bool separatesTokens(QChar character)
{
    return endsAddress(character) || u"()[]{}|,;*`\u2013\u2014\u2026"_s.contains(character);
}

/// The code point at `at`; half a surrogate pair stands for itself.
char32_t codePoint(QStringView text, qsizetype at)
{
    const QChar first = text[at];
    if (first.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[at + 1]);
    return first.unicode();
}

qsizetype units(char32_t character)
{
    return QChar::requiresSurrogates(character) ? 2 : 1;
}

bool isPartOfWord(char32_t character)
{
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

/// Belongs to a word only between two characters that do.
bool joins(QChar character)
{
    constexpr QChar middleDot(u'\u00b7');
    constexpr QChar softHyphen(u'\u00ad');
    constexpr QChar nonJoiner(u'\u200c');
    constexpr QChar joiner(u'\u200d');
    return isApostrophe(character) || character == u'_' || character == middleDot ||
           character == softHyphen || character == nonJoiner || character == joiner;
}

bool isAddress(QStringView token)
{
    return token.contains(u"://") || token.startsWith(u"www.", Qt::CaseInsensitive) ||
           token.startsWith(u"mailto:", Qt::CaseInsensitive);
}

bool isPath(QStringView token)
{
    if (token.contains(u'\\'))
        return true;
    const bool drive = token.size() > 2 && token[0].isLetter() && token[1] == u':' && token[2] == u'/';
    const bool hidden = token.size() > 1 && token[0] == u'.' && token[1].isLetter();
    return drive || hidden || token.startsWith(u'/') || token.startsWith(u"~/") || token.startsWith(u"./") ||
           token.startsWith(u"../");
}

/// Abbreviations such as "e.g." look like one and are left out as well.
bool isFileName(QStringView token)
{
    while (!token.isEmpty() && (isApostrophe(token.back()) || u".:!?"_s.contains(token.back())))
        token.chop(1);
    const qsizetype dot = token.lastIndexOf(u'.');
    if (dot < 1 || !(token[dot - 1].isLetterOrNumber() || u"_-~%"_s.contains(token[dot - 1])))
        return false;
    const QStringView extension = token.sliced(dot + 1);
    if (extension.isEmpty() || extension.size() > longestExtension)
        return false;
    const auto all = [extension](auto test) { return std::all_of(extension.begin(), extension.end(), test); };
    const auto digit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    // A capital followed by small letters is a sentence that begins without a space.
    return all([&](QChar c) { return digit(c) || (c >= u'a' && c <= u'z'); }) ||
           all([&](QChar c) { return digit(c) || (c >= u'A' && c <= u'Z'); });
}

bool isWrittenWithoutSpaces(char32_t character)
{
    switch (QChar::script(character)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
        return true;
    default:
        return false;
    }
}

bool canBeJudged(QStringView word)
{
    qsizetype letters = 0;
    bool capitals = true;
    for (qsizetype at = 0; at < word.size();) {
        const char32_t character = codePoint(word, at);
        at += units(character);
        if (QChar::isNumber(character) || character == U'_' || isWrittenWithoutSpaces(character))
            return false;
        if (QChar::isLetter(character)) {
            ++letters;
            capitals = capitals && QChar::isUpper(character);
        }
    }
    return letters > 0 && !(capitals && letters <= longestAbbreviation);
}
} // namespace

std::optional<SpellingWords::Word> SpellingWords::next()
{
    for (;;) {
        if (m_at >= m_tokenEnd && !enterToken())
            return std::nullopt;
        while (m_at < m_tokenEnd) {
            const char32_t character = codePoint(m_text, m_at);
            if (!isPartOfWord(character)) {
                m_at += units(character);
                continue;
            }
            const Word word = readRun();
            if (canBeJudged(m_text.sliced(word.begin, word.length)))
                return word;
        }
    }
}

/// Goes to the next token that is prose; false at the end of the text.
bool SpellingWords::enterToken()
{
    while (m_at < m_text.size()) {
        if (separatesTokens(m_text[m_at]) || isApostrophe(m_text[m_at])) {
            ++m_at;
            continue;
        }
        const auto end = [this](auto test) {
            return std::find_if(m_text.begin() + m_at, m_text.end(), test) - m_text.begin();
        };
        m_tokenEnd = end(separatesTokens);
        const QStringView token = m_text.sliced(m_at, m_tokenEnd - m_at);
        if (isAddress(token))
            m_at = m_tokenEnd = end(endsAddress);
        else if (token.contains(u'@') || isPath(token) || isFileName(token))
            m_at = m_tokenEnd;
        else
            return true;
    }
    return false;
}

SpellingWords::Word SpellingWords::readRun()
{
    Word word{m_at, 0};
    while (m_at < m_tokenEnd) {
        const char32_t character = codePoint(m_text, m_at);
        const bool inner = m_at > word.begin && m_at + 1 < m_tokenEnd && joins(m_text[m_at]) &&
                           isPartOfWord(codePoint(m_text, m_at + 1));
        if (!inner && !isPartOfWord(character))
            break;
        m_at += units(character);
    }
    word.length = m_at - word.begin;
    return word;
}
