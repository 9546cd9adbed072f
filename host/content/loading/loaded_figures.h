// The figures of a file that is being loaded, and what the ids of its instances stand for.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "figure_assembly.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class DzNode;
class DzNumericProperty;

namespace openhost {

struct LoadedFigure {
    FigureAssembly assembly;
    const dson::NodeInstance* instance;
    DzNode* node;
    DzNode* parent = nullptr; ///< in another figure of the file or in the scene; null for a root
    bool isTop = true;        ///< neither hangs on anything nor is worn by what is selected
};

class LoadedFigures {
public:
    /// What an instance id stands for.
    struct Place {
        std::size_t figure; ///< index into all()
        DzNode* node;
    };

    std::vector<LoadedFigure>& all() { return _figures; }
    const std::vector<LoadedFigure>& all() const { return _figures; }
    bool empty() const { return _figures.empty(); }

    /// The instance and its geometries stand for a node of the figure. Of equal ids the first counts.
    void enter(const dson::NodeInstance& instance, std::size_t figure, DzNode& node);
    void enterDial(const std::string& id, DzNumericProperty& dial) { _dials.emplace(id, &dial); }

    const Place* placeOf(const std::string& reference) const; ///< null for none
    /// The one figure whose instance says nothing of its geometry, though it has one: references to it have
    /// nothing to lead to. Nothing for none or several.
    std::optional<Place> withoutGeometry() const;
    bool isPlaced(const DzNode& node) const { return _placed.count(&node) > 0; } ///< an instance means it
    /// The bone of the one figure of that file that has such a bone to which no instance belongs; nothing for
    /// none or several.
    std::optional<Place> onlyUnplaced(const std::string& path, const std::string& bone) const;
    using FigureFilter = std::function<bool(const FigureAssembly&)>;
    /// The bone of the one figure that has it; of several figures, the one that follows none. Nothing where
    /// that is open.
    std::optional<Place> boneOf(const std::string& id, const FigureFilter& isMeant = nullptr) const;
    /// The property that a URI names by the ids of instances; null for none.
    DzNumericProperty* resolve(const std::string& text) const;

private:
    const Place* placeOfId(const std::string& id) const;
    void enterPlace(const std::string& id, std::size_t figure, DzNode& node);

    std::vector<LoadedFigure> _figures;
    std::unordered_map<std::string, Place> _places;
    std::unordered_set<const DzNode*> _placed;
    std::unordered_map<std::string, DzNumericProperty*> _dials; ///< by the ids of their instances
};

} // namespace openhost
