// What files say of nodes and their modifiers that nothing in the scene stands for.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <QPointer>

#include <memory>
#include <set>
#include <string>
#include <vector>

class DzBoneBinding;
class DzNode;
class DzNumericProperty;
class DzSkinBinding;
class QObject;

namespace openhost {

/// An entry of a scene's animations that is more than one value of a property here.
struct KeptAnimation {
    std::string url, text;                ///< of the entry, and its JSON
    bool isOfProperty = false;            ///< what follows is known
    QPointer<DzNumericProperty> property; ///< that it moves; null when that is gone
    QPointer<DzNode> figure;              ///< that has it
    double value = 0.0;                   ///< raw, as the load has left it
};

/// One load of a file. What the file has beside its nodes goes along as long as any of them is there.
struct KeptLoad {
    std::shared_ptr<const dson::KeptContent> content; ///< null for none
    std::set<std::string> instances;                  ///< ids of all its nodes and geometries
    std::vector<KeptAnimation> animations;
    std::vector<dson::ModifierInstance> modifiers; ///< those of what is not there
};

/// Of a node.
struct KeptNode {
    std::shared_ptr<const KeptLoad> load;
    std::string id; ///< of the instance, in its file
    dson::KeptMembers members;
    std::vector<std::string> geometryIds;          ///< of its geometries' instances
    dson::KeptMembers geometry;                    ///< of the first of them, which is the node's mesh
    std::vector<dson::KeptPart> furtherGeometries; ///< all of them where the node has no mesh
    int edgeInterpolation = 0;                     ///< of the mesh when it was loaded
    std::string
        definitionType; ///< where the file defines the node as of a kind that has no class, such as "light"
    dson::KeptMembers definition;
    dson::KeptMembers geometryDefinition; ///< of its first geometry, where the same file defines that
    std::size_t vertexCount = 0;          ///< which that has there

    bool saysAnything() const
    {
        return !definitionType.empty() || !members.empty() || !geometry.empty() ||
               !furtherGeometries.empty() || !definition.empty() || !geometryDefinition.empty();
    }
};

/// Of a modifier: held by what the scene has of it, which is its dial or itself.
struct KeptModifier {
    std::shared_ptr<const KeptLoad> load;
    std::string id;
    dson::KeptMembers members;
    dson::KeptMembers definition; ///< where the same file defines it

    bool saysAnything() const { return !members.empty() || !definition.empty(); }
};

/// Of a skin's part for one bone.
struct KeptJoint {
    bool hadNoWeights = false; ///< for all angles together: they are the mean of those for each alone
    dson::KeptMembers members;
};

/// The owner has it from now on.
void Keep(DzNode& owner, KeptNode kept);
void Keep(QObject& owner, KeptModifier kept);
void Keep(DzBoneBinding& owner, KeptJoint kept);
void Keep(DzSkinBinding& owner, dson::SkinBinding::Normalizing kept);
/// Null for nothing.
const KeptNode* KeptOfNode(const DzNode& node);
const KeptModifier* KeptOfModifier(const QObject& owner);
const KeptJoint* KeptOfJoint(const DzBoneBinding& owner);
const dson::SkinBinding::Normalizing* KeptOfSkin(const DzSkinBinding& owner);

} // namespace openhost
