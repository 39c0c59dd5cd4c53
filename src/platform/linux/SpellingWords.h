#pragma once

#include <QStringView>

#include <optional>

/// The words of a text whose spelling can be judged, one after the other, in a time that grows with the
/// length of the text.
///
/// A word is a run of letters and their marks; an apostrophe, a middle dot or a soft hyphen between two of
/// them belongs to it. Left out is what no dictionary knows: everything with a digit or an inner underscore,
/// addresses of mail and web, paths and file names, capitals of up to five letters, and scripts that are
/// written without spaces.
class SpellingWords
{
public:
    /// In UTF-16 units of the text.
    struct Word {
        qsizetype begin = 0;
        qsizetype length = 0;
    };

    /// The characters of `text` must outlive this.
    explicit SpellingWords(QStringView text) : m_text(text) {}

    /// The next word; nothing at the end.
    std::optional<Word> next();

private:
    bool enterToken();
    Word readRun();

    QStringView m_text;
    qsizetype m_at = 0;
    qsizetype m_tokenEnd = 0; ///< of the piece between two spaces or brackets that m_at lies in
};
