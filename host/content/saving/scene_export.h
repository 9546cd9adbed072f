// Nodes of the scene as file content.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/scene.h"

#include <string>
#include <vector>

class DzNode;
class DzSkeleton;

namespace openhost {

/// What a file says of these nodes and of everything below them. Nodes whose data file can be found are
/// referred to; all others, and morphs and dials that no data file has, are described whole. What cannot be
/// said in a file is left out, with a line in the log.
/// @param roots   none of them below another
/// @param type    of the file
/// @param wearer  the figure that they are worn by, which stays out of the file: it is the selected one
///                when the file is loaded; null for none
dson::SceneAsset DescribeNodes(const std::vector<DzNode*>& roots, const std::string& type,
                               const DzSkeleton* wearer);

/// The present place of a figure and its bones, and its pose dials, as values of the selected figure.
dson::SceneAsset DescribePose(DzNode& figure);

} // namespace openhost
