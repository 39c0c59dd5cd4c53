#include "platform/linux/SystemClock.h"

#include <QCoreApplication>

#include <chrono>
#include <thread>

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 SystemClock::monotonicMilliseconds() const
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

void SystemClock::sleep(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void SystemClock::letEventsRun()
{
    QCoreApplication::processEvents();
}
