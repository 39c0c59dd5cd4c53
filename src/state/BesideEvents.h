#pragma once

#include "state/Progress.h"

#include <atomic>
#include <chrono>
#include <future>
#include <stop_token>
#include <type_traits>
#include <utility>

/// What a thread that works beside the event loop has to do with it.
struct WorkBesideEvents {
    std::stop_token stop;      ///< the user wants the work to stop, perhaps before it has begun
    std::atomic<int> done = 0; ///< items that are finished
};

/// Runs `work(WorkBesideEvents &)` in another thread, on values alone, while events run as `progress` lets
/// them. Its result, or what it throws, is handed on.
template <typename Work>
std::invoke_result_t<Work &, WorkBesideEvents &> besideEvents(ProgressScope &progress, Work &&work)
{
    constexpr std::chrono::milliseconds look(2);
    std::stop_source stop;
    WorkBesideEvents state{stop.get_token()};
    if (!progress.step(0))
        stop.request_stop();
    auto result = std::async(std::launch::async, [&] { return work(state); });
    while (result.wait_for(look) != std::future_status::ready) {
        if (!progress.step(state.done))
            stop.request_stop();
    }
    return result.get();
}
