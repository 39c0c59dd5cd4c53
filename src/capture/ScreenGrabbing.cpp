#include "capture/ScreenGrabbing.h"

#include "capture/GrabDecision.h"
#include "platform/Rounding.h"

ScreenGrabbing::ScreenGrabbing(Module1 &state, Screen &screen) : m_state(state), m_screen(screen) {}

QRect ScreenGrabbing::desktop() const
{
    return m_screen.monitorAt(m_lastPointer);
}

QImage ScreenGrabbing::CaptureWindow(const QRect &area)
{
    return m_screen.grab(area);
}

QImage ScreenGrabbing::CaptureScreen()
{
    return grabRelative(desktop());
}

QImage ScreenGrabbing::CaptureScreenAdjust()
{
    if (m_state.IsWinXPOrLater)
        return CaptureScreen();
    double widthFactor = 1;
    double heightFactor = 1;
    if (m_state.OriginalScreenWidth == 1024) {
        widthFactor = 1.33;
        heightFactor = 0.78;
    } else if (m_state.OriginalScreenWidth == 1152) {
        widthFactor = 1.33;
        heightFactor = 0.7;
    }
    const auto adjusted = [](int pixels, double factor) {
        return Rounding::toInt(pixels * Rounding::twipsPerPixel * factor) / Rounding::twipsPerPixel;
    };
    QRect area = desktop();
    area.setSize({adjusted(area.width(), widthFactor), adjusted(area.height(), heightFactor)});
    return grabRelative(area);
}

QImage ScreenGrabbing::CaptureActiveWindow()
{
    const QRect window = m_screen.foregroundWindow();
    if (window.intersected(m_screen.desktop()).isEmpty())
        return CaptureScreen();
    const QImage picture = grabRelative(window);
    if (picture.isNull())
        return CaptureScreen();
    WideWindow = isWideWindow(window.width(), desktop().width(), m_state.AppOptions.BigPicSize);
    return picture;
}

QImage ScreenGrabbing::grabRelative(const QRect &area)
{
    QImage picture = CaptureWindow(area);
    if (picture.isNull())
        return picture;
    // The picture begins where the area meets the desktop, and so do positions inside it.
    const QPoint origin = area.intersected(m_screen.desktop()).topLeft();
    m_state.PointerX -= origin.x();
    m_state.PointerY -= origin.y();
    if (m_state.RightClickPending) {
        m_state.RightClickX -= origin.x();
        m_state.RightClickY -= origin.y();
    }
    return picture;
}
