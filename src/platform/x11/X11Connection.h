#pragma once

#include <QDeadlineTimer>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

/// Frees what libxcb hands out with malloc.
struct X11Free {
    void operator()(void *memory) const noexcept { std::free(memory); }
};

/// A reply or an event of the server. Null replies mean: an error, a window that has gone, a lost server.
template <typename T>
using X11Owned = std::unique_ptr<T, X11Free>;

/// An own connection to the X server, apart from Qt's. Replies hold up the caller while another client has
/// grabbed the server. Not for use on several threads at once.
class X11Connection
{
public:
    /// Connects to $DISPLAY. Throws RunTimeError with a sentence for the user when there is no X display.
    X11Connection();

    xcb_connection_t *get() const noexcept { return m_connection.get(); }
    const xcb_screen_t &screen() const noexcept { return *m_screen; }
    xcb_window_t root() const noexcept { return m_screen->root; }
    int fileDescriptor() const noexcept { return xcb_get_file_descriptor(get()); }
    /// True for good once the server has gone.
    bool lost() const noexcept { return xcb_connection_has_error(get()) != 0; }
    void flush() const noexcept { xcb_flush(get()); }

    bool hasExtension(xcb_extension_t *extension) const noexcept;

    /// Waits for the reply of a request: `reply(xcb_get_geometry_reply, xcb_get_geometry(...))`.
    template <typename Reply, typename Cookie>
    X11Owned<Reply> reply(Reply *(*wait)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
                          Cookie cookie) const
    {
        return X11Owned<Reply>(wait(get(), cookie, nullptr));
    }

    /// Waits until the server has dealt with a checked request; false when it refused.
    bool accepted(xcb_void_cookie_t cookie) const;

    /// The next event that has arrived, null when there is none.
    X11Owned<xcb_generic_event_t> pollEvent() const;

    /// Waits until something arrives that has not been read yet; false when `limit` passes before. Returns
    /// at once, true, when the server has gone.
    bool waitReadable(QDeadlineTimer limit) const;

    /// XCB_ATOM_NONE when the server cannot make it.
    xcb_atom_t atom(const char *name) const;

    /// The 32-bit values of a window's property, at most `limit`; empty when it is missing, has another type
    /// or the window has gone.
    std::vector<std::uint32_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                        std::uint32_t limit) const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const noexcept { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    const xcb_screen_t *m_screen = nullptr; ///< lives in the connection
};
