#pragma once

#include "platform/Screen.h"

#include <chrono>
#include <memory>

/// The screen of a Wayland session, which shows it to no program but takes pictures through its portal.
///
/// Every picture is one of the whole screen with all monitors, in its own pixels; a scaled session gives more
/// or fewer of them than its X server counts. Coordinates are those of the last picture, and before the first
/// one those of `display`: desktop() grows or shrinks with a grab. There are no monitors, no foreground
/// window and no pointer: what asks for them gets the whole screen.
class PortalScreen : public Screen
{
public:
    /// `display` knows the X windows of the session, our own among them; it is not asked for pictures.
    /// `limit` is for a desktop that does not answer; it may have asked the user.
    explicit PortalScreen(std::unique_ptr<Screen> display,
                          std::chrono::milliseconds limit = std::chrono::minutes(5));

    QRect desktop() const override;
    QRect monitorAt(QPoint) const override { return desktop(); }
    QPoint pointerPosition() const override { return {}; }
    QRect foregroundWindow() const override { return {}; }

    /// An `area` that holds desktop() gives the whole picture, whatever size it turns out to have; any other
    /// is clipped to it. Runs the event loop meanwhile. Throws RunTimeError, with a sentence for the user,
    /// where the desktop takes no picture, also when the user has cancelled it.
    ///
    /// The file of the picture is removed if the desktop has put it into the folder for temporary files;
    /// anywhere else (often ~/Pictures) the user finds it there and it stays.
    QImage grab(const QRect &area) override;

    CursorShape cursorShape() const override { return {}; }
    void waitUntilMinimised(std::uint32_t window, int limitMilliseconds) override;
    void waitUntilAtRest(int limitMilliseconds) override { m_display->waitUntilAtRest(limitMilliseconds); }

private:
    std::unique_ptr<Screen> m_display;
    std::chrono::milliseconds m_limit;
    QSize m_pictureSize; ///< of the last picture
};
