#include "paint/PaintTools.h"

#include <QPainter>

#include <cstdlib>
#include <utility>

// What the gestures of the tools do to the picture.

namespace
{
using PaintShapes::Path;
using FillFunction = void (*)(QImage &, QPoint, QPoint, const PaintShapes::Filling &);

void drawClosed(QImage &picture, const PaintTools::Band &band, FillFunction fill,
                const PaintShapes::Filling &filling, const Path &outline, const PaintShapes::Pen &pen,
                FillMode mode)
{
    if (mode != FillMode::Outline)
        fill(picture, band.from, band.to, filling);
    if (mode != FillMode::Inside)
        PaintShapes::stroke(picture, outline, pen);
}
} // namespace

PaintShapes::Pen PaintTools::pen() const
{
    const PaintSettings &settings = m_services.settings;
    return {settings.foreground, settings.size(), settings.borderStyle};
}

PaintShapes::Filling PaintTools::filling() const
{
    return {m_services.settings.fill, m_services.settings.fillStyle};
}

void PaintTools::pickColour(QPoint at)
{
    const QImage &picture = m_services.picture.image();
    if (!picture.rect().contains(at))
        return;
    QColor &colour = m_held == Button::Right ? m_services.settings.fill : m_services.settings.foreground;
    colour = picture.pixelColor(at);
    if (m_services.coloursChanged)
        m_services.coloursChanged();
}

// ---- selection

void PaintTools::pressSelection(QPoint at, Modifiers modifiers)
{
    const PaintPicture::Selection &selection = m_services.picture.selection();
    if (selection.exists() && selection.place.contains(at)) {
        m_grip = at - selection.place.topLeft();
        m_lifts = true;
        m_leavesCopy = modifiers.ctrl;
    } else {
        m_services.picture.commitSelection();
    }
}

void PaintTools::moveSelection(QPoint at)
{
    if (m_lifts && at == m_anchor)
        return; // a click is no move
    if (std::exchange(m_lifts, false))
        m_services.picture.lift(m_leavesCopy);
    m_services.picture.moveSelection(at - *m_grip);
}

// ---- strokes

/// A part of a stroke: at every position of the mouse.
void PaintTools::strokeTo(QPoint at)
{
    const PaintSettings &settings = m_services.settings;
    QImage &canvas = m_services.picture.canvas();
    const int size = settings.size();
    m_stroke = true;
    switch (settings.tool) {
    case DrawingTool::Pencil:
        PaintShapes::stroke(canvas, PaintShapes::line(m_last, at), {settings.foreground, size});
        break;
    case DrawingTool::Eraser:
        PaintShapes::strokeSquare(canvas, PaintShapes::line(m_last, at), settings.fill, size);
        break;
    case DrawingTool::AirBrush:
        PaintShapes::airBrush(canvas, at, size, settings.foreground, m_services.seed());
        break;
    case DrawingTool::Brush:
        PaintShapes::brush(canvas, at, settings.brushShape, size, {settings.foreground, settings.fillStyle});
        break;
    default:
        filterAt(at);
    }
    m_last = at;
}

void PaintTools::filterAt(QPoint at)
{
    const int size = m_services.settings.size();
    const QRect square(at - QPoint(size, size), at + QPoint(size, size));
    if (square.intersects(m_services.picture.image().rect()))
        m_services.filter(m_services.picture.canvas(), square);
}

// ---- shapes

void PaintTools::releaseBand(const Band &band)
{
    if (band.tool == DrawingTool::SelectArea) {
        if (band.from != band.to)
            m_services.picture.select(PaintShapes::boxOf(band.from, band.to));
    } else if (band.tool == DrawingTool::Curve) {
        if (band.from != band.to) {
            const QPoint way = band.to - band.from;
            m_curve = {band.from, band.from + way / 3.0, band.from + way * 2.0 / 3.0, band.to};
        }
    } else {
        drawBand(band);
        m_services.picture.SetImageBuffer();
    }
}

void PaintTools::drawBand(const Band &band)
{
    QImage &canvas = m_services.picture.canvas();
    const FillMode mode = m_services.settings.fillMode;
    switch (band.tool) {
    case DrawingTool::Rectangle:
        drawClosed(canvas, band, PaintShapes::fillRectangle, filling(),
                   PaintShapes::rectangle(band.from, band.to), pen(), mode);
        break;
    case DrawingTool::Ellipse:
        drawClosed(canvas, band, PaintShapes::fillEllipse, filling(),
                   PaintShapes::ellipse(band.from, band.to), pen(), mode);
        break;
    case DrawingTool::RoundedRectangle:
        drawClosed(canvas, band, PaintShapes::fillRoundedRectangle, filling(),
                   PaintShapes::roundedRectangle(band.from, band.to), pen(), mode);
        break;
    case DrawingTool::Arrow:
        for (const Path &path : PaintShapes::arrow(band.from, band.to))
            PaintShapes::stroke(canvas, path, pen());
        break;
    default:
        PaintShapes::stroke(canvas, PaintShapes::line(band.from, band.to), pen());
    }
}

// ---- text, polygon, curve

void PaintTools::finishTools()
{
    const bool stroke = m_stroke;
    forgetGesture();
    if (stroke)
        m_services.picture.SetImageBuffer();
    if (m_textPlace)
        placeText(m_services.text());
    finishPolygon();
    finishCurve();
}

void PaintTools::placeText(const QString &text)
{
    const std::optional<QPoint> place = std::exchange(m_textPlace, std::nullopt);
    if (!place || text.trimmed().isEmpty())
        return;
    const PaintSettings &settings = m_services.settings;
    PaintShapes::text(m_services.picture.canvas(), *place, settings.font, settings.foreground, text);
    m_services.picture.SetImageBuffer();
}

void PaintTools::finishPolygon()
{
    const std::vector<QPoint> corners = std::exchange(m_polygon, {});
    if (corners.size() < 2)
        return; // a point is no polygon
    QImage &canvas = m_services.picture.canvas();
    const FillMode mode = m_services.settings.fillMode;
    if (mode != FillMode::Outline)
        PaintShapes::fillPolygon(canvas, corners, filling());
    if (mode != FillMode::Inside)
        PaintShapes::stroke(canvas, PaintShapes::polyline(corners, true), pen());
    m_services.picture.SetImageBuffer();
}

/// The first drag makes the ends; after that a press on a marker takes hold of it, the last one first where
/// they lie over one another.
void PaintTools::pressCurve(QPoint at)
{
    if (!m_curve) {
        m_band = Band{DrawingTool::Curve, at, at};
        return;
    }
    for (std::size_t i = m_curve->size(); i-- > 0;) {
        const QPoint off = at - m_curve->at(i);
        if (std::abs(off.x()) <= markerReach && std::abs(off.y()) <= markerReach) {
            m_marker = i;
            m_markerGrip = off;
            return;
        }
    }
}

void PaintTools::finishCurve()
{
    if (!m_curve)
        return;
    const std::array<QPoint, 4> points = *std::exchange(m_curve, std::nullopt);
    PaintShapes::stroke(m_services.picture.canvas(), PaintShapes::curve(points), pen());
    m_services.picture.SetImageBuffer();
}
