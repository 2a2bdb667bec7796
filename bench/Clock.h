#pragma once

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <vector>

// The clocks every figure is taken with: the system-wide monotonic clock (shared by
// the bench and the programs it starts, so their readings can be subtracted) and
// the CPU time of this process, all threads included.
namespace benchclock {

inline std::int64_t read(clockid_t clock) {
    timespec ts{};
    clock_gettime(clock, &ts);
    return std::int64_t(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

inline std::int64_t monotonicNs() {
    return read(CLOCK_MONOTONIC);
}

inline std::int64_t cpuNs() {
    return read(CLOCK_PROCESS_CPUTIME_ID);
}

// The median of a series; the mean of the two middle values for an even count.
inline double median(std::vector<double> values) {
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    const std::size_t mid = values.size() / 2;
    return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2.0;
}

} // namespace benchclock
