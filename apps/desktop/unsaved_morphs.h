// Morphs that are in no file of their own.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <vector>

class DzMorph;
class DzNode;

namespace desktop {

/// Borrowed: valid until the scene changes.
struct UnsavedMorph {
    DzNode* figure;
    DzMorph* morph;
};

/// Of all figures that can have such files, in the order of the scene: morphs that were made or changed in
/// the scene, and those that only a scene's file holds.
std::vector<UnsavedMorph> UnsavedMorphs();

/// Labels of those that go when the scene goes.
/// @param isSceneKept  the scene is in its file as it is now; that keeps their shapes, without what they add
///                     to a subdivided mesh
QStringList MorphsAtRisk(bool isSceneKept);

} // namespace desktop
