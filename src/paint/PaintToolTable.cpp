#include "paint/PaintToolTable.h"

using namespace Qt::Literals::StringLiterals;

const std::array<PaintToolRow, paintToolCount> &paintToolTable()
{
    using enum DrawingTool;
    static constexpr const char16_t *cross = u"cross.cur";
    // clang-format off
    static constexpr std::array<PaintToolRow, paintToolCount> rows{{
        {SelectArea, u"Select Area", u"", false, false, false,
         u"Selects a rectangular part of the picture to move or delete",
         u"Press and hold down SHIFT to select a square part",
         u"Press and hold down CTRL before moving the selection to copy it"},
        {PickColor, u"Pick Color", u"pick.cur", false, false, false,
         u"Picks up a foreground color (click) or background color (right-click) from the picture for drawing",
         u"", u""},
        {Eraser, u"Eraser", u"eraser.cur", true, false, false,
         u"Erases a partion of the picture using the selected eraser width", u"", u""},
        {Fill, u"Fill", u"fill.cur", false, false, false, u"Fills an area", u"", u""},
        {Pencil, u"Pencil", u"pencil.cur", true, false, false,
         u"Draws using a pencil with the selected dot size", u"", u""},
        {Line, u"Line", cross, true, false, false,
         u"Draws a straight line with the selected line width",
         u"Press and hold down CTRL to draw a horizontal or vertical line; SHIFT to draw a 45-degree line", u""},
        {Rectangle, u"Rectangle", cross, true, true, false,
         u"Draws a rectangle with the selected outline width and fill style",
         u"Press and hold down SHIFT to draw a square", u""},
        {Ellipse, u"Ellipse", cross, true, true, false,
         u"Draws an ellips with the selected outline width and fill style",
         u"Press and hold down SHIFT to draw a circle", u""},
        {Text, u"Text", u"text.cur", false, false, false, u"Insert text into the picture", u"",
         u"Press ENTER or double-click to finish inserting the text"},
        {Arrow, u"Arrow", cross, true, false, false,
         u"Draws an arrow with the selected arrow width",
         u"Press and hold down CTRL to draw a horizontal or vertical arrow; SHIFT to draw a 45-degree arrow",
         u""},
        {AirBrush, u"Air Brush", u"airbrush.cur", true, false, false,
         u"Draws using an airbrush with the selected airbrush size", u"", u""},
        {RoundedRectangle, u"Rounded Rectangle", cross, true, true, false,
         u"Draws a rounded rectangle with the selected outline width and fill style",
         u"Press and hold down SHIFT to draw a rounded-square", u""},
        {Polygon, u"Polygon", cross, true, true, false,
         u"Draws a polygon with the selected outline width and fill area", u"",
         u"Press ENTER or double-click to finish drawing the polygon"},
        {Curve, u"Curve", u"", true, false, false,
         u"Draws a bezier curve with the selected curve width", u"",
         u"Press ENTER or double-click to finish drawing the curve"},
        {FilterBrush, u"Filter Brush", u"filter.cur", true, false, false,
         u"Apply the selected filter to the image", u"", u""},
        {Zoom, u"Zoom", u"zoom.cur", false, false, false,
         u"Zoom in or zoom out the image 1.25x (press and hold down CTRL to zoom out)", u"", u""},
        {Brush, u"Brush", u"brush.cur", false, false, true,
         u"Draws using a brush with the selected shape", u"", u""},
        {Hand, u"Hand", u"handflat.cur", false, false, false,
         u"Pan to see other part of the picture", u"", u""},
    }};
    // clang-format on
    return rows;
}

QString PaintTexts::filtering(int percent)
{
    return u"Filtering... (%1% complete)"_s.arg(percent);
}

QString PaintTexts::retrieving(int percent)
{
    return u"Retrieving color information... (%1% complete)"_s.arg(percent);
}
