#pragma once

#include "platform/Rounding.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <cstdint>
#include <span>

/// What the annotation tools draw. Positions are twips of the picture (15 per pixel, from its top left
/// corner), 32 bit: a picture may be of any size. Parts outside the picture are left out.
namespace Drawing
{
enum class Shape {
    Line, ///< both ends included
    Box   ///< outline of the upright rectangle with two opposite corners
};

enum class Mode {
    Copy,  ///< in the colour
    Invert ///< every pixel once: the same again restores the picture
};

inline constexpr int twipsPerPixel = Rounding::twipsPerPixel;
/// From one line of text to the next, in twips.
inline constexpr int lineStep = 210;

/// The pixel that holds a position.
QPoint toPixel(QPoint twips);

/// Draws one pixel wide; `painter`'s unit is a pixel of the picture.
void draw(QPainter &painter, Shape shape, QPoint from, QPoint to, QColor colour, Mode mode);

/// The pixels that the shape may touch.
QRect extent(Shape shape, QPoint from, QPoint to);

/// One line of text with its top left corner at a position. Needs a QGuiApplication for its font.
void drawText(QImage &picture, QPoint at, QColor colour, const QString &text);

/// The sixteen colours of the colour bar, and how a colour is counted there: red in the low byte, green in
/// the second, blue in the third.
struct Colour {
    std::uint8_t red, green, blue;
    const char16_t *name;
};
std::span<const Colour, 16> palette();
std::uint32_t value(const Colour &colour);
QColor fromValue(std::uint32_t value);
} // namespace Drawing
