#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class HunspellEngine;

/// A spelling dictionary of this machine, together with the words that the user has added.
///
/// The dictionary is loaded when the first word is asked for, which takes up to a tenth of a second, and
/// stays. Typographic and plain apostrophes count as the same.
class HunspellDictionary
{
public:
    /// Where to look. A dictionary is a pair of files such as de_DE.aff and de_DE.dic.
    struct Places {
        QStringList folders;
        QStringList languages; ///< the user's, in the order of preference, such as "de_DE" or "de-DE"
        QString wordsFile;     ///< the user's words: UTF-8, one in a line; need not exist

        /// Debian's folders, or instead of them the one that the environment variable SHOTLY_DICTIONARY_DIR
        /// names; the languages of the session; shotly/words.txt among the user's data files.
        static Places ofThisMachine();
    };

    explicit HunspellDictionary(Places places = Places::ofThisMachine());
    ~HunspellDictionary();
    HunspellDictionary(const HunspellDictionary &) = delete;
    HunspellDictionary &operator=(const HunspellDictionary &) = delete;

    /// Path of the dictionary for the first language that has one, without ".dic": the language as given,
    /// then another country's, then American English, then any English, then whatever there is. Empty without
    /// one.
    static QString find(const QStringList &folders, const QStringList &languages);

    bool installed() const;

    /// True for every word while there is no dictionary.
    bool isCorrect(const QString &word);

    /// Words that may have been meant, the likeliest first. Takes some hundredths of a second.
    QStringList suggestions(const QString &word);

    /// Takes `word` for correct from now on and in later sessions. Throws RunTimeError naming the file when
    /// that cannot be written; the word is not added then.
    void add(const QString &word);

private:
    HunspellEngine *engine();
    void accept(const QString &word);

    Places m_places;
    std::unique_ptr<HunspellEngine> m_engine;
    QSet<QString> m_added;
};
