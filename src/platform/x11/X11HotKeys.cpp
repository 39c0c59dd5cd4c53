#include "platform/x11/X11HotKeys.h"

#include <utility>
#include <vector>

namespace
{
/// Modifiers of a core event's state; the bits above are buttons and keyboard groups.
constexpr unsigned modifierBits = 0xff;

/// The release and the press that a held key is repeated with carry the same stamp, or nearly.
constexpr std::uint32_t repeatMilliseconds = 2;

/// `mask` with every combination of the modifiers in `locks` on and off.
std::vector<std::uint16_t> withLocks(std::uint16_t mask, std::uint16_t locks)
{
    std::vector<std::uint16_t> masks;
    unsigned on = locks;
    for (;;) {
        masks.push_back(static_cast<std::uint16_t>(mask | on));
        if (on == 0)
            return masks;
        on = (on - 1) & locks;
    }
}
} // namespace

X11HotKeys::X11HotKeys()
    : m_keyboard(m_connection), m_notifier(m_connection.fileDescriptor(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11HotKeys::readEvents);
}

bool X11HotKeys::registerKey(int id, Modifier modifier, int virtualKey)
{
    const Combination wanted{modifier, virtualKey};
    for (const auto &[takenId, taken] : m_combinations) {
        if (takenId == id || taken == wanted)
            return false;
    }
    const bool granted = grab(wanted);
    if (granted)
        m_combinations.emplace(id, wanted);
    // Waiting for the server's answers may have read events, which the notifier would not tell of.
    readEvents();
    return granted;
}

void X11HotKeys::unregisterKey(int id)
{
    const auto found = m_combinations.find(id);
    if (found == m_combinations.end())
        return;
    ungrab(found->second);
    m_combinations.erase(found);
}

std::uint16_t X11HotKeys::maskOf(Modifier modifier) const
{
    switch (modifier) {
    case Modifier::Control:
        return XCB_MOD_MASK_CONTROL;
    case Modifier::Shift:
        return XCB_MOD_MASK_SHIFT;
    case Modifier::Alt:
        break;
    }
    return m_keyboard.altMask();
}

bool X11HotKeys::grab(const Combination &combination)
{
    std::vector<xcb_void_cookie_t> requests;
    for (const xcb_keycode_t key : m_keyboard.keysFor(combination.virtualKey)) {
        for (const std::uint16_t mask : withLocks(maskOf(combination.modifier), m_keyboard.lockMask()))
            requests.push_back(xcb_grab_key_checked(m_connection.get(), 1, m_connection.root(), mask, key,
                                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool granted = !requests.empty();
    for (const xcb_void_cookie_t request : requests)
        granted = m_connection.accepted(request) && granted;
    if (!granted)
        ungrab(combination);
    return granted;
}

void X11HotKeys::ungrab(const Combination &combination)
{
    for (const xcb_keycode_t key : m_keyboard.keysFor(combination.virtualKey)) {
        for (const std::uint16_t mask : withLocks(maskOf(combination.modifier), m_keyboard.lockMask()))
            xcb_ungrab_key(m_connection.get(), key, m_connection.root(), mask);
    }
    m_connection.flush();
}

void X11HotKeys::readEvents()
{
    bool mappingChanged = false;
    do {
        mappingChanged = false;
        while (const auto event = m_connection.pollEvent()) {
            const auto &key = reinterpret_cast<const xcb_key_press_event_t &>(*event);
            const int type = event->response_type & 0x7f;
            if (type == XCB_KEY_PRESS)
                press(key);
            else if (type == XCB_KEY_RELEASE)
                m_released = Released{key.detail, key.time};
            else if (type == XCB_MAPPING_NOTIFY)
                mappingChanged = true;
        }
        // Asks the server, so that further events may lie in the connection afterwards.
        if (mappingChanged)
            regrabAll();
    } while (mappingChanged);
    // A lost connection is readable for ever.
    if (m_connection.lost())
        m_notifier.setEnabled(false);
}

void X11HotKeys::press(const xcb_key_press_event_t &event)
{
    const auto released = std::exchange(m_released, std::nullopt);
    if (released && released->key == event.detail && event.time - released->time <= repeatMilliseconds)
        return;
    const unsigned held = event.state & modifierBits & ~static_cast<unsigned>(m_keyboard.lockMask());
    for (const auto &[id, combination] : m_combinations) {
        if (combination.virtualKey == m_keyboard.virtualKey(event.detail) &&
            maskOf(combination.modifier) == held)
            fire(id, event.time);
    }
}

void X11HotKeys::fire(int id, std::uint32_t time)
{
    QMetaObject::invokeMethod(
        this,
        [this, id, time] {
            const Handler handler = m_handler;
            if (handler && m_combinations.contains(id))
                handler(id, time);
        },
        Qt::QueuedConnection);
}

void X11HotKeys::regrabAll()
{
    xcb_ungrab_key(m_connection.get(), XCB_GRAB_ANY, m_connection.root(), XCB_MOD_MASK_ANY);
    m_keyboard.read(m_connection);
    // A key that the new layout lacks, or that another program was faster to take, is silent until the next
    // change.
    for (const auto &[id, combination] : m_combinations)
        grab(combination);
}
