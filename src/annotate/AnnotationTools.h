#pragma once

#include "annotate/Drawing.h"
#include "annotate/ViewerPicture.h"

#include <functional>
#include <optional>

/// What the mouse does on the picture of a viewer: a gesture from button down to button up draws a line or a
/// box, or asks for a text. Which tool is in use, Module1::CurrentTool says. Positions are twips of the
/// picture.
class AnnotationTools
{
public:
    struct Services {
        Module1 &state;
        Prompter &prompter;
        ViewerPicture &picture;
        std::function<void()> showTextDialog; ///< leaves the text in Module1::TextMessage
        std::function<void()> repaint;        ///< the picture has changed, and a question follows
    };

    explicit AnnotationTools(Services services);

    void setColour(std::uint32_t value) { m_colour = Drawing::fromValue(value); }

    enum class Button { Left, Other };
    void mouseDown(Button button, QPoint at);
    /// The left button is held.
    void mouseMove(QPoint at);
    /// True when the picture has got a new entry in its history.
    bool mouseUp(Button button, QPoint at);
    /// Gives the gesture up; nothing is drawn.
    void cancelGesture();

    /// The rubber band, which lies over the picture inverted and is never part of it.
    struct Band {
        Drawing::Shape shape;
        QPoint from;
        QPoint to;
    };
    const std::optional<Band> &band() const { return m_band; }

    /// From the anchor to (x, y): the rubber band, or the final shape in the picture.
    void DrawLine(std::int32_t x, std::int32_t y, QColor colour, bool final);
    void DrawBox(std::int32_t x, std::int32_t y, QColor colour, bool final);
    /// One line of text with its top left corner at (x, y).
    void doDrawtext(std::int32_t x, std::int32_t y, QColor colour, const QString &text);

private:
    void drawShape(Drawing::Shape shape, QPoint to, QColor colour, bool final);
    bool placeText(QPoint at);

    Services m_services;
    QColor m_colour = Qt::black;
    std::optional<QPoint> m_anchor; ///< set while the left button is held
    std::optional<Band> m_band;
};
