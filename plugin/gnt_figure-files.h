// The content files that a conversion needs, relative to any content library.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"

#include <array>

/// Selects a stock figure to load; the numbers of the first four are those of the clone shapes plus one.
enum class GntLoadFigure : int {
    Invalid,
    Genesis3Female,
    Genesis3Male,
    Genesis8Female,
    Genesis8Male,
    Genesis9DeveloperLoad,
    Genesis9
};

struct GntFigureFile {
    const char* relativePath;
    const char* label; ///< of the figure once loaded
};

/// In the order of GntLoadFigure, without Invalid.
constexpr std::array<GntFigureFile, 6> GNT_FIGURE_FILES{{
    {"People/Genesis 3 Female/Genesis 3 Female.duf", "Genesis 3 Female"},
    {"People/Genesis 3 Male/Genesis 3 Male.duf", "Genesis 3 Male"},
    {"People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf", "Genesis 8 Female"},
    {"People/Genesis 8 Male/Developer Kit/Genesis 8 Male Dev Load.duf", "Genesis 8 Male"},
    {"People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf", "Genesis 9"},
    {"People/Genesis 9/Genesis 9.duf", "Genesis 9"},
}};

constexpr const char* GNT_HEAD_SPLIT_FILE = "People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf";

inline GntLoadFigure GntStockFigureOf(GntCloneShape cloneShape)
{
    return static_cast<GntLoadFigure>(static_cast<int>(cloneShape) + 1);
}
