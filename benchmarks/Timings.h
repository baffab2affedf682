#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace benchmarks {

/// The name of the floor's times where it takes turns with the phone book.
inline constexpr const char* inSql = "sql_";

/// The times of single operations. Each is an iteration's time; their median and 99th percentile, in nanoseconds,
/// become the counters `p50` and `p99` when this ends. The benchmark is one with UseManualTime, so that what stands
/// around the operation costs nothing.
///
/// With a name it is the times of somebody else, who does the same in turn, so that both meet the same disk: the
/// counters begin with the name, and the iteration's time is not theirs.
class Timings {
public:
    using Clock = std::chrono::steady_clock;

    explicit Timings(benchmark::State& state, std::string name = "") : state_(state), name_(std::move(name)) {}
    ~Timings() {
        if (seconds_.empty()) return;
        std::ranges::sort(seconds_);
        state_.counters[name_ + "p50"] = 1e9 * percentile(0.50);
        state_.counters[name_ + "p99"] = 1e9 * percentile(0.99);
    }
    Timings(const Timings&) = delete;
    Timings& operator=(const Timings&) = delete;

    template <class Operation>
    void time(Operation&& operation) {
        const auto begin = Clock::now();
        operation();
        const std::chrono::duration<double> taken = Clock::now() - begin;
        record(taken.count());
    }
    void record(double seconds) {
        if (name_.empty()) state_.SetIterationTime(seconds);
        seconds_.push_back(seconds);
    }

private:
    /// Of few times the 99th percentile is the longest.
    double percentile(double part) const {
        const auto place = std::ceil(part * static_cast<double>(seconds_.size()));
        return seconds_[static_cast<std::size_t>(std::max(place - 1, 0.0))];
    }

    benchmark::State& state_;
    std::string name_;
    std::vector<double> seconds_;
};

}  // namespace benchmarks
