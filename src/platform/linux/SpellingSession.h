#pragma once

#include "platform/linux/HunspellDictionary.h"
#include "platform/linux/SpellingWords.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

/// What the user has answered once for all texts of this program run.
struct SpellingAnswers {
    QSet<QString> ignored;
    QHash<QString, QString> changed; ///< misspelt word, what it becomes
};

/// A misspelt word with some words of the text around it, line breaks shown as spaces.
struct SpellingContext {
    QString before;
    QString word;
    QString after;
};

/// The way through one text from misspelt word to misspelt word. Each answer goes on to the next one; what
/// has been answered for all texts is not asked again.
///
/// Words that are to be changed everywhere reach `answers` only when the whole text has been gone through: a
/// session that is dropped before leaves no change to come.
class SpellingSession
{
public:
    /// `dictionary` and `answers` must outlive this.
    SpellingSession(const QString &text, HunspellDictionary &dictionary, SpellingAnswers &answers);
    SpellingSession(const SpellingSession &) = delete;
    SpellingSession &operator=(const SpellingSession &) = delete;

    /// No misspelt word is left; the functions up to add() must not be called any more.
    bool finished() const { return !m_current; }

    const QString &word() const { return m_word; }
    QStringList suggestions() const { return m_dictionary.suggestions(m_word); }
    SpellingContext context() const;

    void ignore();
    void ignoreAll();
    void change(const QString &to);
    void changeAll(const QString &to);
    /// Throws RunTimeError when the word cannot be kept; the session stays at it then.
    void add();

    /// The text with the changes so far.
    QString text() const;

private:
    void advance();
    void replace(SpellingWords::Word word, const QString &with);

    const QString m_source;
    HunspellDictionary &m_dictionary;
    SpellingAnswers &m_answers;
    QHash<QString, QString> m_changed; ///< in this text only, as yet
    SpellingWords m_words;
    std::optional<SpellingWords::Word> m_current;
    QString m_word;
    QString m_done;         ///< the changed text up to m_copied
    qsizetype m_copied = 0; ///< how much of m_source is in m_done
};
