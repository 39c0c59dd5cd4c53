#pragma once

#include <cstdint>
#include <functional>

/// System-wide hot keys: they fire whatever program has the keyboard, and the key is kept from that program.
class HotKeys
{
public:
    /// The one modifier of a hot key.
    enum class Modifier : int { Alt = 1, Control = 2, Shift = 4 };

    /// Receives the identifier and the display's time stamp of the press. Called through the event loop.
    using Handler = std::function<void(int id, std::uint32_t time)>;

    virtual ~HotKeys() = default;

    virtual void setHandler(Handler handler) = 0;

    /// Asks for a combination, whatever the state of NumLock and CapsLock; a held key fires once. False,
    /// with nothing kept, when another program holds it, the key does not exist on this keyboard, or `id`
    /// is taken.
    virtual bool registerKey(int id, Modifier modifier, int virtualKey) = 0;

    /// Gives a combination back. Unknown identifiers are ignored.
    virtual void unregisterKey(int id) = 0;
};
