#include "annotate/AnnotationTools.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

AnnotationTools::AnnotationTools(Services services) : m_services(std::move(services)) {}

void AnnotationTools::mouseDown(Button button, QPoint at)
{
    if (button == Button::Left)
        m_anchor = at;
    m_services.picture.touch();
}

void AnnotationTools::mouseMove(QPoint at)
{
    if (!m_anchor)
        return;
    if (m_services.state.CurrentTool == u"drawline"_s)
        DrawLine(at.x(), at.y(), m_colour, false);
    else if (m_services.state.CurrentTool == u"drawbox"_s)
        DrawBox(at.x(), at.y(), m_colour, false);
}

bool AnnotationTools::mouseUp(Button button, QPoint at)
{
    if (button != Button::Left || !m_anchor)
        return false;
    const QString tool = m_services.state.CurrentTool;
    if (tool == u"drawline"_s)
        DrawLine(at.x(), at.y(), m_colour, true);
    else if (tool == u"drawbox"_s)
        DrawBox(at.x(), at.y(), m_colour, true);
    m_anchor.reset();
    m_band.reset();
    if (tool == u"drawtext"_s) {
        if (!placeText(at))
            return false;
    } else if (tool != u"drawline"_s && tool != u"drawbox"_s) {
        return false;
    }
    m_services.picture.SetImageBuffer();
    m_services.picture.history().setUndoEnabled(true);
    return true;
}

void AnnotationTools::cancelGesture()
{
    m_anchor.reset();
    m_band.reset();
}

/// False when the user has given no text.
bool AnnotationTools::placeText(QPoint at)
{
    Module1 &state = m_services.state;
    m_services.showTextDialog();
    if (state.TextMessage.isEmpty())
        return false;
    for (const QString &line : state.TextMessage.split(u"\r\n"_s)) {
        doDrawtext(at.x(), at.y(), m_colour, line);
        at.ry() += Drawing::lineStep;
    }
    m_services.repaint();
    if (m_services.prompter.ask(Question::ConfirmTextPlace, Buttons::YesNo,
                                {u"Keep the new text string here. Is this OK?\r\n"
                                 "Click Yes to confirm\r\n"
                                 "Click No and Click a new position to move it."_s,
                                 u"Confirm location of the text"_s}) == Answer::Yes)
        return true;
    state.TextRetry = true;
    m_services.prompter.tell(
        Question::ClickTextPlace,
        {u"Please click the position you want the first letter to be placed."_s, state.AppTitle});
    m_services.picture.UndoImage();
    return true;
}

void AnnotationTools::DrawLine(std::int32_t x, std::int32_t y, QColor colour, bool final)
{
    drawShape(Drawing::Shape::Line, {x, y}, colour, final);
}

void AnnotationTools::DrawBox(std::int32_t x, std::int32_t y, QColor colour, bool final)
{
    drawShape(Drawing::Shape::Box, {x, y}, colour, final);
}

void AnnotationTools::drawShape(Drawing::Shape shape, QPoint to, QColor colour, bool final)
{
    const QPoint from = m_anchor.value_or(to);
    if (!final) {
        m_band = Band{shape, from, to};
        return;
    }
    m_band.reset();
    QPainter painter(&m_services.picture.canvas());
    Drawing::draw(painter, shape, from, to, colour, Drawing::Mode::Copy);
}

void AnnotationTools::doDrawtext(std::int32_t x, std::int32_t y, QColor colour, const QString &text)
{
    Drawing::drawText(m_services.picture.canvas(), {x, y}, colour, text);
}
