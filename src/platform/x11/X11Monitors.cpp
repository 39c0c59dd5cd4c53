#include "platform/x11/X11Monitors.h"

#include <xcb/randr.h>

#include <string_view>

namespace
{
std::vector<QRect> fromMonitors(const X11Connection &connection)
{
    const auto answer = connection.reply(xcb_randr_get_monitors_reply,
                                         xcb_randr_get_monitors(connection.get(), connection.root(), 1));
    std::vector<QRect> rectangles;
    if (!answer)
        return rectangles;
    auto monitor = xcb_randr_get_monitors_monitors_iterator(answer.get());
    for (; monitor.rem > 0; xcb_randr_monitor_info_next(&monitor))
        rectangles.emplace_back(monitor.data->x, monitor.data->y, monitor.data->width, monitor.data->height);
    return rectangles;
}

std::vector<QRect> fromControllers(const X11Connection &connection)
{
    const auto resources =
        connection.reply(xcb_randr_get_screen_resources_reply,
                         xcb_randr_get_screen_resources(connection.get(), connection.root()));
    std::vector<QRect> rectangles;
    if (!resources)
        return rectangles;
    const xcb_randr_crtc_t *controllers = xcb_randr_get_screen_resources_crtcs(resources.get());
    for (int i = 0; i < resources->num_crtcs; ++i) {
        const auto info = connection.reply(
            xcb_randr_get_crtc_info_reply,
            xcb_randr_get_crtc_info(connection.get(), controllers[i], resources->config_timestamp));
        if (info && info->mode != XCB_NONE)
            rectangles.emplace_back(info->x, info->y, info->width, info->height);
    }
    return rectangles;
}
} // namespace

std::vector<QRect> monitorRectangles(const X11Connection &connection)
{
    if (!connection.hasExtension(&xcb_randr_id))
        return {};
    const auto version =
        connection.reply(xcb_randr_query_version_reply, xcb_randr_query_version(connection.get(), 1, 5));
    if (!version || version->major_version < 1)
        return {};
    const auto minor = version->major_version > 1 ? 5 : version->minor_version;
    std::vector<QRect> rectangles;
    if (minor >= 5)
        rectangles = fromMonitors(connection);
    if (rectangles.empty() && minor >= 2)
        rectangles = fromControllers(connection);
    std::erase_if(rectangles, [](const QRect &rectangle) { return rectangle.isEmpty(); });
    return rectangles;
}

bool isServerOfWaylandSession(const X11Connection &connection)
{
    constexpr std::string_view name = "XWAYLAND";
    const auto extension = connection.reply(
        xcb_query_extension_reply,
        xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()), name.data()));
    if (extension && extension->present)
        return true;
    if (!connection.hasExtension(&xcb_randr_id))
        return false;
    const auto resources =
        connection.reply(xcb_randr_get_screen_resources_current_reply,
                         xcb_randr_get_screen_resources_current(connection.get(), connection.root()));
    if (!resources)
        return false;
    const xcb_randr_output_t *outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    for (int i = 0; i < resources->num_outputs; ++i) {
        const auto info = connection.reply(
            xcb_randr_get_output_info_reply,
            xcb_randr_get_output_info(connection.get(), outputs[i], resources->config_timestamp));
        if (info &&
            std::string_view(reinterpret_cast<const char *>(xcb_randr_get_output_info_name(info.get())),
                             info->name_len)
                .starts_with(name))
            return true;
    }
    return false;
}
