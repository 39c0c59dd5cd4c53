#pragma once

#include "platform/Screen.h"
#include "state/Module1.h"

/// Turns what is on the screen into pictures, and keeps the pointer position of the program-wide state
/// relative to the picture last grabbed. Only grabs: naming and saving is SnapshotFiles' work.
///
/// Rectangles are physical pixels. Displays of this platform are true colour, so no picture carries a
/// palette. References must outlive it; main thread only.
class ScreenGrabbing
{
public:
    ScreenGrabbing(Module1 &state, Screen &screen);

    /// The monitor that whole-screen pictures show is the one that holds `point`, where the pointer's last
    /// event fell.
    void setLastPointer(QPoint point) { m_lastPointer = point; }

    /// As if the last event of the pointer had been where it is now.
    void followPointer() { setLastPointer(m_screen.pointerPosition()); }

    /// That monitor.
    QRect desktop() const;

    /// A rectangle of the desktop, clipped to it; null when nothing of it can be seen.
    QImage CaptureWindow(const QRect &area);

    QImage CaptureScreen();

    /// As CaptureScreen; on systems before XP sized for a display that was switched from 1024 or 1152 pixels
    /// of width, clipped to what there is.
    QImage CaptureScreenAdjust();

    /// The foreground window with its frame. Sets WideWindow. A window that has gone meanwhile gives the
    /// whole screen.
    QImage CaptureActiveWindow();

    bool WideWindow = false;

private:
    QImage grabRelative(const QRect &area);

    Module1 &m_state;
    Screen &m_screen;
    QPoint m_lastPointer;
};
