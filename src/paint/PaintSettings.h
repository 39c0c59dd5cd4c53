#pragma once

#include <QColor>
#include <QFont>

#include <array>

/// The drawing tools; the numbers are those of the tool buttons (optTools).
enum class DrawingTool : int {
    SelectArea = 0,
    PickColor = 1,
    Eraser = 2,
    Fill = 3,
    Pencil = 4,
    Line = 5,
    Rectangle = 6,
    Ellipse = 7,
    Text = 8,
    Arrow = 9,
    AirBrush = 10,
    RoundedRectangle = 11,
    Polygon = 12,
    Curve = 13,
    FilterBrush = 14,
    Zoom = 15,
    Brush = 16,
    Hand = 17
};
inline constexpr int paintToolCount = 18;

/// How lines and outlines are dashed; the order is that of the menu "Border Style".
enum class BorderStyle : int { Solid, Dash, Dot, DashDot, DashDotDot };

/// Pattern of the inside of closed shapes; the order is that of the menu "Fill Style".
enum class FillStyle : int {
    Solid,
    Transparent,
    Horizontal,
    Vertical,
    DownwardDiagonal,
    UpwardDiagonal,
    Cross,
    DiagonalCross
};

/// What of a closed shape is drawn; the order is that of the fill panel (shpRect).
enum class FillMode : int { Outline, OutlineAndInside, Inside };

/// Shapes of the brush; the order is that of the panel (imgBrush).
enum class BrushShape : int {
    Square, ///< filled with the fill style
    Disc,   ///< filled with the fill style
    SquareOutline,
    CircleOutline,
    Plus,
    Cross,
    Rising,
    Falling,
    VerticalStroke,
    HorizontalStroke
};

/// What the panels, the palette and the menu "Format" have chosen. The window owns one, sets the members
/// directly (the tool through PaintTools::choose) and lets PaintPicture and PaintTools see it.
struct PaintSettings {
    /// Widths of lines, eraser, air brush and brushes in pixels (shpDot).
    static constexpr std::array<int, 8> sizes{1, 2, 3, 4, 6, 8, 12, 16};

    DrawingTool tool = DrawingTool::Pencil;
    QColor foreground = Qt::black;
    QColor fill = Qt::white; ///< also what lies behind: for Eraser, Delete, Clear, growing
    int sizeIndex = 0;       ///< into `sizes`
    FillMode fillMode = FillMode::Outline;
    BorderStyle borderStyle = BorderStyle::Solid;
    FillStyle fillStyle = FillStyle::Solid;
    BrushShape brushShape = BrushShape::Square;
    QFont font;          ///< of the text tool
    int brushFilter = 2; ///< number in the filter brush's list; for whoever gives PaintTools its filter

    int size() const { return sizes.at(static_cast<std::size_t>(sizeIndex)); } ///< pixels
};
