// Which nodes are in the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include <set>

class DzNode;

namespace cli {

std::set<const DzNode*> NodesInScene();
/// Takes what has come since out of the scene.
void RemoveAllBut(const std::set<const DzNode*>& nodes);

} // namespace cli
