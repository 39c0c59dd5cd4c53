#include "platform/x11/X11Connection.h"

#include "platform/RunTimeError.h"

#include <poll.h>

#include <cstring>

namespace
{
const xcb_screen_t *screenNumber(xcb_connection_t *connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}
} // namespace

X11Connection::X11Connection()
{
    int preferredScreen = 0;
    m_connection.reset(xcb_connect(nullptr, &preferredScreen));
    if (!lost())
        m_screen = screenNumber(get(), preferredScreen);
    if (m_screen == nullptr)
        throw RunTimeError(RunTimeError::CannotCreateObject,
                           QStringLiteral("There is no X display that Shotly could watch and take pictures "
                                          "of. Please start it inside an X11 session."));
}

bool X11Connection::hasExtension(xcb_extension_t *extension) const noexcept
{
    const xcb_query_extension_reply_t *data = xcb_get_extension_data(get(), extension);
    return data != nullptr && data->present != 0;
}

bool X11Connection::accepted(xcb_void_cookie_t cookie) const
{
    const X11Owned<xcb_generic_error_t> error(xcb_request_check(get(), cookie));
    return !error && !lost();
}

X11Owned<xcb_generic_event_t> X11Connection::pollEvent() const
{
    return X11Owned<xcb_generic_event_t>(xcb_poll_for_event(get()));
}

bool X11Connection::waitReadable(QDeadlineTimer limit) const
{
    pollfd file{fileDescriptor(), POLLIN, 0};
    return ::poll(&file, 1, static_cast<int>(limit.remainingTime())) > 0;
}

xcb_atom_t X11Connection::atom(const char *name) const
{
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const auto answer = reply(xcb_intern_atom_reply, xcb_intern_atom(get(), 0, length, name));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::vector<std::uint32_t> X11Connection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                   std::uint32_t limit) const
{
    const auto answer =
        reply(xcb_get_property_reply, xcb_get_property(get(), 0, window, name, type, 0, limit));
    if (!answer || answer->format != 32)
        return {};
    const auto *values = static_cast<const std::uint32_t *>(xcb_get_property_value(answer.get()));
    return {values, values + answer->value_len};
}
