#include "platform/x11/X11Screen.h"

#include "platform/x11/OpaquePixels.h"
#include "platform/x11/X11Monitors.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto pictureInterval = 15ms;
/// Longer than a window manager's animation pauses between two steps.
constexpr auto restTime = 120ms;

bool askForCursors(const X11Connection &connection)
{
    // The server refuses every other request of the extension before this one.
    return connection.hasExtension(&xcb_xfixes_id) &&
           connection.reply(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(connection.get(), 4, 0));
}

/// Squared; 0 inside.
qint64 distance(const QRect &rectangle, QPoint point)
{
    const qint64 x = std::clamp(point.x(), rectangle.left(), rectangle.right()) - point.x();
    const qint64 y = std::clamp(point.y(), rectangle.top(), rectangle.bottom()) - point.y();
    return x * x + y * y;
}

bool sameBytes(const QImage &a, const QImage &b)
{
    return a.size() == b.size() &&
           std::memcmp(a.constBits(), b.constBits(), static_cast<std::size_t>(a.sizeInBytes())) == 0;
}

} // namespace

X11Screen::X11Screen()
    : m_pixels(m_connection), m_windows(m_connection), m_tellsCursor(askForCursors(m_connection))
{
}

QRect X11Screen::desktop() const
{
    // Not what the connection's set-up says: that keeps the size of the time when it was made.
    const auto geometry =
        m_connection.reply(xcb_get_geometry_reply, xcb_get_geometry(m_connection.get(), m_connection.root()));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

QRect X11Screen::monitorAt(QPoint point) const
{
    const std::vector<QRect> monitors = monitorRectangles(m_connection);
    if (monitors.empty())
        return desktop();
    return *std::min_element(monitors.begin(), monitors.end(), [point](const QRect &a, const QRect &b) {
        return distance(a, point) < distance(b, point);
    });
}

QPoint X11Screen::pointerPosition() const
{
    const auto pointer = m_connection.reply(xcb_query_pointer_reply,
                                            xcb_query_pointer(m_connection.get(), m_connection.root()));
    return pointer ? QPoint(pointer->root_x, pointer->root_y) : QPoint();
}

QRect X11Screen::foregroundWindow() const
{
    return m_windows.foreground();
}

QImage X11Screen::grab(const QRect &area)
{
    const QRect root = desktop();
    const QRect visible = area & root;
    const std::uint32_t *pixels = m_pixels.read(visible, root.size());
    if (pixels == nullptr)
        return {};
    QImage picture(visible.size(), QImage::Format_RGB32);
    if (!picture.isNull())
        copyOpaque(pixels, reinterpret_cast<std::uint32_t *>(picture.bits()),
                   static_cast<std::size_t>(picture.sizeInBytes()) / sizeof(std::uint32_t));
    return picture;
}

CursorShape X11Screen::cursorShape() const
{
    if (!m_tellsCursor)
        return {};
    const auto cursor = m_connection.reply(xcb_xfixes_get_cursor_image_reply,
                                           xcb_xfixes_get_cursor_image(m_connection.get()));
    if (!cursor || cursor->width == 0 || cursor->height == 0)
        return {};
    const auto *pixels =
        reinterpret_cast<const uchar *>(xcb_xfixes_get_cursor_image_cursor_image(cursor.get()));
    const QImage image(pixels, cursor->width, cursor->height, cursor->width * 4,
                       QImage::Format_ARGB32_Premultiplied);
    return {image.copy(), QPoint(cursor->xhot, cursor->yhot)};
}

void X11Screen::waitUntilMinimised(std::uint32_t window, int limitMilliseconds)
{
    const QDeadlineTimer limit(limitMilliseconds);
    m_windows.watch(window, true);
    while (!m_windows.isAway(window) && !limit.hasExpired()) {
        // What has happened meanwhile may have been read together with the answers.
        if (!m_connection.pollEvent())
            m_connection.waitReadable(limit);
    }
    m_windows.watch(window, false);
    waitUntilAtRest(limit);
}

void X11Screen::waitUntilAtRest(QDeadlineTimer limit)
{
    QImage last = grab(desktop());
    QDeadlineTimer rest(restTime);
    while (!last.isNull() && !rest.hasExpired() && !limit.hasExpired()) {
        m_connection.waitReadable(QDeadlineTimer(pictureInterval));
        while (m_connection.pollEvent()) {
        }
        QImage now = grab(desktop());
        if (sameBytes(now, last))
            continue;
        last = std::move(now);
        rest.setRemainingTime(restTime);
    }
}
