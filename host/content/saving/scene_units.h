// What belongs together in a saved scene.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <unordered_map>
#include <vector>

class DzMorph;
class DzNode;
class DzNumericProperty;

namespace openhost {

/// A dial of a unit: a morph's, or a control's.
struct UnitDial {
    const DzNumericProperty* property;
    const DzMorph* morph; ///< null for a control
    const DzNode* owner;  ///< the node that has it
    std::string uri;      ///< of its definition, text; empty when the scene alone has it
};

/// A node with the parts that one definition makes of it: a figure with its bones, or a node alone.
struct SceneUnit {
    DzNode* root;
    std::string path; ///< of the data file that defines it, decoded; empty when it is described whole
    std::vector<DzNode*> nodes; ///< root first, parents before children
    std::vector<UnitDial> dials;

    bool isDescribedWhole() const { return path.empty(); }
};

struct SceneUnits {
    std::vector<SceneUnit> units;
    std::vector<DzNode*> nodes; ///< of all units, parents before children
    std::unordered_map<const DzNode*, std::size_t> unitOf;
};

/// Takes the nodes and all below them apart. Data files that cannot be found count as none.
SceneUnits CollectUnits(const std::vector<DzNode*>& roots);

/// Whether the node is a D-Former, its base or its field.
bool IsOfDFormer(const DzNode& node);

} // namespace openhost
