#include "platform/LateClosing.h"

namespace
{
constexpr std::size_t most = 64;
}

void LateClosing::add(FileDescriptor file)
{
    std::unique_lock lock(m_mutex);
    if (m_files.size() >= most) {
        lock.unlock();
        wait();
        lock.lock();
    }
    m_files.push_back(std::move(file));
    if (m_working)
        return;
    m_thread = std::async(std::launch::async, [this] { work(); });
    m_working = true;
}

void LateClosing::wait()
{
    if (m_thread.valid())
        m_thread.wait();
}

void LateClosing::work()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_working = !m_files.empty();
        if (!m_working)
            return;
        FileDescriptor next = std::move(m_files.back());
        m_files.pop_back();
        lock.unlock();
        next.close();
    }
}
