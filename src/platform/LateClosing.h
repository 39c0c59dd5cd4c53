#pragma once

#include "platform/FileDescriptor.h"

#include <future>
#include <mutex>
#include <vector>

/// Closes files on a thread beside the caller's. Whoever closes a file that has been replaced meanwhile waits
/// until its room is given back, and a disk that is writing may take longer over that than the replacing
/// took. The thread lives while there is something to close. Used by one thread.
class LateClosing
{
public:
    LateClosing() = default;
    ~LateClosing() { wait(); }
    LateClosing(const LateClosing &) = delete;
    LateClosing &operator=(const LateClosing &) = delete;

    /// Waits while many files are open still: each keeps its room on the disk.
    void add(FileDescriptor file);

    /// Until all are closed.
    void wait();

private:
    void work();

    std::mutex m_mutex;
    std::vector<FileDescriptor> m_files; ///< guarded by the mutex, as is the next
    bool m_working = false;
    std::future<void> m_thread;
};
