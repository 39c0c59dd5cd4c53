#pragma once

#include <QByteArrayView>

#include <cstdint>
#include <memory>

/// XXH3 (64 bits) of bytes that come in pieces: how they are cut makes no difference.
class ByteHash
{
public:
    ByteHash();
    void add(QByteArrayView bytes) noexcept;
    std::uint64_t value() const noexcept;

private:
    struct Free {
        void operator()(void *state) const noexcept;
    };
    std::unique_ptr<void, Free> m_state;
};
