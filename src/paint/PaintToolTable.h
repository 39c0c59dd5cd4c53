#pragma once

#include "paint/PaintSettings.h"

#include <QString>

#include <array>

/// One row of the table of tools; the texts are shown as they are.
struct PaintToolRow {
    DrawingTool tool;
    const char16_t *caption;
    const char16_t *cursor;     ///< file in the folder "Cursors"; empty: the system's pointer
    bool sizes;                 ///< option panels: fraOptDot
    bool fills;                 ///< fraOptFill
    bool brushes;               ///< fraBrush
    const char16_t *status;     ///< in the status bar
    const char16_t *dragging;   ///< while a shape is dragged; empty: as `status`
    const char16_t *inProgress; ///< a selection exists, or work of several clicks is not finished; likewise
};

/// In the order of the numbers.
const std::array<PaintToolRow, paintToolCount> &paintToolTable();
inline const PaintToolRow &rowOf(DrawingTool tool)
{
    return paintToolTable().at(static_cast<std::size_t>(tool));
}

namespace PaintTexts
{
inline constexpr const char16_t *grabbingCursor = u"handgrab.cur"; ///< of the hand while it drags
/// Status texts over the palette and the labels of the colours.
inline constexpr const char16_t *overPalette =
    u"Click to set the foreground color; Right-click to set the background color";
inline constexpr const char16_t *overForeColor =
    u"Double-click to set the foreground color with custom color";
inline constexpr const char16_t *overFillColor =
    u"Double-click to set the background color with custom color";
QString filtering(int percent);  ///< progress of a filter
QString retrieving(int percent); ///< progress of the colour snapshot
} // namespace PaintTexts
