// The two sample topologies, meshed once for all tests of the program.
// SPDX-License-Identifier: MIT

#pragma once

#include "content/sample_figures.h"

inline const content::SampleTopology& OldTopology()
{
    static const content::SampleTopology topology =
        content::MakeSampleTopology(content::FigureKind::Genesis8Female);
    return topology;
}

inline const content::SampleTopology& NewTopology()
{
    static const content::SampleTopology topology =
        content::MakeSampleTopology(content::FigureKind::Genesis9);
    return topology;
}
