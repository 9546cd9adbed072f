// What a node keeps; for the files that implement it.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzboolproperty.h"
#include "dzfloatproperty.h"
#include "dznode.h"
#include "dzpresentation.h"
#include "dzselectionmap.h"
#include "scene/node_transform.h"

#include <algorithm>
#include <array>

namespace openhost {
class Change;
}

struct DzNode::Impl {
    /// What is to be recorded of a node that has just come into the scene with all below it, or is about to
    /// go.
    static std::unique_ptr<openhost::Change> entryOf(DzNode& root);
    static std::unique_ptr<openhost::Change> departureOf(DzNode& root);
    /// It is about to hang elsewhere.
    static void recordMove(DzNode& node);
    class Presence;
    class Move;

    /// Three properties named X..., Y..., Z...
    using Axes = std::array<DzFloatProperty*, 3>;

    DzNode* parent = nullptr;
    QList<DzNode*> children;
    DzObject* object = nullptr;
    bool inScene = false;
    bool selected = false;
    /// The readings of hierarchies before which this and all above were told of a change, and the skeleton of
    /// one of a bone.
    unsigned told = 0, toldOfBone = 0;

    Axes translation{}, rotation{}, scale{}, origin{}, end{}, orientation{};
    DzFloatProperty* generalScale = nullptr;
    DzBoolProperty* visible = nullptr;
    DzBoolProperty* visibleInSimulation = nullptr;
    DzRotationOrder order;
    bool inheritsScale = true;

    openhost::NodeTransform transform;
    bool transformDirty = true;

    bool isTransform(const DzProperty* property) const
    {
        for (const Axes* axes : {&translation, &rotation, &scale, &origin, &end, &orientation}) {
            if (std::find(axes->begin(), axes->end(), property) != axes->end())
                return true;
        }
        return property == generalScale;
    }

    DzUri assetUri;
    bool assetModified = false;
    std::unique_ptr<DzPresentation> presentation;
    std::unique_ptr<DzSelectionMap> selectionMap;
};
