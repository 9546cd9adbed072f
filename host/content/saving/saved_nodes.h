// Which nodes a saved file is about.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

#include <QString>

class DzNode;
class DzSkeleton;

namespace openhost {

/// The scene's roots.
std::vector<DzNode*> SceneRoots();
/// The topmost selected nodes, figures for their bones; in the scene's order.
std::vector<DzNode*> SelectedTrees();
/// The topmost nodes that are fitted to the figure, or hang on it without being part of it; in the scene's
/// order.
std::vector<DzNode*> WornBy(const DzSkeleton& wearer);

/// The figure of that label, the selected one if several have it; without a label the selected figure, or
/// the selected node if it is no figure's.
/// @throws base::Error  there is none
DzNode& SavedFigure(const QString& label);

} // namespace openhost
