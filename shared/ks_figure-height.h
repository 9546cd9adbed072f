// Making one figure as tall as another.
// SPDX-License-Identifier: MIT

#pragma once

class DzFigure;
class DzFloatProperty;

namespace kst {
namespace daz {

/// Steps the figure's height dial by 0.005 until the top of its bounding box has passed the reference's. The
/// direction is decided once, from the figure's top at the start: it shrinks also when the two are equal.
/// @param heightProperty  dial of the figure, 1 meaning 100 %
/// @return the dial's value before the call, or -1 when 2002 steps did not do it (the dial stays where it got
/// to)
float AdjustFigureHeight(DzFigure& figure, DzFloatProperty& heightProperty, const DzFigure& reference);

} // namespace daz
} // namespace kst
