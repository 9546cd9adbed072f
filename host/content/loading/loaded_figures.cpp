// The figures of a file that is being loaded, and what the ids of its instances stand for.
// SPDX-License-Identifier: MIT

#include "loaded_figures.h"

#include "dson/uri.h"
#include "dzbone.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "loading/channel_properties.h"

namespace openhost {

void LoadedFigures::enter(const dson::NodeInstance& instance, std::size_t figure, DzNode& node)
{
    _placed.insert(&node);
    enterPlace(instance.id, figure, node);
    for (const dson::GeometryInstance& geometry : instance.geometries)
        enterPlace(geometry.id, figure, node);
}

void LoadedFigures::enterPlace(const std::string& id, std::size_t figure, DzNode& node)
{
    if (!id.empty())
        _places.emplace(id, Place{figure, &node});
}

const LoadedFigures::Place* LoadedFigures::placeOf(const std::string& reference) const
{
    return placeOfId(dson::ParseUri(reference).id);
}

std::optional<LoadedFigures::Place> LoadedFigures::withoutGeometry() const
{
    std::optional<Place> found;
    for (std::size_t i = 0; i < _figures.size(); ++i) {
        if (!_figures[i].instance->geometries.empty() || _figures[i].assembly.geometryId().empty())
            continue;
        if (found)
            return std::nullopt;
        found = Place{i, _figures[i].node};
    }
    return found;
}

std::optional<LoadedFigures::Place> LoadedFigures::onlyUnplaced(const std::string& path,
                                                                const std::string& bone) const
{
    std::vector<Place> found;
    for (std::size_t i = 0; i < _figures.size(); ++i) {
        const FigureAssembly& assembly = _figures[i].assembly;
        DzNode* const node = assembly.isNamedBy(path) ? assembly.findNode(bone) : nullptr;
        if (node && !isPlaced(*node))
            found.push_back({i, node});
    }
    return found.size() == 1 ? std::optional<Place>(found.front()) : std::nullopt;
}

std::optional<LoadedFigures::Place> LoadedFigures::boneOf(const std::string& id,
                                                          const FigureFilter& isMeant) const
{
    std::vector<Place> found, followingNone;
    for (std::size_t i = 0; !id.empty() && i < _figures.size(); ++i) {
        const FigureAssembly& assembly = _figures[i].assembly;
        DzNode* const node = !isMeant || isMeant(assembly) ? assembly.findNode(id) : nullptr;
        if (!qobject_cast<DzBone*>(node))
            continue;
        found.push_back({i, node});
        if (_figures[i].instance->conformTarget.empty())
            followingNone.push_back(found.back());
    }
    const std::vector<Place>& meant = found.size() == 1 ? found : followingNone;
    return meant.size() == 1 ? std::optional<Place>(meant.front()) : std::nullopt;
}

const LoadedFigures::Place* LoadedFigures::placeOfId(const std::string& id) const
{
    const auto found = _places.find(id);
    return found == _places.end() ? nullptr : &found->second;
}

DzNumericProperty* LoadedFigures::resolve(const std::string& text) const
{
    const dson::Uri uri = dson::ParseUri(text);
    const auto dial = _dials.find(uri.id);
    if (dial != _dials.end() && uri.property.compare(0, 5, "value") == 0)
        return dial->second;
    const Place* place = placeOfId(uri.node);
    if (!place)
        place = placeOfId(uri.id);
    if (!place)
        return nullptr;
    if (uri.property.compare(0, 5, "value") == 0)
        return _figures[place->figure].assembly.findDial(uri, place->node);
    const Place* const part = placeOfId(uri.id);
    return FindNodeChannel(part ? *part->node : *place->node, uri.property);
}

} // namespace openhost
