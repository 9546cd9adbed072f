// What a file sets shapes and controls to.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene/group_paths.h"
#include "scene_load.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace openhost {

/// Turns the instances of modifiers into values of dials and effects of the figures of a load.
class InstanceDials {
public:
    explicit InstanceDials(SceneLoad& load);

    void dialAll();
    /// What the file sets on the selection rather than on a figure of its own.
    void dialSelection();
    void tellOddities();

private:
    using Place = LoadedFigures::Place;

    /// What the instance is set on; nothing for none.
    std::optional<Place> placeOfParent(const dson::ModifierInstance& instance);
    /// The bone that the parent of a dial means though no instance belongs to it.
    std::optional<Place> boneOf(const dson::Uri& parent, const dson::Uri& dial) const;
    void dial(const dson::ModifierInstance& instance);
    /// @param node  whose dials come first where the URL's file is not there
    DzNumericProperty* findDial(FigureAssembly& assembly, const dson::Uri& url, const DzNode& node);
    /// What the instance says beyond its dial goes to what it is about.
    void keep(const dson::ModifierInstance& instance, const FigureAssembly& assembly, const dson::Uri& url,
              DzNumericProperty* dial);
    /// A shape that lies outside the figure's own folders, or in this file.
    void addShapeFile(FigureAssembly& assembly, const dson::Uri& url);
    void noteOddValue(const dson::ModifierInstance& instance);

    SceneLoad& _load;
    SceneSources& _sources;                  ///< of the load
    std::set<const DzNumericProperty*> _set; ///< dials that an instance has set
    std::vector<const dson::ModifierInstance*> _onSelection;
    std::vector<std::string> _numbersInTexts;
    GroupPaths _groups;
};

} // namespace openhost
