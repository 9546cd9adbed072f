// How much memory a step takes at most.
// SPDX-License-Identifier: MIT

#pragma once

#include <benchmark/benchmark.h>

#include <fstream>
#include <string>

#include <malloc.h>

namespace bench {

/// From its making on, beside what the process held then. Shown in MB by the benchmark that it is given to;
/// by nothing where the system does not tell.
class PeakMemory {
public:
    PeakMemory()
    {
        malloc_trim(0); // what was let go of before counts for nothing
        _isFresh = static_cast<bool>(std::ofstream("/proc/self/clear_refs") << 5 << std::flush);
        _before = kilobytes("VmRSS:");
    }

    void show(benchmark::State& state) const
    {
        if (!_isFresh)
            return;
        const double peak = kilobytes("VmHWM:");
        state.counters["peak_MB"] = peak / 1024;
        state.counters["more_MB"] = (peak - _before) / 1024;
    }

private:
    static double kilobytes(const std::string& name)
    {
        std::ifstream status("/proc/self/status");
        std::string word;
        double value = 0;
        while (status >> word)
            if (word == name)
                status >> value;
        return value;
    }

    bool _isFresh = false; ///< the system measures anew
    double _before = 0;
};

} // namespace bench
