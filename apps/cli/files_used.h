// Which files of the content libraries a figure is made of.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_choice.h"

#include <filesystem>
#include <set>

class DzNode;

namespace cli {

/// A set, as shapes share files.
using FilesUsed = std::set<std::filesystem::path>;

/// The figure's own, with its mesh, and those of the dials that are not at 0, with what they add to the
/// subdivided mesh.
void AddFilesOf(const DzNode& figure, FilesUsed& files);

/// Those of a dial, and of the morphs that it drives.
void AddFilesOf(const ShapeDial& dial, FilesUsed& files);

} // namespace cli
