#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

using Milliseconds = std::chrono::duration<double, std::milli>;

template <typename Work>
Milliseconds timeOf(const Work &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - begin;
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Something that the program is compared with: its name, one round of it, and the counter for its median.
struct Beside {
    std::string name;
    std::function<Milliseconds()> round;
    const char *counter = "least_ms";
};

/// Runs both in turns, so that whatever else the machine does falls on both alike. The counters are the
/// medians of both in milliseconds and ours divided by the other, the label says what the other is.
inline void compare(benchmark::State &state, const std::function<Milliseconds()> &ours, const Beside &beside)
{
    std::vector<double> oursTaken;
    std::vector<double> othersTaken;
    ours();
    beside.round();
    for ([[maybe_unused]] auto round : state) {
        const Milliseconds taken = ours();
        oursTaken.push_back(taken.count());
        othersTaken.push_back(beside.round().count());
        state.SetIterationTime(taken.count() / 1000);
    }
    state.SetLabel(beside.name);
    state.counters["median_ms"] = median(oursTaken);
    state.counters[beside.counter] = median(othersTaken);
    state.counters["ratio"] = median(oursTaken) / median(othersTaken);
}
