#pragma once

#include "platform/x11/X11Connection.h"

#include <xcb/shm.h>

#include <QRect>

#include <cstddef>

/// Reads pixels of the root window, 32 bits each, blue first: through one piece of memory shared with the
/// server (MIT-SHM) where that works, else through the connection.
class X11RootPixels
{
public:
    /// `connection` must outlive this.
    explicit X11RootPixels(const X11Connection &connection);
    ~X11RootPixels();

    X11RootPixels(const X11RootPixels &) = delete;
    X11RootPixels &operator=(const X11RootPixels &) = delete;

    /// The pixels inside `area`, row after row, valid until the next call; the alpha byte is undefined.
    /// `area` must lie on the root window, which has the size `root`. Null when the display refuses or keeps
    /// its pixels in another form.
    const std::uint32_t *read(const QRect &area, QSize root);

private:
    struct Unmap {
        void operator()(void *memory) const noexcept;
    };

    bool share(std::size_t bytes);
    void unshare();

    const X11Connection &m_connection;
    bool m_understood; ///< the display keeps its pixels in the form that is wanted here
    bool m_mayShare;
    std::unique_ptr<void, Unmap> m_memory;
    std::size_t m_size = 0;
    xcb_shm_seg_t m_segment = 0;
    X11Owned<xcb_get_image_reply_t> m_reply; ///< holds the pixels when memory is not shared
};
