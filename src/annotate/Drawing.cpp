#include "annotate/Drawing.h"

#include <QFont>
#include <QFontMetrics>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Fits the line step: 14 pixels from one line to the next.
constexpr int fontPixels = 12;

int pixelOf(int twips)
{
    // Rounded down on both sides of zero: a position left of the picture is outside it.
    return static_cast<int>(std::floor(static_cast<double>(twips) / Drawing::twipsPerPixel));
}

QRect outline(QPoint from, QPoint to)
{
    return QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
                 QPoint(std::max(from.x(), to.x()), std::max(from.y(), to.y())));
}
/// Every pixel once, the corners too: in invert mode twice would be never.
void drawOutline(QPainter &painter, const QRect &box, QColor colour)
{
    painter.fillRect(box.left(), box.top(), box.width(), 1, colour);
    if (box.height() > 1)
        painter.fillRect(box.left(), box.bottom(), box.width(), 1, colour);
    const int between = box.height() - 2;
    if (between < 1)
        return;
    painter.fillRect(box.left(), box.top() + 1, 1, between, colour);
    if (box.width() > 1)
        painter.fillRect(box.right(), box.top() + 1, 1, between, colour);
}
} // namespace

QPoint Drawing::toPixel(QPoint twips)
{
    return {pixelOf(twips.x()), pixelOf(twips.y())};
}

void Drawing::draw(QPainter &painter, Shape shape, QPoint from, QPoint to, QColor colour, Mode mode)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    QPen pen(colour, 1);
    pen.setCapStyle(Qt::SquareCap);
    painter.setPen(pen);
    if (mode == Mode::Invert)
        painter.setCompositionMode(QPainter::RasterOp_NotDestination);
    const QPoint first = toPixel(from);
    const QPoint last = toPixel(to);
    if (first == last) {
        painter.drawPoint(first);
    } else if (shape == Shape::Line) {
        painter.drawLine(first, last);
    } else {
        drawOutline(painter, outline(first, last), colour);
    }
    painter.restore();
}

QRect Drawing::extent(Shape, QPoint from, QPoint to)
{
    return outline(toPixel(from), toPixel(to)).adjusted(-1, -1, 1, 1);
}

void Drawing::drawText(QImage &picture, QPoint at, QColor colour, const QString &text)
{
    QFont font(u"Sans Serif"_s);
    font.setPixelSize(fontPixels);
    QPainter painter(&picture);
    painter.setFont(font);
    painter.setPen(colour);
    const QPoint corner = toPixel(at);
    painter.drawText(corner.x(), corner.y() + QFontMetrics(font, &picture).ascent(), text);
}

std::span<const Drawing::Colour, 16> Drawing::palette()
{
    static constexpr Colour colours[16] = {
        {0, 0, 0, u"Black"},       {0, 0, 128, u"Navy"},       {0, 128, 0, u"Green"},
        {0, 128, 128, u"Teal"},    {128, 0, 0, u"Maroon"},     {128, 0, 128, u"Purple"},
        {128, 128, 0, u"Olive"},   {192, 192, 192, u"Silver"}, {128, 128, 128, u"Gray"},
        {0, 0, 255, u"Blue"},      {0, 255, 0, u"Lime"},       {0, 255, 255, u"Aqua"},
        {255, 0, 0, u"Red"},       {255, 0, 255, u"Fuchsia"},  {255, 255, 0, u"Yellow"},
        {255, 255, 255, u"White"},
    };
    return colours;
}

std::uint32_t Drawing::value(const Colour &colour)
{
    return colour.red | std::uint32_t{colour.green} << 8 | std::uint32_t{colour.blue} << 16;
}

QColor Drawing::fromValue(std::uint32_t value)
{
    return QColor(static_cast<int>(value & 0xff), static_cast<int>(value >> 8 & 0xff),
                  static_cast<int>(value >> 16 & 0xff));
}
