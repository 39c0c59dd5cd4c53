#include "platform/x11/X11EventTranslator.h"

#include <array>
#include <utility>

namespace
{
/// Both halves of a repeat carry the same stamp, or nearly.
constexpr std::uint32_t repeatMilliseconds = 2;

/// 0 for the wheel and for buttons that have no number.
int buttonNumber(xcb_button_t button)
{
    constexpr std::array<int, 10> numbers{0, 1, 4, 2, 0, 0, 0, 0, 8, 16};
    return button < numbers.size() ? numbers[button] : 0;
}
} // namespace

X11EventTranslator::X11EventTranslator(const X11Keyboard &keyboard, Sink sink)
    : m_keyboard(keyboard), m_sink(std::move(sink))
{
}

void X11EventTranslator::begin(QPoint pointer, const std::bitset<256> &keysDown)
{
    m_pointer = pointer;
    m_keysDown = keysDown;
    m_heldBack.reset();
}

void X11EventTranslator::add(const xcb_key_press_event_t &record)
{
    const int type = record.response_type & 0x7f;
    if (type == XCB_KEY_PRESS)
        return pressKey(record.detail, record.time);

    passHeldBack();
    if (type == XCB_KEY_RELEASE) {
        m_heldBack = HeldBack{record.detail, record.time};
        return;
    }
    // Only here: the records of keys have no position while a program freezes the pointer.
    m_pointer = QPoint(record.root_x, record.root_y);
    if (type == XCB_MOTION_NOTIFY)
        emitPointer(InputEvent::Kind::MouseMove, 0, record.time);
    else if (const int button = buttonNumber(record.detail); button != 0)
        emitPointer(type == XCB_BUTTON_PRESS ? InputEvent::Kind::MouseDown : InputEvent::Kind::MouseUp,
                    button, record.time);
}

void X11EventTranslator::pressKey(xcb_keycode_t key, std::uint32_t time)
{
    if (m_heldBack && m_heldBack->key == key && time - m_heldBack->time <= repeatMilliseconds) {
        m_heldBack.reset();
        return;
    }
    passHeldBack();
    if (m_keysDown[key])
        return;
    m_keysDown.set(key);
    const bool altHeld = (shift() & InputEvent::AltKey) != 0;
    emitKey(altHeld ? InputEvent::Kind::SystemKeyDown : InputEvent::Kind::KeyDown, key, time);
}

void X11EventTranslator::passHeldBack()
{
    if (!m_heldBack)
        return;
    const HeldBack released = *m_heldBack;
    m_heldBack.reset();
    m_keysDown.reset(released.key);
    emitKey(InputEvent::Kind::KeyUp, released.key, released.time);
}

void X11EventTranslator::emitKey(InputEvent::Kind kind, xcb_keycode_t key, std::uint32_t time)
{
    m_sink(InputEvent{kind, m_keyboard.virtualKey(key), 0, shift(), m_pointer, time});
}

void X11EventTranslator::emitPointer(InputEvent::Kind kind, int button, std::uint32_t time)
{
    m_sink(InputEvent{kind, 0, button, shift(), m_pointer, time});
}

int X11EventTranslator::shift() const
{
    int bits = 0;
    for (std::size_t key = 0; key < m_keysDown.size(); ++key) {
        if (m_keysDown[key])
            bits |= m_keyboard.shiftBits(static_cast<xcb_keycode_t>(key));
    }
    return bits;
}
