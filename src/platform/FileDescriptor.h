#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

/// Owns an open file of the system; negative when opening has failed.
class FileDescriptor
{
public:
    explicit FileDescriptor(int number) noexcept : m_number(number) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool open() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }

    /// Some file systems tell only here that a write has failed; errno says why.
    bool close() noexcept
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0 || errno == EINTR;
    }

private:
    int m_number;
};
