#pragma once

#include "platform/HotKeys.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Keyboard.h"

#include <QObject>
#include <QSocketNotifier>

#include <map>
#include <memory>
#include <optional>

/// Hot keys as passive key grabs on the root window. They do not fire while another program holds the whole
/// keyboard (an open menu, for instance). The handler must not throw.
class X11HotKeys : public QObject, public HotKeys
{
public:
    /// Throws RunTimeError with a sentence for the user when there is no X display.
    X11HotKeys();

    void setHandler(Handler handler) override { m_handler = std::move(handler); }
    bool registerKey(int id, Modifier modifier, int virtualKey) override;
    void unregisterKey(int id) override;

private:
    struct Combination {
        Modifier modifier;
        int virtualKey;
        bool operator==(const Combination &) const = default;
    };
    struct Released {
        xcb_keycode_t key;
        std::uint32_t time;
    };

    std::uint16_t maskOf(Modifier modifier) const;
    bool grab(const Combination &combination);
    void ungrab(const Combination &combination);
    void readEvents();
    void press(const xcb_key_press_event_t &event);
    void fire(int id, std::uint32_t time);
    void regrabAll();

    X11Connection m_connection;
    X11Keyboard m_keyboard;
    Handler m_handler;
    std::map<int, Combination> m_combinations;
    std::optional<Released> m_released; ///< the last release, until the next press
    QSocketNotifier m_notifier;
};
