// Pieces that are begun and ended in order, on threads that the thread sanitizer sees through.
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

#include <tbb/parallel_for.h>

namespace tbb {

enum class filter_mode { parallel, serial_in_order };

class flow_control {
public:
    void stop() { _isStopped = true; }
    bool isStopped() const { return _isStopped; }

private:
    bool _isStopped = false;
};

namespace watched {

template <typename In, typename Out, typename Body>
struct Filter {
    Body body;
};

template <typename First, typename Second>
struct Begun {
    First first;
    Second second;
};

template <typename Begin, typename Work, typename End, typename Made, typename Worked>
struct Pipeline {
    Begin begin;
    Work work;
    End end;
};

template <typename Made, typename Worked, typename Begin, typename Work>
auto operator&(const Filter<void, Made, Begin>& begin, const Filter<Made, Worked, Work>& work)
{
    return Begun<Filter<void, Made, Begin>, Filter<Made, Worked, Work>>{begin, work};
}

template <typename Made, typename Worked, typename Begin, typename Work, typename End>
Pipeline<Begin, Work, End, Made, Worked>
operator&(const Begun<Filter<void, Made, Begin>, Filter<Made, Worked, Work>>& begun,
          const Filter<Worked, void, End>& end)
{
    return {begun.first.body, begun.second.body, end.body};
}

} // namespace watched

template <typename In, typename Out, typename Body>
watched::Filter<In, Out, Body> make_filter(filter_mode, const Body& body)
{
    return {body};
}

/// As many at a time as may be on their way.
template <typename Begin, typename Work, typename End, typename Made, typename Worked>
void parallel_pipeline(std::size_t most, const watched::Pipeline<Begin, Work, End, Made, Worked>& pipeline)
{
    flow_control flow;
    while (!flow.isStopped()) {
        std::vector<Made> made;
        while (made.size() < most) {
            Made one = pipeline.begin(flow);
            if (flow.isStopped())
                break;
            made.push_back(std::move(one));
        }
        std::vector<std::optional<Worked>> worked(made.size());
        watched::ForPieces(made.size(), [&](std::size_t i) { worked[i] = pipeline.work(made[i]); });
        for (const std::optional<Worked>& one : worked)
            pipeline.end(*one);
    }
}

} // namespace tbb
