#pragma once

#include "platform/office/DocumentContent.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

/// The text as a Word document may hold it: every character that would be a mark becomes a blank, one that is
/// none U+FFFD.
QString wordCharacters(const QString &text);

/// Formatting of characters or of paragraphs, in pages of 512 bytes (ChpxFkp or PapxFkp).
struct WordFormatting {
    QByteArray pages;
    /// Where in the main stream the text of each page begins, and the end of the text: one more than pages.
    std::vector<qint64> bounds;
};

/// The main text of a Word document and how it looks. Positions are bytes of the main stream.
struct WordBinaryText {
    static constexpr qint64 begin = 0x800; ///< behind the file information block

    QString characters; ///< each paragraph ends with a carriage return
    QStringList fonts;  ///< not empty; the first one is the document's own
    WordFormatting characterFormatting;
    WordFormatting paragraphFormatting;

    qint64 end() const { return begin + 2 * characters.size(); }

    /// `pictureOffsets`: where the pictures begin in the Data stream, in the order of the paragraphs.
    static WordBinaryText of(const std::vector<DocumentParagraph> &paragraphs,
                             const std::vector<qint64> &pictureOffsets);
};
