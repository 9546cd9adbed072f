// Time in ticks.
// SPDX-License-Identifier: MIT

#pragma once

/// 4800 ticks are one second.
typedef int DzTime;

/// From start to end, both included.
class DzTimeRange {
public:
    DzTimeRange() : _start(0), _end(0) {}
    DzTimeRange(DzTime start, DzTime end) : _start(start), _end(end) {}

    DzTime getStart() const { return _start; }
    DzTime getEnd() const { return _end; }

private:
    DzTime _start;
    DzTime _end;
};
