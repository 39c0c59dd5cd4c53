#include "platform/x11/X11Keyboard.h"

#include "platform/InputHook.h"
#include "platform/VirtualKeys.h"

#include <xcb/xcb_keysyms.h>

#include <X11/keysym.h>

namespace
{
constexpr std::size_t modifierCount = 8;
constexpr std::uint16_t heldModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL;

struct FreeSymbols {
    void operator()(xcb_key_symbols_t *symbols) const noexcept { xcb_key_symbols_free(symbols); }
};

std::uint8_t virtualKeyOf(xcb_keysym_t symbol)
{
    const auto inRow = [symbol](xcb_keysym_t first, int code) {
        return static_cast<std::uint8_t>(static_cast<int>(symbol - first) + code);
    };
    if (symbol >= XK_a && symbol <= XK_z)
        return inRow(XK_a, VirtualKey::A);
    if (symbol >= XK_A && symbol <= XK_Z)
        return inRow(XK_A, VirtualKey::A);
    if (symbol >= XK_0 && symbol <= XK_9)
        return inRow(XK_0, VirtualKey::Digit0);
    if (symbol >= XK_F1 && symbol <= XK_F16)
        return inRow(XK_F1, VirtualKey::F1);
    switch (symbol) {
    case XK_Escape:
        return VirtualKey::Escape;
    case XK_Tab:
    case XK_ISO_Left_Tab:
        return VirtualKey::Tab;
    case XK_Return:
    case XK_KP_Enter:
        return VirtualKey::Return;
    default:
        return 0;
    }
}

bool isAlt(xcb_keysym_t symbol)
{
    return symbol == XK_Alt_L || symbol == XK_Alt_R || symbol == XK_Meta_L || symbol == XK_Meta_R;
}

bool isLock(xcb_keysym_t symbol)
{
    return symbol == XK_Num_Lock || symbol == XK_Scroll_Lock;
}
} // namespace

void X11Keyboard::read(const X11Connection &connection)
{
    const std::unique_ptr<xcb_key_symbols_t, FreeSymbols> symbols(xcb_key_symbols_alloc(connection.get()));
    const auto modifiers =
        connection.reply(xcb_get_modifier_mapping_reply, xcb_get_modifier_mapping(connection.get()));
    if (!symbols || !modifiers)
        return;
    const auto symbolOf = [&symbols](xcb_keycode_t key) {
        return xcb_key_symbols_get_keysym(symbols.get(), key, 0);
    };

    const xcb_setup_t &setup = *xcb_get_setup(connection.get());
    m_virtualKeys.fill(0);
    for (unsigned key = setup.min_keycode; key <= setup.max_keycode; ++key)
        m_virtualKeys[key] = virtualKeyOf(symbolOf(static_cast<xcb_keycode_t>(key)));

    m_modifiers.fill(0);
    std::uint16_t altMask = 0;
    m_lockMask = XCB_MOD_MASK_LOCK;
    const xcb_keycode_t *key = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (std::size_t modifier = 0; modifier < modifierCount; ++modifier) {
        const auto mask = static_cast<std::uint8_t>(1U << modifier);
        for (int i = 0; i < modifiers->keycodes_per_modifier; ++i, ++key) {
            if (*key == 0)
                continue;
            m_modifiers[*key] |= mask;
            if (isAlt(symbolOf(*key)))
                altMask |= mask;
            if (isLock(symbolOf(*key)))
                m_lockMask |= mask;
        }
    }
    altMask &= static_cast<std::uint16_t>(~(heldModifiers | m_lockMask));
    m_altMask = altMask != 0 ? altMask : static_cast<std::uint16_t>(XCB_MOD_MASK_1);
    m_lockMask &= static_cast<std::uint16_t>(~(heldModifiers | m_altMask));
}

std::vector<xcb_keycode_t> X11Keyboard::keysFor(int virtualKey) const
{
    std::vector<xcb_keycode_t> keys;
    for (std::size_t key = 0; virtualKey != 0 && key < m_virtualKeys.size(); ++key) {
        if (m_virtualKeys[key] == virtualKey)
            keys.push_back(static_cast<xcb_keycode_t>(key));
    }
    return keys;
}

int X11Keyboard::shiftBits(xcb_keycode_t key) const noexcept
{
    const std::uint16_t modifiers = m_modifiers[key];
    return ((modifiers & XCB_MOD_MASK_SHIFT) != 0 ? InputEvent::ShiftKey : 0) |
           ((modifiers & XCB_MOD_MASK_CONTROL) != 0 ? InputEvent::CtrlKey : 0) |
           ((modifiers & m_altMask) != 0 ? InputEvent::AltKey : 0);
}
