#include "platform/x11/X11DisplayModes.h"

#include <QRect>

#include <xcb/randr.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace
{
constexpr double dotsPerInch = 96;
constexpr double millimetresPerInch = 25.4;

using Resources = X11Owned<xcb_randr_get_screen_resources_current_reply_t>;

/// An output and the controller that feeds it.
struct Monitor {
    xcb_randr_output_t output = XCB_NONE;
    xcb_randr_crtc_t controller = XCB_NONE;
    QRect place;
    std::uint16_t rotation = XCB_RANDR_ROTATION_ROTATE_0;
    std::vector<xcb_randr_mode_t> modes; ///< the best first
};

std::optional<Monitor> monitorOf(const X11Connection &connection, const Resources &resources,
                                 xcb_randr_output_t output)
{
    const auto info =
        connection.reply(xcb_randr_get_output_info_reply,
                         xcb_randr_get_output_info(connection.get(), output, resources->config_timestamp));
    if (!info || info->crtc == XCB_NONE)
        return std::nullopt;
    const auto controller =
        connection.reply(xcb_randr_get_crtc_info_reply,
                         xcb_randr_get_crtc_info(connection.get(), info->crtc, resources->config_timestamp));
    if (!controller || controller->mode == XCB_NONE)
        return std::nullopt;
    const xcb_randr_mode_t *modes = xcb_randr_get_output_info_modes(info.get());
    return Monitor{output,
                   info->crtc,
                   {controller->x, controller->y, controller->width, controller->height},
                   controller->rotation,
                   {modes, modes + xcb_randr_get_output_info_modes_length(info.get())}};
}

Resources resourcesOf(const X11Connection &connection)
{
    if (!connection.hasExtension(&xcb_randr_id))
        return nullptr;
    const auto version =
        connection.reply(xcb_randr_query_version_reply, xcb_randr_query_version(connection.get(), 1, 3));
    if (!version || version->major_version != 1 || version->minor_version < 3)
        return nullptr;
    return connection.reply(xcb_randr_get_screen_resources_current_reply,
                            xcb_randr_get_screen_resources_current(connection.get(), connection.root()));
}

/// Those that show something, the primary one first.
std::vector<Monitor> monitorsOf(const X11Connection &connection, const Resources &resources)
{
    const auto primary = connection.reply(xcb_randr_get_output_primary_reply,
                                          xcb_randr_get_output_primary(connection.get(), connection.root()));
    std::vector<Monitor> monitors;
    const xcb_randr_output_t *outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    for (int i = 0; i < resources->num_outputs; ++i) {
        auto monitor = monitorOf(connection, resources, outputs[i]);
        if (!monitor)
            continue;
        const bool first = primary && primary->output == outputs[i];
        monitors.insert(first ? monitors.begin() : monitors.end(), std::move(*monitor));
    }
    return monitors;
}

bool isTurned(const Monitor &monitor)
{
    return (monitor.rotation & (XCB_RANDR_ROTATION_ROTATE_90 | XCB_RANDR_ROTATION_ROTATE_270)) != 0;
}

xcb_randr_mode_t modeOf(const Resources &resources, const Monitor &monitor, QSize size)
{
    const QSize wanted = isTurned(monitor) ? size.transposed() : size;
    for (const xcb_randr_mode_t mode : monitor.modes) {
        const xcb_randr_mode_info_t *infos = xcb_randr_get_screen_resources_current_modes(resources.get());
        for (int i = 0; i < resources->num_modes; ++i) {
            if (infos[i].id == mode && wanted == QSize(infos[i].width, infos[i].height))
                return mode;
        }
    }
    return XCB_NONE;
}

bool setController(const X11Connection &connection, const Resources &resources, const Monitor &monitor,
                   xcb_randr_mode_t mode)
{
    const auto answer = connection.reply(
        xcb_randr_set_crtc_config_reply,
        xcb_randr_set_crtc_config(connection.get(), monitor.controller, XCB_CURRENT_TIME,
                                  resources->config_timestamp, static_cast<std::int16_t>(monitor.place.x()),
                                  static_cast<std::int16_t>(monitor.place.y()), mode, monitor.rotation,
                                  mode == XCB_NONE ? 0 : 1, &monitor.output));
    return answer && answer->status == XCB_RANDR_SET_CONFIG_SUCCESS;
}

bool setScreen(const X11Connection &connection, QSize size)
{
    const auto millimetres = [](int pixels) {
        return static_cast<std::uint32_t>(pixels / dotsPerInch * millimetresPerInch);
    };
    return connection.accepted(xcb_randr_set_screen_size_checked(
        connection.get(), connection.root(), static_cast<std::uint16_t>(size.width()),
        static_cast<std::uint16_t>(size.height()), millimetres(size.width()), millimetres(size.height())));
}

xcb_randr_mode_t currentMode(const X11Connection &connection, const Resources &resources,
                             const Monitor &monitor)
{
    const auto info = connection.reply(
        xcb_randr_get_crtc_info_reply,
        xcb_randr_get_crtc_info(connection.get(), monitor.controller, resources->config_timestamp));
    return info ? info->mode : XCB_NONE;
}
} // namespace

QSize X11DisplayModes::desktopSize() const
{
    const Resources resources = resourcesOf(m_connection);
    if (!resources)
        return {};
    const std::vector<Monitor> monitors = monitorsOf(m_connection, resources);
    return monitors.empty() ? QSize() : monitors.front().place.size();
}

bool X11DisplayModes::offers(QSize size) const
{
    const Resources resources = resourcesOf(m_connection);
    if (!resources)
        return false;
    const std::vector<Monitor> monitors = monitorsOf(m_connection, resources);
    return !monitors.empty() && modeOf(resources, monitors.front(), size) != XCB_NONE;
}

/// Nobody sees the steps between: the server is held. A controller that would reach out of the new screen is
/// off while the screen shrinks.
DisplayModes::Change X11DisplayModes::change(QSize size)
{
    const Resources resources = resourcesOf(m_connection);
    if (!resources)
        return Change::Refused;
    const std::vector<Monitor> monitors = monitorsOf(m_connection, resources);
    if (monitors.empty())
        return Change::Refused;
    const Monitor &monitor = monitors.front();
    if (monitor.place.size() == size)
        return Change::Done;
    const xcb_randr_mode_t mode = modeOf(resources, monitor, size);
    if (mode == XCB_NONE)
        return Change::Refused;
    QRect before = monitor.place;
    QRect after(monitor.place.topLeft(), size);
    for (const Monitor &other : monitors) {
        before |= other.place;
        if (&other != &monitor)
            after |= other.place;
    }
    const QSize screenBefore(before.right() + 1, before.bottom() + 1);
    const QSize screenAfter(after.right() + 1, after.bottom() + 1);
    const xcb_randr_mode_t modeBefore = currentMode(m_connection, resources, monitor);

    xcb_grab_server(m_connection.get());
    bool done = setController(m_connection, resources, monitor, XCB_NONE) &&
                setScreen(m_connection, screenAfter) && setController(m_connection, resources, monitor, mode);
    if (!done) {
        setScreen(m_connection, screenBefore);
        setController(m_connection, resources, monitor, modeBefore);
    }
    xcb_ungrab_server(m_connection.get());
    m_connection.flush();
    return done ? Change::Done : Change::Refused;
}
