#pragma once

#include "platform/x11/X11Connection.h"

#include <xcb/record.h>

#include <QDeadlineTimer>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

/// Records the mouse and keyboard events of the whole display, from construction to destruction.
///
/// The RECORD extension tells everything, with the pointer position of the event itself, but the server
/// keeps what it has recorded until some client gets output. So raw input events are selected as a wake-up,
/// and each is answered with a request whose reply makes the server hand the records out; a server without
/// raw events gets such a request at short intervals.
class X11Recorder
{
public:
    enum class WakeUp {
        RawEvents, ///< a timer all the same where the server lacks them
        Timer
    };

    /// What the recorder calls, from the event loop or from catchUp(). `recorded` gets core key, button and
    /// motion events, oldest first (all have this layout). Neither may delete the recorder.
    struct Sink {
        std::function<void(const xcb_key_press_event_t &)> recorded;
        std::function<void()> mappingChanged;
    };

    /// Everything that happens after the constructor has returned is recorded. Throws RunTimeError with a
    /// sentence for the user when there is no display or it lacks RECORD.
    X11Recorder(WakeUp wakeUp, Sink sink);
    ~X11Recorder();

    X11Recorder(const X11Recorder &) = delete;
    X11Recorder &operator=(const X11Recorder &) = delete;

    /// For requests about the same display.
    const X11Connection &connection() const noexcept { return m_control; }

    /// Passes on what has arrived; never waits.
    void read();

    /// Passes on everything that the server has recorded by now. Waits for the server until `limit` at
    /// most; less when an event later than the time stamp `upTo` (0: none) shows that all before it is in.
    void catchUp(std::uint32_t upTo, QDeadlineTimer limit);

private:
    void createContext();
    void enableContext();
    bool selectRawEvents();
    void watchConnections(bool rawEvents);
    void readWakeUps();
    void requestRecords();
    bool roundTrip(std::uint32_t upTo, QDeadlineTimer limit);
    bool waitReadable(QDeadlineTimer limit) const;
    bool hasPassed(std::uint32_t time) const noexcept;
    void giveUp();

    X11Connection m_control;
    X11Connection m_data; ///< carries nothing but the records
    Sink m_sink;
    xcb_record_context_t m_context = 0;
    xcb_record_enable_context_cookie_t m_enabled{};
    std::optional<std::uint32_t> m_lastTime; ///< stamp of the last record passed on
    std::unique_ptr<QSocketNotifier> m_dataNotifier;
    std::unique_ptr<QSocketNotifier> m_controlNotifier;
    QTimer m_wakeUpTimer;
};
