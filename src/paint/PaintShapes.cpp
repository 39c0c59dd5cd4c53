#include "paint/PaintShapes.h"

#include "paint/PaintAreas.h"
#include "paint/PaintPixels.h"
#include "platform/Rounding.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace
{
using PaintShapes::Path;

/// Bresenham's line; where the path has got to already is not repeated.
void appendLine(Path &path, QPoint from, QPoint to)
{
    const int dx = std::abs(to.x() - from.x());
    const int dy = std::abs(to.y() - from.y());
    const int stepX = to.x() < from.x() ? -1 : 1;
    const int stepY = to.y() < from.y() ? -1 : 1;
    int error = dx - dy;
    if (path.empty() || path.back() != from)
        path.push_back(from);
    while (from != to) {
        const int twice = 2 * error;
        if (twice > -dy) {
            error -= dy;
            from.rx() += stepX;
        }
        if (twice < dx) {
            error += dx;
            from.ry() += stepY;
        }
        path.push_back(from);
    }
}

/// From the top row clockwise.
Path outlineOf(const PaintArea &area)
{
    Path path;
    const auto &rows = area.rows;
    const std::size_t last = rows.size() - 1;
    appendLine(path, {rows[0].left, area.top}, {rows[0].right, area.top});
    // Each row reaches as far as its neighbours leave it open, so that the outline has no gap.
    for (std::size_t i = 1; i < last; ++i) {
        const int y = area.top + static_cast<int>(i);
        const int right = rows[i].right;
        const int before = std::min(rows[i - 1].right + 1, right);
        const int after = std::min(rows[i + 1].right + 1, right);
        appendLine(path, {before, y}, {right, y});
        appendLine(path, {right, y}, {after, y});
    }
    const int bottom = area.top + static_cast<int>(last);
    if (last > 0)
        appendLine(path, {rows[last].right, bottom}, {rows[last].left, bottom});
    for (std::size_t i = last; i-- > 1;) {
        const int y = area.top + static_cast<int>(i);
        const int left = rows[i].left;
        const int before = std::max(rows[i + 1].left - 1, left);
        const int after = std::max(rows[i - 1].left - 1, left);
        appendLine(path, {before, y}, {left, y});
        appendLine(path, {left, y}, {after, y});
    }
    return path;
}

/// Lengths of dashes and gaps by turns, in widths of the pen.
std::span<const int> dashes(BorderStyle style)
{
    static constexpr std::array<int, 2> dash{4, 2};
    static constexpr std::array<int, 2> dot{1, 2};
    static constexpr std::array<int, 4> dashDot{4, 2, 1, 2};
    static constexpr std::array<int, 6> dashDotDot{4, 2, 1, 2, 1, 2};
    switch (style) {
    case BorderStyle::Dash:
        return dash;
    case BorderStyle::Dot:
        return dot;
    case BorderStyle::DashDot:
        return dashDot;
    case BorderStyle::DashDotDot:
        return dashDotDot;
    case BorderStyle::Solid:
        break;
    }
    return {};
}

/// Whether the pen's tip is down at step `index` of a path. A dash is as long as it is said to be with the
/// tip's own width counted in.
bool penIsDown(std::size_t index, std::span<const int> pattern, int width)
{
    if (pattern.empty())
        return true;
    int period = 0;
    for (const int length : pattern)
        period += length * width;
    int at = static_cast<int>(index % static_cast<std::size_t>(period));
    bool dash = true;
    for (const int length : pattern) {
        if (at < length * width)
            return dash && at <= (length - 1) * width;
        at -= length * width;
        dash = !dash;
    }
    return false;
}

/// The rows of a tip, relative to the pixel it is on.
std::vector<PaintArea::Run> roundTip(int width)
{
    std::vector<PaintArea::Run> rows = PaintArea::ellipse(QRect(0, 0, width, width)).rows;
    for (PaintArea::Run &run : rows) {
        run.left -= width / 2;
        run.right -= width / 2;
    }
    return rows;
}

void strokeWith(QImage &picture, const Path &path, const std::vector<PaintArea::Run> &tip,
                std::uint32_t colour, BorderStyle style)
{
    PaintPixels pixels(picture);
    const int width = static_cast<int>(tip.size());
    const std::span<const int> pattern = dashes(style);
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (!penIsDown(i, pattern, width))
            continue;
        int y = path[i].y() - width / 2;
        for (const PaintArea::Run &run : tip)
            pixels.run(y++, path[i].x() + run.left, path[i].x() + run.right, colour);
    }
}
} // namespace

// ---- areas

PaintArea PaintArea::rectangle(const QRect &box)
{
    return {box.top(), std::vector<Run>(static_cast<std::size_t>(box.height()), {box.left(), box.right()})};
}

PaintArea PaintArea::ellipse(const QRect &box)
{
    PaintArea area = rectangle(box);
    const double w = box.width();
    const double h = box.height();
    for (int i = 0; i < box.height(); ++i) {
        // Twice the distances from the centre, so that they are whole numbers.
        const double y = 2.0 * i - (h - 1);
        const double reach = std::sqrt(std::max(0.0, h * h - y * y)) * w / h;
        // Even the first and the last row have the pixels in the middle, and the middle rows reach the sides.
        int inset = std::min(static_cast<int>(std::ceil((w - 1 - reach) / 2 - 1e-9)), (box.width() - 1) / 2);
        if (std::abs(y) <= 1)
            inset = 0;
        inset = std::max(inset, 0);
        area.rows[static_cast<std::size_t>(i)] = {box.left() + inset, box.right() - inset};
    }
    return area;
}

PaintArea PaintArea::roundedRectangle(const QRect &box)
{
    PaintArea area = rectangle(box);
    const int radius = std::min(box.width(), box.height()) / 4;
    const PaintArea corners = ellipse(QRect(0, 0, 2 * radius, 2 * radius));
    for (int i = 0; i < radius; ++i) {
        const int inset = corners.rows[static_cast<std::size_t>(i)].left;
        const Run run{box.left() + inset, box.right() - inset};
        area.rows[static_cast<std::size_t>(i)] = run;
        area.rows[static_cast<std::size_t>(box.height() - 1 - i)] = run;
    }
    return area;
}

// ---- paths

QRect PaintShapes::boxOf(QPoint from, QPoint to)
{
    return QRect(QPoint(std::min(from.x(), to.x()), std::min(from.y(), to.y())),
                 QPoint(std::max(from.x(), to.x()), std::max(from.y(), to.y())));
}

Path PaintShapes::line(QPoint from, QPoint to)
{
    Path path;
    appendLine(path, from, to);
    return path;
}

Path PaintShapes::polyline(std::span<const QPoint> corners, bool closed)
{
    Path path;
    if (corners.size() == 1)
        path.push_back(corners[0]);
    for (std::size_t i = 1; i < corners.size(); ++i)
        appendLine(path, corners[i - 1], corners[i]);
    if (closed && corners.size() > 2)
        appendLine(path, corners.back(), corners.front());
    return path;
}

Path PaintShapes::rectangle(QPoint from, QPoint to)
{
    return outlineOf(PaintArea::rectangle(boxOf(from, to)));
}

Path PaintShapes::ellipse(QPoint from, QPoint to)
{
    return outlineOf(PaintArea::ellipse(boxOf(from, to)));
}

Path PaintShapes::roundedRectangle(QPoint from, QPoint to)
{
    return outlineOf(PaintArea::roundedRectangle(boxOf(from, to)));
}

std::array<Path, 3> PaintShapes::arrow(QPoint from, QPoint to)
{
    constexpr double length = 10;
    constexpr double quarter = std::numbers::pi / 4; // 45 degrees
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const double angle = dx == 0 ? 2 * quarter : std::atan(dy / dx);
    const double sign = dx > 0 || (dx == 0 && dy > 0) ? 1 : -1;
    const auto end = [&](double turned) {
        return QPoint(Rounding::toInt(to.x() - length * sign * std::cos(turned)),
                      Rounding::toInt(to.y() - length * sign * std::sin(turned)));
    };
    return {line(from, to), line(to, end(angle + quarter)), line(to, end(angle - quarter))};
}

Path PaintShapes::curve(const std::array<QPoint, 4> &points)
{
    int length = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += (points[i] - points[i - 1]).manhattanLength();
    const int steps = std::clamp(length / 4, 8, 1000);
    Path path;
    QPoint last = points[0];
    path.push_back(last);
    for (int i = 1; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const double u = 1 - t;
        const std::array<double, 4> weights{u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
        double x = 0;
        double y = 0;
        for (std::size_t k = 0; k < points.size(); ++k) {
            x += weights[k] * points[k].x();
            y += weights[k] * points[k].y();
        }
        const QPoint next(Rounding::toInt(x), Rounding::toInt(y));
        appendLine(path, last, next);
        last = next;
    }
    return path;
}

// ---- strokes

void PaintShapes::stroke(QImage &picture, const Path &path, const Pen &pen)
{
    strokeWith(picture, path, roundTip(pen.width), pen.colour.rgb(), pen.style);
}

void PaintShapes::strokeSquare(QImage &picture, const Path &path, QColor colour, int width)
{
    const PaintArea::Run run{-(width / 2), width - 1 - width / 2};
    strokeWith(picture, path, std::vector(static_cast<std::size_t>(width), run), colour.rgb(),
               BorderStyle::Solid);
}
