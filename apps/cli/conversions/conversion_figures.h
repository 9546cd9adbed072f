// Which nodes of the files are converted, and how the others keep out of the way.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "gnt_outcome.h"

#include <filesystem>
#include <memory>
#include <vector>

class DzNode;

namespace cli {

/// The first node that can be converted from, or to.
/// @param came           with the file, figures first; not empty
/// @param isToWearShape  one that wears a shape comes before those that wear none
/// @param diagnostics    hears of a choice that the file leaves open
/// @throws std::runtime_error  there is none; the text names what there is
DzNode& ChooseSource(const std::vector<DzNode*>& came, bool isToWearShape, const std::filesystem::path& file,
                     base::Diagnostics& diagnostics);
DzNode& ChooseTarget(const std::vector<DzNode*>& came, const std::filesystem::path& file,
                     base::Diagnostics& diagnostics);

/// A conversion sets aside how a figure itself is placed, and sees what can be seen: takes the figure out of
/// what it hangs on, whose placing would get into the morphs, and shows it. What hangs on it comes along.
/// @param diagnostics  hears of it where it makes a difference
void StandAlone(DzNode& figure, const std::filesystem::path& file, base::Diagnostics& diagnostics);

/// The two as a conversion takes them; selects them.
/// @throws kst::Exception  with the text for the user
std::shared_ptr<GntParams> ParamsOf(DzNode& source, DzNode& target);

/// A conversion loads figures of its own and knows them by their labels. What is in the scene and has one of
/// these gets another; the source needs none, since the conversion labels it anew itself.
void KeepLabelsFree(const DzNode& source, const DzNode& target, base::Diagnostics& diagnostics);

} // namespace cli
