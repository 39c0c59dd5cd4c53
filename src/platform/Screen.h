#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

#include <cstdint>

/// The pointer's present shape.
struct CursorShape {
    QImage image;   ///< Format_ARGB32_Premultiplied; null where the display does not tell
    QPoint hotSpot; ///< the pixel of `image` that lies on the pointer position
};

/// What can be seen on the display. All coordinates are physical pixels of the whole desktop (the root
/// window), top left (0, 0), never Qt's scaled ones.
///
/// Owned by Main, used on the main thread only. Failures of single calls are not thrown: a window that has
/// gone counts as none, a rectangle that cannot be grabbed gives a null image. Only where the session must be
/// asked for a picture and gives none does grab() throw.
class Screen
{
public:
    virtual ~Screen() = default;

    /// The whole desktop, all monitors.
    virtual QRect desktop() const = 0;

    /// The monitor that holds `point`; the nearest one when none does; the whole desktop when the display
    /// has no monitors information.
    virtual QRect monitorAt(QPoint point) const = 0;

    /// Where the pointer is now.
    virtual QPoint pointerPosition() const = 0;

    /// The active window's rectangle, its frame included, not clipped to the desktop. Empty (0 x 0) when no
    /// window is active.
    virtual QRect foregroundWindow() const = 0;

    /// What is seen inside `area`, clipped to the desktop: Format_RGB32, alpha bytes 0xff, device pixel
    /// ratio 1, owning its pixels. The pointer is never in the picture. Null when nothing of `area` is on
    /// the desktop or the display refuses.
    ///
    /// In a Wayland session: runs the event loop while the desktop, or the user whom it asks, decides, throws
    /// RunTimeError with a sentence for the user when there is no picture, and desktop() is the picture's
    /// size afterwards. An area that holds desktop() gives everything all the same.
    virtual QImage grab(const QRect &area) = 0;

    virtual CursorShape cursorShape() const = 0;

    /// Waits until the window manager has minimised `window` and the screen has stopped changing (window
    /// managers animate), at most `limitMilliseconds`.
    virtual void waitUntilMinimised(std::uint32_t window, int limitMilliseconds) = 0;

    /// Waits until the screen has stopped changing, at most `limitMilliseconds`.
    virtual void waitUntilAtRest(int limitMilliseconds) = 0;
};
