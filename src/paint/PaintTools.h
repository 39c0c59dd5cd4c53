#pragma once

#include "paint/PaintPicture.h"
#include "paint/PaintSettings.h"
#include "paint/PaintShapes.h"
#include "paint/PaintToolTable.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

class QPainter;

/// What the mouse and the keys do on the picture of the paint editor. Positions are pixels of the picture,
/// also outside it. The window repaints after each call; the picture is PaintPicture::image(), its floating
/// selection over it, and over both the overlay, which is never part of the picture and so can leave no
/// trace.
///
/// Zoom and Hand are the window's own: their gestures do nothing here.
class PaintTools
{
public:
    struct Services {
        PaintSettings &settings;
        PaintPicture &picture;
        /// For the air brush, once for each position.
        std::function<std::uint32_t()> seed;
        /// The filter brush: filters `square`, which may reach out of the picture.
        std::function<void(QImage &canvas, const QRect &square)> filter;
        /// The text in txtText, for when the text is to be placed.
        std::function<QString()> text;
        /// Pick Color has set a colour of the settings.
        std::function<void()> coloursChanged;
    };

    explicit PaintTools(Services services);
    PaintTools(const PaintTools &) = delete;
    PaintTools &operator=(const PaintTools &) = delete;
    ~PaintTools();

    /// Another tool, or the same again; finishes what is pending.
    void choose(DrawingTool tool);

    enum class Button { Left, Right };
    struct Modifiers {
        bool shift = false;
        bool ctrl = false;
    };
    void press(Button button, QPoint at, Modifiers modifiers);
    /// Whether a button is held or not.
    void move(QPoint at, Modifiers modifiers);
    /// Without a press before (after a double-click) nothing happens.
    void release(Button button, QPoint at, Modifiers modifiers);
    /// Instead of the second press of a double-click: finishes text, polygon and curve; else it is a press.
    void doubleClick(Button button, QPoint at, Modifiers modifiers);
    void enter();  ///< finishes text, polygon and curve
    void escape(); ///< drops what is pending: the gesture, text, polygon, curve, or the selection

    /// Finishes text, polygon and curve (a stroke under way, too), and commits the selection.
    void finishPending() { m_services.picture.finishPending(); }
    /// Text, polygon or curve is in progress, or a stroke or shape is being drawn.
    bool pending() const;

    /// Where txtText stands while a text is being typed. A press begins a new text and so moves it: the
    /// window then shows it there and empties it.
    const std::optional<QPoint> &textPlace() const { return m_textPlace; }
    /// Draws the text there, one undo entry, and the box goes; an empty text draws nothing.
    void placeText(const QString &text);

    /// SHIFT: equal sides, so the shorter one counts; CTRL, for Line and Arrow: horizontal or vertical.
    static QPoint ConstrainPoint(DrawingTool tool, QPoint anchor, QPoint at, Modifiers modifiers);

    /// For the second panel of the status bar: "12,34"; width and height, "5x7", while one of the six shapes
    /// is dragged (else empty), corners included.
    static QString positionText(QPoint at);
    QString sizeText() const;
    QString statusText() const;

    /// What lies inverted over the picture.
    struct Band {
        DrawingTool tool;
        QPoint from;
        QPoint to;
    };
    struct Overlay {
        std::optional<Band> band;                   ///< shape or selection being dragged
        std::vector<QPoint> polygon;                ///< corners so far, the one being placed last; not closed
        std::optional<std::array<QPoint, 4>> curve; ///< its control points, where the markers (imgBezier) are
        QRect selection;                            ///< null: none
    };
    Overlay overlay() const;
    /// Every pixel of the overlay once, by rows; they may lie outside the picture. Where it is shown smaller
    /// (a zoom below 1) dashes are longer.
    std::vector<QPoint> overlayPixels(double zoom = 1) const;
    /// Inverts them. The painter's unit is a pixel of the picture, its transformation may scale, also below
    /// 1; it paints on something like a QImage or a widget, which knows QPainter's raster operations.
    void drawOverlay(QPainter &painter) const;

    /// A marker reaches so far around its point, in pixels; a press there takes hold of it.
    static constexpr int markerReach = 3;

private:
    void finishTools();
    void forgetGesture();
    void pressSelection(QPoint at, Modifiers modifiers);
    void moveSelection(QPoint at);
    void pressCurve(QPoint at);
    void pickColour(QPoint at);
    void strokeTo(QPoint at);
    void filterAt(QPoint at);
    void releaseBand(const Band &band);
    void drawBand(const Band &band);
    void finishPolygon();
    void finishCurve();
    PaintShapes::Pen pen() const;
    PaintShapes::Filling filling() const;

    Services m_services;
    std::optional<Button> m_held; ///< button of the gesture under way
    QPoint m_anchor;              ///< where it began
    QPoint m_last;                ///< last position of a stroke
    std::optional<Band> m_band;
    bool m_stroke = false;        ///< the canvas has a stroke that is no undo entry yet
    std::optional<QPoint> m_grip; ///< of the selection being moved, from its top left corner
    bool m_lifts = false;         ///< it has not moved yet
    bool m_leavesCopy = false;
    std::optional<QPoint> m_textPlace;
    std::vector<QPoint> m_polygon; ///< corners
    bool m_placingCorner = false;  ///< the last of them follows the mouse
    std::optional<std::array<QPoint, 4>> m_curve;
    std::optional<std::size_t> m_marker; ///< the one that follows the mouse
    QPoint m_markerGrip;                 ///< where it is held, from its middle
};
