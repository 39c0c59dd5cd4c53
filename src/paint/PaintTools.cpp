#include "paint/PaintTools.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
using PaintShapes::Path;

/// A closed shape or a line as it is drawn over the picture, one pixel wide.
void append(std::vector<QPoint> &pixels, const Path &path)
{
    pixels.insert(pixels.end(), path.begin(), path.end());
}

void appendBand(std::vector<QPoint> &pixels, const PaintTools::Band &band)
{
    switch (band.tool) {
    case DrawingTool::SelectArea:
    case DrawingTool::Rectangle:
        append(pixels, PaintShapes::rectangle(band.from, band.to));
        break;
    case DrawingTool::Ellipse:
        append(pixels, PaintShapes::ellipse(band.from, band.to));
        break;
    case DrawingTool::RoundedRectangle:
        append(pixels, PaintShapes::roundedRectangle(band.from, band.to));
        break;
    case DrawingTool::Arrow:
        for (const Path &path : PaintShapes::arrow(band.from, band.to))
            append(pixels, path);
        break;
    default:
        append(pixels, PaintShapes::line(band.from, band.to));
    }
}

void appendCurve(std::vector<QPoint> &pixels, const std::array<QPoint, 4> &points)
{
    append(pixels, PaintShapes::curve(points));
    constexpr QPoint reach(PaintTools::markerReach, PaintTools::markerReach);
    for (const QPoint &point : points)
        append(pixels, PaintShapes::rectangle(point - reach, point + reach));
}

/// A dashed frame on the outermost pixels.
void DrawSelectionRect(std::vector<QPoint> &pixels, const QRect &box, double zoom)
{
    // Pixels; the gaps are as long. Where the picture is shown smaller, so that they are still seen.
    const auto dash = static_cast<std::size_t>(std::ceil(4 / std::min(zoom, 1.0)));
    const Path path = PaintShapes::rectangle(box.topLeft(), box.bottomRight());
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i / dash % 2 == 0)
            pixels.push_back(path[i]);
    }
}

bool byRows(const QPoint &a, const QPoint &b)
{
    return a.y() != b.y() ? a.y() < b.y() : a.x() < b.x();
}

/// Sorted by rows, each once.
void putInOrder(std::vector<QPoint> &pixels)
{
    std::sort(pixels.begin(), pixels.end(), byRows);
    pixels.erase(std::unique(pixels.begin(), pixels.end()), pixels.end());
}

/// Onto the pixels of the device in which their middles come to lie, so that none is lost where several
/// share one.
void mapTo(std::vector<QPoint> &pixels, const QTransform &device)
{
    for (QPoint &pixel : pixels) {
        const QPointF middle = device.map(QPointF(pixel) + QPointF(0.5, 0.5));
        pixel = {static_cast<int>(std::floor(middle.x())), static_cast<int>(std::floor(middle.y()))};
    }
    putInOrder(pixels);
}

/// Whether a tool draws a shape over the box or line that is dragged.
bool dragsShape(DrawingTool tool)
{
    return tool == DrawingTool::SelectArea || tool == DrawingTool::Line || tool == DrawingTool::Rectangle ||
           tool == DrawingTool::Ellipse || tool == DrawingTool::Arrow ||
           tool == DrawingTool::RoundedRectangle;
}
} // namespace

PaintTools::PaintTools(Services services) : m_services(std::move(services))
{
    m_services.picture.setPendingWork({[this] { return pending(); }, [this] { finishTools(); }});
}

PaintTools::~PaintTools()
{
    m_services.picture.setPendingWork({});
}

void PaintTools::choose(DrawingTool tool)
{
    finishPending();
    m_services.settings.tool = tool;
}

bool PaintTools::pending() const
{
    return m_stroke || m_band || m_textPlace || !m_polygon.empty() || m_curve;
}

// ---- gestures

void PaintTools::press(Button button, QPoint at, Modifiers modifiers)
{
    const DrawingTool tool = m_services.settings.tool;
    if (m_held || tool == DrawingTool::Zoom || tool == DrawingTool::Hand)
        return;
    if (button == Button::Right && tool != DrawingTool::PickColor)
        return;
    m_held = button;
    m_anchor = m_last = at;
    if (tool == DrawingTool::SelectArea)
        pressSelection(at, modifiers);
    else
        m_services.picture.commitSelection();
    switch (tool) {
    case DrawingTool::PickColor:
        pickColour(at);
        break;
    case DrawingTool::Fill:
        if (PaintShapes::floodFill(m_services.picture.canvas(), at, m_services.settings.foreground))
            m_services.picture.SetImageBuffer();
        break;
    case DrawingTool::Text:
        finishTools();
        m_textPlace = at;
        break;
    case DrawingTool::Polygon:
        m_polygon.push_back(at);
        m_placingCorner = true;
        break;
    case DrawingTool::Curve:
        pressCurve(at);
        break;
    case DrawingTool::Pencil:
    case DrawingTool::Eraser:
    case DrawingTool::AirBrush:
    case DrawingTool::Brush:
    case DrawingTool::FilterBrush:
        strokeTo(at);
        break;
    default:
        if (dragsShape(tool) && !m_grip)
            m_band = Band{tool, at, at};
    }
}

void PaintTools::move(QPoint at, Modifiers modifiers)
{
    if (!m_held)
        return;
    if (m_services.settings.tool == DrawingTool::PickColor)
        pickColour(at);
    else if (m_band)
        m_band->to = ConstrainPoint(m_band->tool, m_anchor, at, modifiers);
    else if (m_grip)
        moveSelection(at);
    else if (m_placingCorner)
        m_polygon.back() = at;
    else if (m_marker)
        m_curve->at(*m_marker) = at - m_markerGrip;
    else if (m_stroke)
        strokeTo(at);
}

void PaintTools::release(Button button, QPoint at, Modifiers modifiers)
{
    if (m_held != button)
        return;
    if (!m_stroke || at != m_last)
        move(at, modifiers);
    const std::optional<Band> band = m_band;
    const bool stroke = m_stroke;
    forgetGesture();
    if (band)
        releaseBand(*band);
    else if (stroke)
        m_services.picture.SetImageBuffer();
}

void PaintTools::doubleClick(Button button, QPoint at, Modifiers modifiers)
{
    const bool finishes = m_textPlace || !m_polygon.empty() || m_curve;
    if (button == Button::Left && finishes)
        enter();
    else
        press(button, at, modifiers);
}

void PaintTools::enter()
{
    if (!m_held)
        finishTools();
}

void PaintTools::escape()
{
    if (m_held) {
        if (m_stroke)
            m_services.picture.revert();
        else if (m_grip)
            m_services.picture.moveSelection(m_anchor - *m_grip);
        else if (m_placingCorner)
            m_polygon.pop_back();
        forgetGesture();
    } else if (pending()) {
        m_textPlace.reset();
        m_polygon.clear();
        m_curve.reset();
    } else {
        m_services.picture.dropSelection();
    }
}

void PaintTools::forgetGesture()
{
    m_held.reset();
    m_band.reset();
    m_stroke = false;
    m_grip.reset();
    m_placingCorner = false;
    m_marker.reset();
}

QPoint PaintTools::ConstrainPoint(DrawingTool tool, QPoint anchor, QPoint at, Modifiers modifiers)
{
    if (!dragsShape(tool))
        return at;
    const int dx = std::abs(at.x() - anchor.x());
    const int dy = std::abs(at.y() - anchor.y());
    if (modifiers.shift) {
        if (dy >= dx)
            return {at.x(), at.y() <= anchor.y() ? anchor.y() - dx : anchor.y() + dx};
        return {at.x() <= anchor.x() ? anchor.x() - dy : anchor.x() + dy, at.y()};
    }
    if (modifiers.ctrl && (tool == DrawingTool::Line || tool == DrawingTool::Arrow))
        return dy >= dx ? QPoint(anchor.x(), at.y()) : QPoint(at.x(), anchor.y());
    return at;
}

// ---- status bar

QString PaintTools::positionText(QPoint at)
{
    return u"%1,%2"_s.arg(at.x()).arg(at.y());
}

QString PaintTools::sizeText() const
{
    if (!m_band || !dragsShape(m_band->tool))
        return {};
    const QSize size = PaintShapes::boxOf(m_band->from, m_band->to).size();
    return u"%1x%2"_s.arg(size.width()).arg(size.height());
}

QString PaintTools::statusText() const
{
    const DrawingTool tool = m_services.settings.tool;
    const PaintToolRow &row = rowOf(tool);
    const char16_t *text = row.status;
    if (m_band && dragsShape(tool))
        text = row.dragging;
    else if (tool == DrawingTool::SelectArea ? m_services.picture.selection().exists()
                                             : m_textPlace || !m_polygon.empty() || m_curve)
        text = row.inProgress;
    return QString::fromUtf16(text);
}

// ---- overlay

PaintTools::Overlay PaintTools::overlay() const
{
    return {m_band, m_polygon, m_curve, m_services.picture.selection().place};
}

std::vector<QPoint> PaintTools::overlayPixels(double zoom) const
{
    std::vector<QPoint> pixels;
    if (m_band)
        appendBand(pixels, *m_band);
    if (m_services.picture.selection().exists())
        DrawSelectionRect(pixels, m_services.picture.selection().place, zoom);
    append(pixels, PaintShapes::polyline(m_polygon, false));
    if (m_curve)
        appendCurve(pixels, *m_curve);
    putInOrder(pixels);
    return pixels;
}

void PaintTools::drawOverlay(QPainter &painter) const
{
    const QTransform device = painter.deviceTransform();
    const double zoom = device.m11();
    std::vector<QPoint> pixels = overlayPixels(zoom);
    painter.save();
    if (zoom < 1) {
        mapTo(pixels, device);
        painter.setWorldTransform(device.inverted() * painter.worldTransform());
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setCompositionMode(QPainter::RasterOp_NotDestination);
    for (auto begin = pixels.begin(); begin != pixels.end();) {
        auto end = std::next(begin);
        while (end != pixels.end() && *end == *std::prev(end) + QPoint(1, 0))
            ++end;
        painter.fillRect(begin->x(), begin->y(), static_cast<int>(std::distance(begin, end)), 1, Qt::black);
        begin = end;
    }
    painter.restore();
}
