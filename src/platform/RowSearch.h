#pragma once

#include "platform/RunTimeError.h"

#include <cstdint>
#include <functional>
#include <vector>

/// A select statement that runs on a thread of its own and hands out the IDs of its rows while it finds them.
/// Destroying it interrupts the statement; nothing is handed out any more then.
class RowSearch
{
public:
    /// Called through the event loop of the thread that began the search, in this order: `found` any number
    /// of times, the first time after a few rows or a moment; then `finished` or `failed`.
    struct Handlers {
        std::function<void(const std::vector<std::int64_t> &)> found;
        std::function<void()> finished;
        std::function<void(const RunTimeError &)> failed;
    };

    virtual ~RowSearch() = default;
};
