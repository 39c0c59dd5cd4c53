#include "platform/x11/X11Windows.h"

namespace
{
// Values of the property WM_STATE.
constexpr std::uint32_t withdrawnState = 0;
constexpr std::uint32_t iconicState = 3;

/// More levels than this are no frame but a loop of windows that come and go.
constexpr int mostLevels = 32;
} // namespace

X11Windows::X11Windows(const X11Connection &connection)
    : m_connection(connection), m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW")),
      m_frameExtents(connection.atom("_NET_FRAME_EXTENTS")),
      m_shadowExtents(connection.atom("_GTK_FRAME_EXTENTS")), m_state(connection.atom("WM_STATE"))
{
}

QRect X11Windows::foreground() const
{
    const auto active = m_connection.property(m_connection.root(), m_activeWindow, XCB_ATOM_WINDOW, 1);
    if (active.empty() || active.front() == XCB_WINDOW_NONE)
        return {};
    const xcb_window_t window = active.front();
    const auto frame = topLevel(window);
    if (!frame || mapState(*frame) != XCB_MAP_STATE_VIEWABLE)
        return {};

    const auto decoration = extents(window, m_frameExtents);
    QRect seen = rectangle(*frame);
    if (decoration) {
        const QRect decorated = rectangle(window) + *decoration;
        // A frame may have an invisible border for the mouse, which the extents leave out.
        seen = *frame == window ? decorated : seen & decorated;
    }
    const auto shadow = extents(window, m_shadowExtents);
    if (shadow && (!decoration || decoration->isNull()))
        seen -= *shadow;
    return seen.isEmpty() ? QRect() : seen;
}

bool X11Windows::isAway(xcb_window_t window) const
{
    const auto state = m_connection.property(window, m_state, m_state, 1);
    if (!state.empty() && (state.front() == iconicState || state.front() == withdrawnState))
        return true;
    const auto mapped = mapState(window);
    return !mapped || *mapped == XCB_MAP_STATE_UNMAPPED;
}

void X11Windows::watch(xcb_window_t window, bool on) const
{
    const std::uint32_t events = on ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0;
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &events);
    m_connection.flush();
}

std::optional<xcb_window_t> X11Windows::topLevel(xcb_window_t window) const
{
    for (int level = 0; level < mostLevels; ++level) {
        const auto tree =
            m_connection.reply(xcb_query_tree_reply, xcb_query_tree(m_connection.get(), window));
        if (!tree || tree->parent == XCB_WINDOW_NONE)
            return std::nullopt;
        if (tree->parent == tree->root)
            return window;
        window = tree->parent;
    }
    return std::nullopt;
}

std::optional<std::uint8_t> X11Windows::mapState(xcb_window_t window) const
{
    const auto attributes = m_connection.reply(xcb_get_window_attributes_reply,
                                               xcb_get_window_attributes(m_connection.get(), window));
    if (!attributes)
        return std::nullopt;
    return attributes->map_state;
}

/// The window's border included, in root coordinates. Empty when the window has gone.
QRect X11Windows::rectangle(xcb_window_t window) const
{
    const auto size =
        m_connection.reply(xcb_get_geometry_reply, xcb_get_geometry(m_connection.get(), window));
    const auto corner =
        m_connection.reply(xcb_translate_coordinates_reply,
                           xcb_translate_coordinates(m_connection.get(), window, m_connection.root(), 0, 0));
    if (!size || !corner)
        return {};
    const int border = size->border_width;
    return QRect(corner->dst_x, corner->dst_y, size->width, size->height) +
           QMargins(border, border, border, border);
}

std::optional<QMargins> X11Windows::extents(xcb_window_t window, xcb_atom_t name) const
{
    const auto values = m_connection.property(window, name, XCB_ATOM_CARDINAL, 4);
    if (values.size() != 4)
        return std::nullopt;
    // Both properties give left, right, top, bottom.
    const auto side = [&values](std::size_t i) { return static_cast<int>(values[i]); };
    return QMargins(side(0), side(2), side(1), side(3));
}
