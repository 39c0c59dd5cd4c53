#include "platform/ByteHash.h"

#include <new>

// On x86 the library chooses the widest vectors of the machine only when asked through this header.
#if __has_include(<xxh_x86dispatch.h>)
#include <xxh_x86dispatch.h>
#else
#include <xxhash.h>
#endif

namespace
{
XXH3_state_t *xxh(void *state)
{
    return static_cast<XXH3_state_t *>(state);
}
} // namespace

void ByteHash::Free::operator()(void *state) const noexcept
{
    XXH3_freeState(xxh(state));
}

ByteHash::ByteHash() : m_state(XXH3_createState())
{
    if (!m_state)
        throw std::bad_alloc();
    XXH3_64bits_reset(xxh(m_state.get()));
}

void ByteHash::add(QByteArrayView bytes) noexcept
{
    XXH3_64bits_update(xxh(m_state.get()), bytes.data(), static_cast<std::size_t>(bytes.size()));
}

std::uint64_t ByteHash::value() const noexcept
{
    return XXH3_64bits_digest(xxh(m_state.get()));
}
