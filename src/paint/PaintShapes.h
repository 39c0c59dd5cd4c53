#pragma once

#include "paint/PaintSettings.h"

#include <QImage>
#include <QPoint>
#include <QRect>

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// What the drawing tools draw, in pixels of the picture (Format_RGB32). Without antialiasing: a pixel has
/// the colour afterwards or is untouched; only text is smooth. Whatever lies outside the picture is left out.
namespace PaintShapes
{
/// Pixels one after the other, each touching the next; a pixel may come more than once.
using Path = std::vector<QPoint>;

Path line(QPoint from, QPoint to); ///< both ends included
Path polyline(std::span<const QPoint> corners, bool closed);
/// Outlines of shapes inscribed in the box with two opposite corners, corners included.
Path rectangle(QPoint from, QPoint to);
Path ellipse(QPoint from, QPoint to);
Path roundedRectangle(QPoint from, QPoint to); ///< corner radius: a quarter of the shorter side
/// The shaft and two strokes of length 10 at the tip `to`.
std::array<Path, 3> arrow(QPoint from, QPoint to);
/// A cubic Bezier segment: ends 0 and 3, control points 1 and 2.
Path curve(const std::array<QPoint, 4> &points);

/// The upright box with two opposite corners, both included.
QRect boxOf(QPoint from, QPoint to);

struct Pen {
    QColor colour;
    int width = 1; ///< pixels; the tip is round
    BorderStyle style = BorderStyle::Solid;
};
void stroke(QImage &picture, const Path &path, const Pen &pen);
/// A square tip, as the eraser's.
void strokeSquare(QImage &picture, const Path &path, QColor colour, int width);

struct Filling {
    QColor colour;
    FillStyle style = FillStyle::Solid; ///< patterns of 8 x 8 pixels lie still in the picture
};
/// Insides, outlines included.
void fillRectangle(QImage &picture, QPoint from, QPoint to, const Filling &filling);
void fillEllipse(QImage &picture, QPoint from, QPoint to, const Filling &filling);
void fillRoundedRectangle(QImage &picture, QPoint from, QPoint to, const Filling &filling);
void fillPolygon(QImage &picture, std::span<const QPoint> corners, const Filling &filling); ///< odd-even

/// The area of the pixel's colour that is connected over the four neighbours. False: `at` is outside, or
/// the area has the colour already.
bool floodFill(QImage &picture, QPoint at, QColor colour);

/// round(size x size x 0.25) pixels, at least one, at random in the square of `size` around `at`; the same
/// seed gives the same.
void airBrush(QImage &picture, QPoint at, int size, QColor colour, std::uint32_t seed);

/// One dab of the brush, which reaches 3 x width in every direction. Strokes are one pixel wide; all is in
/// `filling.colour`, and the style is that of Square and Disc.
void brush(QImage &picture, QPoint at, BrushShape shape, int width, const Filling &filling);

/// Pixels of a font as it is drawn: 96 to the inch, whatever a picture's file says of its resolution.
int textHeight(const QFont &font);

/// Lines joined with "\n" or "\r\n", their first with its top left corner at `at`. Needs a QGuiApplication.
void text(QImage &picture, QPoint at, const QFont &font, QColor colour, const QString &lines);
} // namespace PaintShapes
