#pragma once

#include "platform/x11/X11Connection.h"

#include <array>
#include <cstdint>
#include <vector>

/// The keyboard's layout at the time it was read: which virtual key each key stands for and which modifiers
/// it sets. Read it again after a MappingNotify.
class X11Keyboard
{
public:
    explicit X11Keyboard(const X11Connection &connection) { read(connection); }

    /// Keeps what it had where the server does not answer.
    void read(const X11Connection &connection);

    /// See VirtualKeys.h; 0 for keys that have none. Taken from what the key types without modifiers.
    int virtualKey(xcb_keycode_t key) const noexcept { return m_virtualKeys[key]; }
    /// Empty when no key of this keyboard stands for it.
    std::vector<xcb_keycode_t> keysFor(int virtualKey) const;

    /// InputEvent::Shift bits that are set while the key is held.
    int shiftBits(xcb_keycode_t key) const noexcept;

    std::uint16_t altMask() const noexcept { return m_altMask; }
    /// Every modifier that stays on without a key being held: CapsLock, NumLock, ScrollLock.
    std::uint16_t lockMask() const noexcept { return m_lockMask; }

private:
    std::array<std::uint8_t, 256> m_virtualKeys{};
    std::array<std::uint8_t, 256> m_modifiers{}; ///< X modifier masks that each key sets
    std::uint16_t m_altMask = XCB_MOD_MASK_1;
    std::uint16_t m_lockMask = XCB_MOD_MASK_LOCK;
};
