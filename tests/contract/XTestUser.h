#pragma once

#include "platform/x11/TimeStamp.h"
#include "platform/x11/X11Connection.h"

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <QPoint>

/// A user at mouse and keyboard of the test's display, by way of the XTEST extension. Under the pointer lies
/// an own window over the whole screen, which also has the keyboard, so that nothing else reacts.
///
/// Every operation has happened on the display when it returns, unless `waits` is false.
class XTestUser
{
public:
    XTestUser()
    {
        xcb_connection_t *c = m_connection.get();
        m_pad = xcb_generate_id(c);
        const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
        const xcb_screen_t &screen = m_connection.screen();
        xcb_create_window(c, XCB_COPY_FROM_PARENT, m_pad, screen.root, 0, 0, screen.width_in_pixels,
                          screen.height_in_pixels, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(c, m_pad);
        xcb_set_input_focus(c, XCB_INPUT_FOCUS_POINTER_ROOT, m_pad, XCB_CURRENT_TIME);
        finish();
    }

    bool waits = true; ///< an answer to this user makes the server hand out what it has recorded, too

    const X11Connection &connection() const { return m_connection; }
    xcb_window_t pad() const { return m_pad; }
    void finish() const
    {
        m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.get()));
    }

    void moveTo(QPoint point) { fake(XCB_MOTION_NOTIFY, 0, point); }
    void pressButton(int xButton) { fake(XCB_BUTTON_PRESS, xButton); }
    void releaseButton(int xButton) { fake(XCB_BUTTON_RELEASE, xButton); }
    void click(int xButton)
    {
        pressButton(xButton);
        releaseButton(xButton);
    }
    void pressKey(xcb_keysym_t symbol) { fake(XCB_KEY_PRESS, keyOf(symbol)); }
    void releaseKey(xcb_keysym_t symbol) { fake(XCB_KEY_RELEASE, keyOf(symbol)); }
    void type(xcb_keysym_t symbol)
    {
        pressKey(symbol);
        releaseKey(symbol);
    }

    /// A stamp not before that of anything done so far, and before that of anything done later.
    std::uint32_t stamp()
    {
        const std::uint32_t now = serverTime();
        while (!isLater(serverTime(), now)) {
        }
        return now;
    }

    xcb_keycode_t keyOf(xcb_keysym_t symbol) const
    {
        struct Free {
            void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
        };
        const std::unique_ptr<xcb_key_symbols_t, Free> symbols(xcb_key_symbols_alloc(m_connection.get()));
        const X11Owned<xcb_keycode_t> keys(xcb_key_symbols_get_keycode(symbols.get(), symbol));
        return keys ? *keys : xcb_keycode_t{0};
    }

private:
    void fake(int type, int detail, QPoint point = {})
    {
        xcb_test_fake_input(m_connection.get(), static_cast<std::uint8_t>(type),
                            static_cast<std::uint8_t>(detail), XCB_CURRENT_TIME, m_connection.root(),
                            static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()), 0);
        m_connection.flush();
        if (waits)
            finish();
    }

    std::uint32_t serverTime()
    {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_APPEND, m_pad, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, 0, nullptr);
        m_connection.flush();
        while (const X11Owned<xcb_generic_event_t> event{xcb_wait_for_event(m_connection.get())}) {
            if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
                return reinterpret_cast<const xcb_property_notify_event_t &>(*event).time;
        }
        return 0;
    }

    X11Connection m_connection;
    xcb_window_t m_pad = 0;
};
