#pragma once

#include "platform/x11/X11Connection.h"

#include <QMargins>
#include <QRect>

#include <optional>

/// What the window manager makes of other programs' windows. Windows may go at any moment: every question
/// about one that has gone is answered as for none.
class X11Windows
{
public:
    /// `connection` must outlive this.
    explicit X11Windows(const X11Connection &connection);

    /// The active window with its frame, in root coordinates, without the shadow that it may draw round
    /// itself. Empty when none is active or no window manager tells.
    QRect foreground() const;

    /// Whether `window` is iconic, withdrawn, not mapped or gone.
    bool isAway(xcb_window_t window) const;

    /// Begins or ends to let events tell of changes that isAway() may answer to.
    void watch(xcb_window_t window, bool on) const;

private:
    std::optional<xcb_window_t> topLevel(xcb_window_t window) const;
    std::optional<std::uint8_t> mapState(xcb_window_t window) const;
    QRect rectangle(xcb_window_t window) const;
    std::optional<QMargins> extents(xcb_window_t window, xcb_atom_t name) const;

    const X11Connection &m_connection;
    xcb_atom_t m_activeWindow;
    xcb_atom_t m_frameExtents;
    xcb_atom_t m_shadowExtents;
    xcb_atom_t m_state;
};
