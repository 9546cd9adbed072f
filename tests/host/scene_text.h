// A scene as text, to compare it before saving and after loading.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

class DzNode;

/// Every node with its place in the tree, every number of every property, every morph's deltas, every link
/// and every vertex in the world, all to the last bit.
std::string SceneText();
/// Of these nodes and all below them.
std::string TreeText(const DzNode& node);
