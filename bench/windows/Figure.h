#pragma once
// One line of the table that bench/run prints: a figure and, from the same run, what it is held
// against.   name TAB value TAB unit TAB baseline TAB value of the baseline

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace kalvrooms::bench {

inline void figure(const char* name, double value, const char* unit, const char* baseline,
                   double baselineValue) {
    std::printf("%s\t%g\t%s\t%s\t%g\n", name, value, unit, baseline, baselineValue);
    std::fflush(stdout);
}

template <class Step>
double milliseconds(Step step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// Other programs share the machine: what counts is the best of some turns.
template <class Step>
double best(int turns, Step step) {
    double least = milliseconds(step);
    for (int turn = 1; turn < turns; ++turn)
        least = std::min(least, milliseconds(step));
    return least;
}

} // namespace kalvrooms::bench
