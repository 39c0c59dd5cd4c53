#include "platform/linux/SpellingSession.h"

#include <algorithm>

namespace
{
constexpr qsizetype contextLength = 60;
constexpr QChar ellipsis(u'\u2026');

QString withoutLineBreaks(QStringView text)
{
    QString line;
    for (const QChar character : text) {
        if (!character.isSpace() && character.category() != QChar::Other_Control)
            line += character;
        else if (!line.endsWith(u' '))
            line += u' ';
    }
    return line;
}

/// The end of `text`, cut between two words if it can be.
QString lastWords(QStringView text)
{
    if (text.size() <= contextLength)
        return withoutLineBreaks(text);
    QStringView tail = text.last(contextLength);
    const auto *space = std::find_if(tail.begin(), tail.end(), [](QChar c) { return c.isSpace(); });
    if (space != tail.end())
        tail = tail.sliced(space - tail.begin());
    else if (tail.front().isLowSurrogate())
        tail = tail.sliced(1);
    return ellipsis + withoutLineBreaks(tail);
}

/// The beginning of `text`, cut likewise.
QString firstWords(QStringView text)
{
    if (text.size() <= contextLength)
        return withoutLineBreaks(text);
    QStringView head = text.first(contextLength);
    qsizetype length = head.size();
    while (length > 0 && !head[length - 1].isSpace())
        --length;
    if (length > 0)
        head.truncate(length);
    else if (head.back().isHighSurrogate())
        head.chop(1);
    return withoutLineBreaks(head) + ellipsis;
}
} // namespace

SpellingSession::SpellingSession(const QString &text, HunspellDictionary &dictionary,
                                 SpellingAnswers &answers)
    : m_source(text), m_dictionary(dictionary), m_answers(answers), m_words(m_source)
{
    advance();
}

SpellingContext SpellingSession::context() const
{
    return {lastWords(m_done), m_word, firstWords(QStringView(m_source).sliced(m_copied + m_word.size()))};
}

void SpellingSession::ignore()
{
    advance();
}

void SpellingSession::ignoreAll()
{
    m_answers.ignored.insert(m_word);
    advance();
}

void SpellingSession::change(const QString &to)
{
    replace(*m_current, to);
    advance();
}

void SpellingSession::changeAll(const QString &to)
{
    m_changed.insert(m_word, to);
    change(to);
}

void SpellingSession::add()
{
    m_dictionary.add(m_word);
    advance();
}

QString SpellingSession::text() const
{
    return m_done + m_source.sliced(m_copied);
}

void SpellingSession::advance()
{
    while ((m_current = m_words.next())) {
        m_word = m_source.sliced(m_current->begin, m_current->length);
        if (m_answers.ignored.contains(m_word))
            continue;
        const auto here = m_changed.constFind(m_word);
        const auto earlier = m_answers.changed.constFind(m_word);
        if (here != m_changed.cend()) {
            replace(*m_current, *here);
        } else if (earlier != m_answers.changed.cend()) {
            replace(*m_current, *earlier);
        } else if (!m_dictionary.isCorrect(m_word)) {
            m_done += QStringView(m_source).sliced(m_copied, m_current->begin - m_copied);
            m_copied = m_current->begin;
            return;
        }
    }
    m_answers.changed.insert(m_changed);
    m_changed.clear();
}

void SpellingSession::replace(SpellingWords::Word word, const QString &with)
{
    m_done += QStringView(m_source).sliced(m_copied, word.begin - m_copied);
    m_done += with;
    m_copied = word.begin + word.length;
}
