#pragma once

#include "platform/FileDescriptor.h"

#include <QSocketNotifier>

#include <array>
#include <functional>
#include <memory>

/// Lets the program do a last thing when it is ended by a signal (SIGHUP, SIGINT, SIGTERM): the signal is
/// brought into the event loop, `last` is called there, and then the signal does what it does by itself. One
/// at a time; events must run.
class SignalWatch
{
public:
    explicit SignalWatch(std::function<void()> last);
    ~SignalWatch();
    SignalWatch(const SignalWatch &) = delete;
    SignalWatch &operator=(const SignalWatch &) = delete;

private:
    explicit SignalWatch(std::function<void()> last, std::array<int, 2> pipe);
    void arrived();

    std::function<void()> m_last;
    FileDescriptor m_read;
    FileDescriptor m_write;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
