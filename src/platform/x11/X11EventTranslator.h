#pragma once

#include "platform/InputHook.h"
#include "platform/x11/X11Keyboard.h"

#include <bitset>
#include <functional>
#include <optional>

/// Turns recorded core events into input events: numbers keys and buttons, keeps track of modifiers and of
/// the pointer, drops wheel turns and the repeats of a held key.
///
/// A recorded release may be the first half of a repeat, so it is held back until the next event, or the
/// caller by passHeldBack(), tells.
class X11EventTranslator
{
public:
    using Sink = std::function<void(const InputEvent &)>;

    X11EventTranslator(const X11Keyboard &keyboard, Sink sink);

    /// The state at the beginning: where the pointer is and which keys are down.
    void begin(QPoint pointer, const std::bitset<256> &keysDown);

    /// `record` is any of the five core device events: they have the same layout.
    void add(const xcb_key_press_event_t &record);

    bool holdsBack() const noexcept { return m_heldBack.has_value(); }
    void passHeldBack();

private:
    struct HeldBack {
        xcb_keycode_t key;
        std::uint32_t time;
    };

    void pressKey(xcb_keycode_t key, std::uint32_t time);
    void emitKey(InputEvent::Kind kind, xcb_keycode_t key, std::uint32_t time);
    void emitPointer(InputEvent::Kind kind, int button, std::uint32_t time);
    int shift() const;

    const X11Keyboard &m_keyboard;
    Sink m_sink;
    QPoint m_pointer;
    std::bitset<256> m_keysDown;
    std::optional<HeldBack> m_heldBack;
};
