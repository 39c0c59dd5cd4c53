#pragma once

#include <QDateTime>

/// The time of day, and every wait of the program. Faked in tests, so that no test sleeps.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Local date and time.
    virtual QDateTime now() const = 0;

    /// Milliseconds that never run backwards; only differences mean something.
    virtual qint64 monotonicMilliseconds() const = 0;

    /// Blocks the calling thread. No event is handled meanwhile.
    virtual void sleep(int milliseconds) = 0;

    /// Lets everything that waits in the event loop run, then returns.
    virtual void letEventsRun() = 0;
};
