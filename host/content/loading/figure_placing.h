// Figures, props and their parts at their places.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene_load.h"

#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace openhost {

class InstanceOrder;

/// Turns the instances of nodes into figures of a load.
class FigurePlacing {
public:
    explicit FigurePlacing(SceneLoad& load);

    void placeAll();
    /// Once all dials are there.
    void markFavorites() const;

private:
    using Place = LoadedFigures::Place;

    std::string parentOf(const dson::NodeInstance& instance) const; ///< empty where a circle is cut
    /// Null for none that can be read.
    std::shared_ptr<const DefinitionTree> definitionOf(const dson::NodeInstance& instance);
    bool isBone(const dson::NodeInstance& instance); ///< a part of a figure
    /// It hangs on what could not be made, and the file that has failed it does not define it.
    bool isLostWithFigure(const dson::NodeInstance& instance);
    /// @param isRepeated  another instance has its id
    /// @return false for what hangs on nothing that is there so far, though it should
    bool place(const dson::NodeInstance& instance, bool isRepeated);
    void placeHomeless(std::vector<const dson::NodeInstance*> homeless, const InstanceOrder& order);
    void placeHomeless(const dson::NodeInstance& instance, bool isRepeated);
    /// On the only figure that has such a bone to which no instance belongs.
    /// @return false where there is none, or several
    bool placeStray(const dson::NodeInstance& instance, const dson::Uri& url);
    /// @return whether it is a figure or a node of its own
    bool make(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* above);
    void fail(const dson::NodeInstance& instance);
    /// True when the instance is a part of a figure that is there already. A root of the same file is another
    /// figure.
    bool overlay(const dson::NodeInstance& instance, const dson::Uri& url, std::size_t figure,
                 bool isRepeated);
    bool instantiate(const dson::NodeInstance& instance, const dson::Uri& url, DzNode* parent);
    /// Of a bone that no figure has a place for.
    FigureAssembly makeBoneAlone(const dson::NodeInstance& instance, const dson::Uri& url,
                                 const DefinitionTree& definition);
    void applyInstance(const dson::NodeInstance& instance, DzNode& node, std::size_t figure);

    SceneLoad& _load;
    SceneSources& _sources;                             ///< of the load
    std::set<std::string> _failed;                      ///< instances that stand for no figure
    std::set<std::string> _failedFiles;                 ///< paths of their definitions
    std::unordered_set<const dson::NodeInstance*> _cut; ///< the parents of which count for nothing
    /// Those whose instances mark dials.
    std::vector<std::pair<const dson::NodeInstance*, Place>> _withFavorites;
};

} // namespace openhost
