#pragma once

#include <QPoint>

#include <cstdint>
#include <functional>
#include <memory>

/// One thing that the user did with mouse or keyboard, in whatever program.
struct InputEvent {
    enum class Kind {
        KeyDown,
        KeyUp,
        MouseDown,
        MouseUp,
        MouseMove,
        SystemKeyDown ///< a key pressed while Alt is held
    };

    /// Bits of `shift`.
    enum Shift : int { ShiftKey = 1, CtrlKey = 2, AltKey = 4 };

    Kind kind = Kind::MouseMove;
    int keyCode = 0;        ///< virtual-key code (see VirtualKeys.h), 0 for keys that have none here
    int button = 0;         ///< 1 left, 2 right, 4 middle, 8 and 16 the side buttons; 0 for keys and moves
    int shift = 0;          ///< modifier keys held at the event
    QPoint position;        ///< pointer position of the event itself, physical pixels of the desktop
    std::uint32_t time = 0; ///< the display's time stamp, milliseconds that wrap at 32 bits
};

/// Watches mouse and keyboard of the whole session between start() and stop(). It only watches: nothing it
/// does keeps an event from the program it was meant for. Wheel turns are no buttons; the release and press
/// pairs of a held key are no releases.
///
/// Events come through the Qt event loop of the thread that called start(), one at a time and in order. A
/// handler that runs an event loop of its own (a message box) lets further events come in, nested.
class InputHook
{
public:
    using Handler = std::function<void(const InputEvent &)>;

    virtual ~InputHook() = default;

    /// Begins to watch. Throws RunTimeError with a sentence for the user where this display cannot be
    /// watched.
    virtual void start(Handler handler) = 0;

    /// Ends watching; what had not been delivered is dropped. Throws RunTimeError when not started.
    virtual void stop() = 0;

    virtual bool running() const = 0;

    /// Delivers, on the spot, everything that happened up to the display's time stamp `upTo`, and drops
    /// what came later. With `upTo` 0 everything that has happened by now is delivered. Waits for the
    /// display if the last of it is still under way, for at most a fifth of a second.
    virtual void drain(std::uint32_t upTo) = 0;

    /// While suspended, events are dropped. Calls nest. resume() also drops what happened up to `upTo`
    /// (the click that closed the box which was open meanwhile).
    virtual void suspend() = 0;
    virtual void resume(std::uint32_t upTo) = 0;
};
