#pragma once

#include "platform/Clock.h"

#include <functional>
#include <vector>

/// A clock that only moves when it is told to; sleeping moves it at once and is remembered.
class FakeClock : public Clock
{
public:
    QDateTime time{QDate(2026, 3, 21), QTime(13, 43, 2)};
    std::vector<int> slept;
    int eventsRun = 0;
    std::function<void()> whileEventsRun; ///< what happens when events are let run

    QDateTime now() const override { return time; }
    qint64 monotonicMilliseconds() const override { return time.toMSecsSinceEpoch(); }
    void sleep(int milliseconds) override
    {
        slept.push_back(milliseconds);
        time = time.addMSecs(milliseconds);
    }
    void letEventsRun() override
    {
        ++eventsRun;
        if (whileEventsRun)
            whileEventsRun();
    }
};
