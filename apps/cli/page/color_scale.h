// Colours that stand for distances, as pages have them.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_colors.h"
#include "report.h"

#include <string>

namespace cli {

using app::ChooseScale;
using app::ColorAt;
using app::ColorBeyond;
using app::ColorOfNothing;
using app::ColorScale;
using app::LinearRgb;
using app::ScaleTo;

/// The scale as "page.js" has it: "#rrggbb", evenly.
Json ColorTable();

/// A number with narrow spaces between thousands, as pages have them.
std::string Grouped(std::size_t count);

/// @param text  a sentence of what the colours stand for
Json DescribeScale(const ColorScale& scale, const std::string& text);

} // namespace cli
