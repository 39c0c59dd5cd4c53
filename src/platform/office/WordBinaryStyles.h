#pragma once

#include <QByteArray>
#include <QStringList>

/// The style sheet (STSH): Normal, "heading 1" to "heading 9" at the places 1 to 9, which look like Normal,
/// and Default Paragraph Font.
QByteArray wordStyleSheet();

/// The table of fonts (SttbfFfn). The names have 1 to 31 characters.
QByteArray wordFontTable(const QStringList &names);
