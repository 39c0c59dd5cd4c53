#include "platform/x11/X11RootPixels.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cstring>

namespace
{
constexpr std::uint32_t allPlanes = 0xffffffff;

bool keepsBlueFirst(const X11Connection &connection)
{
    const xcb_setup_t *setup = xcb_get_setup(connection.get());
    const xcb_screen_t &screen = connection.screen();
    if (setup->image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST ||
        (screen.root_depth != 24 && screen.root_depth != 32))
        return false;
    bool wide = false;
    for (auto format = xcb_setup_pixmap_formats_iterator(setup); format.rem > 0; xcb_format_next(&format)) {
        if (format.data->depth == screen.root_depth)
            wide = format.data->bits_per_pixel == 32;
    }
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
        auto visual = xcb_depth_visuals_iterator(depth.data);
        for (; visual.rem > 0; xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == screen.root_visual)
                return wide && visual.data->red_mask == 0xff0000 && visual.data->blue_mask == 0xff;
        }
    }
    return false;
}

std::size_t bytesOf(QSize size)
{
    return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()) *
           sizeof(std::uint32_t);
}
} // namespace

void X11RootPixels::Unmap::operator()(void *memory) const noexcept
{
    ::shmdt(memory);
}

X11RootPixels::X11RootPixels(const X11Connection &connection)
    : m_connection(connection), m_understood(keepsBlueFirst(connection)),
      m_mayShare(connection.hasExtension(&xcb_shm_id))
{
}

X11RootPixels::~X11RootPixels()
{
    unshare();
}

const std::uint32_t *X11RootPixels::read(const QRect &area, QSize root)
{
    if (!m_understood || area.isEmpty())
        return nullptr;
    const auto x = static_cast<std::int16_t>(area.x());
    const auto y = static_cast<std::int16_t>(area.y());
    const auto width = static_cast<std::uint16_t>(area.width());
    const auto height = static_cast<std::uint16_t>(area.height());
    if (share(bytesOf(root))) {
        const auto answer =
            m_connection.reply(xcb_shm_get_image_reply,
                               xcb_shm_get_image(m_connection.get(), m_connection.root(), x, y, width, height,
                                                 allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0));
        return answer ? static_cast<const std::uint32_t *>(m_memory.get()) : nullptr;
    }
    m_reply = m_connection.reply(xcb_get_image_reply,
                                 xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                               m_connection.root(), x, y, width, height, allPlanes));
    if (!m_reply || static_cast<std::size_t>(xcb_get_image_data_length(m_reply.get())) < bytesOf(area.size()))
        return nullptr;
    return reinterpret_cast<const std::uint32_t *>(xcb_get_image_data(m_reply.get()));
}

bool X11RootPixels::share(std::size_t bytes)
{
    if (!m_mayShare || bytes <= m_size)
        return m_mayShare;
    unshare();
    m_mayShare = false; // unless all of it works: trying anew at every picture would be dear
    const int id = ::shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (id == -1)
        return false;
    if (void *memory = ::shmat(id, nullptr, 0); memory != reinterpret_cast<void *>(-1)) {
        m_memory.reset(memory);
        m_segment = xcb_generate_id(m_connection.get());
        m_mayShare = m_connection.accepted(
            xcb_shm_attach_checked(m_connection.get(), m_segment, static_cast<std::uint32_t>(id), 0));
    }
    // Both sides have it by now, and so it goes with the last of them, however that ends.
    ::shmctl(id, IPC_RMID, nullptr);
    if (!m_mayShare) {
        m_memory.reset();
        return false;
    }
    m_size = bytes;
    std::memset(m_memory.get(), 0, bytes); // the first touch of a page is dear: not at the first picture
    return true;
}

void X11RootPixels::unshare()
{
    if (!m_memory)
        return;
    xcb_shm_detach(m_connection.get(), m_segment);
    m_memory.reset();
    m_size = 0;
}
