#pragma once

#include "platform/Clock.h"

/// The machine's own clock. letEventsRun() serves the event loop of the calling thread.
class SystemClock : public Clock
{
public:
    QDateTime now() const override;
    qint64 monotonicMilliseconds() const override;
    void sleep(int milliseconds) override;
    void letEventsRun() override;
};
