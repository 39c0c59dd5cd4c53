#include "paint/PaintAreas.h"
#include "paint/PaintPixels.h"
#include "paint/PaintShapes.h"
#include "platform/Rounding.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace
{
using PaintShapes::Filling;

void fillArea(QImage &picture, const PaintArea &area, const Filling &filling)
{
    PaintPixels pixels(picture);
    int y = area.top;
    for (const PaintArea::Run &run : area.rows)
        pixels.run(y++, run.left, run.right, filling.colour.rgb(), filling.style);
}

/// Where a row crosses the edges of a polygon, from left to right. An edge has its upper end, but not its
/// lower.
std::vector<double> crossings(std::span<const QPoint> corners, int y)
{
    std::vector<double> result;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        QPoint upper = corners[i];
        QPoint lower = corners[(i + 1) % corners.size()];
        if (upper.y() > lower.y())
            std::swap(upper, lower);
        if (y < upper.y() || y >= lower.y())
            continue;
        const double part = static_cast<double>(y - upper.y()) / (lower.y() - upper.y());
        result.push_back(upper.x() + part * (lower.x() - upper.x()));
    }
    std::sort(result.begin(), result.end());
    return result;
}

/// One colour spreading over another, row by row, with a stack of its own: areas may be large.
class Flood
{
public:
    Flood(QImage &picture, QPoint at, QRgb colour)
        : m_width(picture.width()), m_height(picture.height()), m_colour(colour), m_pixels(picture),
          m_old(colourOf(m_pixels.row(at.y())[at.x()]))
    {
        if (m_old != colourOf(colour))
            m_starts.push_back(at);
    }

    /// False: the area has that colour already.
    bool run()
    {
        const bool spreads = !m_starts.empty();
        while (!m_starts.empty()) {
            const QPoint at = m_starts.back();
            m_starts.pop_back();
            const std::uint32_t *row = m_pixels.row(at.y());
            if (colourOf(row[at.x()]) != m_old)
                continue;
            int left = at.x();
            int right = at.x();
            while (left > 0 && colourOf(row[left - 1]) == m_old)
                --left;
            while (right < m_width - 1 && colourOf(row[right + 1]) == m_old)
                ++right;
            m_pixels.run(at.y(), left, right, m_colour);
            addStarts(at.y() - 1, left, right);
            addStarts(at.y() + 1, left, right);
        }
        return spreads;
    }

private:
    static std::uint32_t colourOf(std::uint32_t pixel) { return pixel & RGB_MASK; }

    /// One for each run of the old colour that touches left to right.
    void addStarts(int y, int left, int right)
    {
        if (y < 0 || y >= m_height)
            return;
        const std::uint32_t *row = m_pixels.row(y);
        bool inside = false;
        for (int x = left; x <= right; ++x) {
            const bool same = colourOf(row[x]) == m_old;
            if (same && !inside)
                m_starts.emplace_back(x, y);
            inside = same;
        }
    }

    int m_width;
    int m_height;
    QRgb m_colour;
    PaintPixels m_pixels;
    std::uint32_t m_old;
    std::vector<QPoint> m_starts;
};

/// In [0, 1); the same on every machine.
double uniform(std::mt19937 &generator)
{
    constexpr double values = 4294967296.0;
    return static_cast<double>(generator()) / values;
}
} // namespace

void PaintShapes::fillRectangle(QImage &picture, QPoint from, QPoint to, const Filling &filling)
{
    fillArea(picture, PaintArea::rectangle(boxOf(from, to)), filling);
}

void PaintShapes::fillEllipse(QImage &picture, QPoint from, QPoint to, const Filling &filling)
{
    fillArea(picture, PaintArea::ellipse(boxOf(from, to)), filling);
}

void PaintShapes::fillRoundedRectangle(QImage &picture, QPoint from, QPoint to, const Filling &filling)
{
    fillArea(picture, PaintArea::roundedRectangle(boxOf(from, to)), filling);
}

void PaintShapes::fillPolygon(QImage &picture, std::span<const QPoint> corners, const Filling &filling)
{
    PaintPixels pixels(picture);
    const QRgb colour = filling.colour.rgb();
    for (int y = 0; y < picture.height(); ++y) {
        const std::vector<double> sides = crossings(corners, y);
        for (std::size_t i = 1; i < sides.size(); i += 2)
            pixels.run(y, static_cast<int>(std::ceil(sides[i - 1])), static_cast<int>(std::floor(sides[i])),
                       colour, filling.style);
    }
    for (const QPoint &at : polyline(corners, true))
        pixels.run(at.y(), at.x(), at.x(), colour, filling.style);
}

bool PaintShapes::floodFill(QImage &picture, QPoint at, QColor colour)
{
    if (!picture.rect().contains(at))
        return false;
    return Flood(picture, at, colour.rgb()).run();
}

void PaintShapes::airBrush(QImage &picture, QPoint at, int size, QColor colour, std::uint32_t seed)
{
    std::mt19937 generator(seed);
    PaintPixels pixels(picture);
    const int count = std::max(Rounding::toInt(size * size * 0.25), 1);
    for (int i = 0; i < count; ++i) {
        const int x = Rounding::toInt(std::floor(at.x() - size / 2.0 + size * uniform(generator)));
        const int y = Rounding::toInt(std::floor(at.y() - size / 2.0 + size * uniform(generator)));
        pixels.run(y, x, x, colour.rgb());
    }
}

void PaintShapes::brush(QImage &picture, QPoint at, BrushShape shape, int width, const Filling &filling)
{
    const int d = 3 * width;
    const QPoint topLeft = at - QPoint(d, d);
    const QPoint bottomRight = at + QPoint(d, d);
    const QPoint topRight = at + QPoint(d, -d);
    const QPoint bottomLeft = at + QPoint(-d, d);
    const auto draw = [&](const Path &path) { stroke(picture, path, {filling.colour}); };
    const auto vertical = [&] { draw(line(at - QPoint(0, d), at + QPoint(0, d))); };
    const auto horizontal = [&] { draw(line(at - QPoint(d, 0), at + QPoint(d, 0))); };
    const auto rising = [&] { draw(line(bottomLeft, topRight)); };
    const auto falling = [&] { draw(line(bottomRight, topLeft)); };
    switch (shape) {
    case BrushShape::Square:
        fillRectangle(picture, topLeft, bottomRight, filling);
        draw(rectangle(topLeft, bottomRight));
        break;
    case BrushShape::Disc:
        fillEllipse(picture, topLeft, bottomRight, filling);
        draw(ellipse(topLeft, bottomRight));
        break;
    case BrushShape::SquareOutline:
        draw(rectangle(topLeft, bottomRight));
        break;
    case BrushShape::CircleOutline:
        draw(ellipse(topLeft, bottomRight));
        break;
    case BrushShape::Plus:
        vertical();
        horizontal();
        break;
    case BrushShape::Cross:
        rising();
        falling();
        break;
    case BrushShape::Rising:
        rising();
        break;
    case BrushShape::Falling:
        falling();
        break;
    case BrushShape::VerticalStroke:
        vertical();
        break;
    case BrushShape::HorizontalStroke:
        horizontal();
        break;
    }
}

int PaintShapes::textHeight(const QFont &font)
{
    constexpr double pixelsPerPoint = 96.0 / 72;
    return font.pixelSize() > 0 ? font.pixelSize()
                                : std::max(Rounding::toInt(font.pointSizeF() * pixelsPerPoint), 1);
}

void PaintShapes::text(QImage &picture, QPoint at, const QFont &font, QColor colour, const QString &lines)
{
    QFont sized = font;
    sized.setPixelSize(textHeight(font));
    QPainter painter(&picture);
    painter.setFont(sized);
    painter.setPen(colour);
    const QFontMetrics metrics(sized, &picture);
    int y = at.y() + metrics.ascent();
    for (QString line : lines.split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        painter.drawText(at.x(), y, line);
        y += metrics.lineSpacing();
    }
}
