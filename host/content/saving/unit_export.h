// One figure or node of the scene as definitions.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "scene_units.h"

#include <map>
#include <optional>
#include <set>
#include <string>

class DzSkinBinding;

namespace openhost {

/// Hands out ids that are unique within a file. A text that is wanted more than once among the definitions is
/// never given out as it is, so that no definition's id is another one's name.
class FileIds {
public:
    void expect(const std::string& wanted) { ++_expected[wanted]; }
    std::string take(const std::string& text);

private:
    std::map<std::string, int> _expected;
    std::map<std::string, int> _numbers; ///< the last that was tried behind a text
    std::set<std::string> _taken;
};

/// Ids of a unit's definitions; empty for what a data file defines.
struct UnitIds {
    std::string geometry, skin;
    std::map<const DzNode*, std::string> nodes;
    std::map<const DzNumericProperty*, std::string> dials; ///< of those that are described
};
void ExpectUnitIds(FileIds& ids, const SceneUnit& unit);
UnitIds TakeUnitIds(FileIds& ids, const SceneUnit& unit);

/// The mesh of the unit's node; nothing without one. Faces of more than four corners are cut into triangles.
std::optional<dson::Geometry> DescribeGeometry(const SceneUnit& unit, const std::string& id);
/// Null for a node that is not skinned.
const DzSkinBinding* SkinOf(const SceneUnit& unit);
dson::SkinDefinition DescribeSkin(const SceneUnit& unit, const UnitIds& ids);
/// In the order of the unit's nodes, the root without parent.
std::vector<dson::Node> DescribeUnitNodes(const SceneUnit& unit, const UnitIds& ids);
/// A dial that the scene alone has.
/// @param parent  URI of the figure's node or geometry
dson::Modifier DescribeDial(const UnitDial& dial, const std::string& id, const std::string& parent,
                            const SceneUnit& unit);

} // namespace openhost
