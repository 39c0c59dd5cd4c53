#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/WordBinaryText.h"

#include <QByteArray>
#include <QDateTime>

/// The parts of a Word document that say where everything is.
struct WordBinaryTables {
    QByteArray beforeText; ///< of the main stream: as long as WordBinaryText::begin says
    QByteArray behindText; ///< of the main stream
    QByteArray table;      ///< the stream 1Table

    static WordBinaryTables of(const WordBinaryText &text, const PageFormat &page, bool pictures,
                               const QDateTime &created);
};
