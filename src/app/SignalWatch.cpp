#include "app/SignalWatch.h"

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr std::array watched{SIGHUP, SIGINT, SIGTERM};
std::atomic<int> pipeEnd{-1};

/// Only what a signal handler may do.
extern "C" void passOn(int signal)
{
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = write(pipeEnd, &byte, 1);
}

std::array<int, 2> openPipe()
{
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return {-1, -1};
    return ends;
}
} // namespace

SignalWatch::SignalWatch(std::function<void()> last) : SignalWatch(std::move(last), openPipe()) {}

SignalWatch::SignalWatch(std::function<void()> last, std::array<int, 2> pipe)
    : m_last(std::move(last)), m_read(pipe[0]), m_write(pipe[1])
{
    if (!m_read.open())
        return; // the program ends without its last thing then
    pipeEnd = m_write.number();
    m_notifier = std::make_unique<QSocketNotifier>(m_read.number(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { arrived(); });
    for (const int signal : watched)
        std::signal(signal, passOn);
}

SignalWatch::~SignalWatch()
{
    if (m_notifier) {
        for (const int signal : watched)
            std::signal(signal, SIG_DFL);
    }
}

void SignalWatch::arrived()
{
    unsigned char byte = 0;
    if (read(m_read.number(), &byte, 1) != 1)
        return;
    const int signal = byte;
    m_last();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}
