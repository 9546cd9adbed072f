// The morphs of one node, and those that are dialed in.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QString>

class DzFloatProperty;
class DzMorph;
class DzMorphDeltas;
class DzNode;
class DzNumericProperty;
class DzProperty;

namespace kst {

/// One morph. Pointers are borrowed from the scene.
struct MorphInfo {
    DzMorph* morph = nullptr;
    std::string morphName;
    DzFloatProperty* property = nullptr;
    bool isFavorite = false;     ///< when the list was built
    std::string deltasUri;       ///< empty when the morph has no deltas of its own asset
    bool isInDataFolder = false; ///< the deltas live in a content library's data file
    std::string propertyPath;

    QString getMorphNameQ() const;
    QString getPathQ() const;
    QString getLabelQ() const;
};

/// A property that another one drives, or the one itself.
struct ExpandedProperty {
    /// Says in linkType that the property was not reached through a link.
    static constexpr int ITSELF = 7;

    DzNumericProperty* property = nullptr; ///< borrowed from the scene
    int linkType = ITSELF;                 ///< the host's link type, 0 to 6, or ITSELF
    double scalar = 1.0;
    double addend = 0.0;
};

/// A snapshot of a node's morphs: build a new one after morphs were added. Must not outlive the node's
/// morphs.
class MorphList {
public:
    /// Where a property name was found.
    enum class Location : int { Morph, Node };
    /// Morph name and current value.
    typedef std::pair<std::string, float> ActiveMorph;

    /// @throws Exception  "expected modifier to have exactly one property"
    explicit MorphList(DzNode& node);
    ~MorphList();
    MorphList(const MorphList&) = delete;
    MorphList& operator=(const MorphList&) = delete;

    const std::vector<std::shared_ptr<MorphInfo>>& getAll() const; ///< in modifier order
    const std::vector<std::shared_ptr<MorphInfo>>& getFavorites() const;
    /// Exact match; the first of equal names. Null for none.
    std::shared_ptr<MorphInfo> findMorphByName(std::string_view name) const;
    std::shared_ptr<MorphInfo> findMorphByLabel(std::string_view label) const;

    /// The node's own float property of this name, private ones included, or the morph's.
    /// @param where  receives the place, unless null or nothing is found
    DzFloatProperty* findPropertyInNode(std::string_view name, Location* where) const;
    /// @throws Exception  "failed to find property {} in node {}"
    DzFloatProperty& findPropertyInNode_X(std::string_view name, Location* where) const;

    /// Morphs whose value is not zero, in modifier order.
    std::vector<ActiveMorph> getActiveProperties() const;

    /// What moving the named dial moves: a morph's dial itself and then all that it drives; of a property of
    /// the node only what it drives, or itself where it drives nothing. Empty for an unknown name.
    /// @param where  as for findPropertyInNode
    std::vector<ExpandedProperty> expandProperty(std::string_view name, Location* where) const;
    /// One line for the user: head or body, name, path and label.
    std::string describe(const ExpandedProperty& entry) const;

    /// Makes a morph of the deltas, which it shares by counting, with a dial from 0 to 1, as the node's last
    /// modifier and enters it in the list.
    /// @param replaceDeltasIfExists  gives a morph of this name the deltas instead of failing
    /// @throws Exception  "a morph with the name {} exists already"; the node has no object, or it takes no
    /// morph
    std::shared_ptr<MorphInfo> createMorph_X(DzMorphDeltas& deltas, std::string_view morphName,
                                             bool replaceDeltasIfExists, const QString& label,
                                             const QString& path);

    /// Whether the property stands below "/Actor/Head/"; false for null.
    static bool IsHeadMorph(const DzProperty* property);
    /// What the property drives, in the order of its links; nothing for null.
    static std::vector<ExpandedProperty> GetSubControllers(const DzProperty* property);
    static DzFloatProperty& GetMorphProperty_X(DzMorph& morph);
    static DzMorph* FindMorph(DzNode& node, std::string_view name);
    static DzMorph& FindMorph_X(DzNode& node, std::string_view name);
    static DzFloatProperty& FindMorphProperty_X(DzNode& node, std::string_view name);

private:
    struct Impl;
    std::unique_ptr<Impl> _pImpl;
};

} // namespace kst
