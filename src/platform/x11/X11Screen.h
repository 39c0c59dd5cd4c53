#pragma once

#include "platform/Screen.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11RootPixels.h"
#include "platform/x11/X11Windows.h"

#include <QDeadlineTimer>

/// The X display seen through an own connection. Does without MIT-SHM, RandR and XFixes where they are
/// missing. Waiting blocks the calling thread.
class X11Screen : public Screen
{
public:
    /// Throws RunTimeError with a sentence for the user when there is no X display.
    X11Screen();

    QRect desktop() const override;
    QRect monitorAt(QPoint point) const override;
    QPoint pointerPosition() const override;
    QRect foregroundWindow() const override;
    QImage grab(const QRect &area) override;
    CursorShape cursorShape() const override;
    void waitUntilMinimised(std::uint32_t window, int limitMilliseconds) override;
    void waitUntilAtRest(int limitMilliseconds) override
    {
        waitUntilAtRest(QDeadlineTimer(limitMilliseconds));
    }

private:
    void waitUntilAtRest(QDeadlineTimer limit);

    X11Connection m_connection;
    X11RootPixels m_pixels;
    X11Windows m_windows;
    bool m_tellsCursor;
};
