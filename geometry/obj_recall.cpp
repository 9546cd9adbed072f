// What an OBJ text says, told from what it was made of.
// SPDX-License-Identifier: MIT

#include "obj_recall.h"

#include "for_each_index.h"
#include "obj_chunk.h"
#include "obj_number.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <unordered_map>

namespace geometry {

namespace {

/// The reader takes a name as it stands: no blanks at its ends, nothing that ends or continues a line, and no
/// comment.
bool IsPlainName(const std::string& name)
{
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) >= ' '; };
    return !name.empty() && std::all_of(name.begin(), name.end(), isPlain) && name.front() != ' ' &&
           name.back() != ' ' && name.front() != '#' && name.front() != '\\' && name.back() != '\\';
}

/// Labels as the reader numbers them: in the order in which faces first have them, equal names as one.
class RecalledLabels {
public:
    RecalledLabels(const std::vector<std::uint32_t>& labels, const std::vector<std::string>& names)
    {
        constexpr std::uint32_t none = UINT32_MAX;
        std::vector<std::uint32_t> numbers(names.size(), none);
        std::unordered_map<std::string, std::uint32_t> known;
        _labels.reserve(labels.size());
        for (const std::uint32_t label : labels) {
            if (numbers[label] == none) {
                const auto [entry, isNew] =
                    known.emplace(names[label], static_cast<std::uint32_t>(_names.size()));
                if (isNew)
                    _names.push_back(names[label]);
                _arePlain = _arePlain && IsPlainName(names[label]);
                numbers[label] = entry->second;
            }
            _labels.push_back(numbers[label]);
        }
    }

    bool arePlain() const { return _arePlain; }
    std::vector<std::uint32_t> takeLabels() { return std::move(_labels); }
    std::vector<std::string> takeNames() { return std::move(_names); }

private:
    std::vector<std::uint32_t> _labels;
    std::vector<std::string> _names;
    bool _arePlain = true;
};

/// @return whether the names can be told
bool RecallLabels(const std::vector<std::uint32_t>& labels, const std::vector<std::string>& names,
                  std::vector<std::uint32_t>& recalled, std::vector<std::string>& recalledNames)
{
    RecalledLabels found(labels, names);
    recalled = found.takeLabels();
    recalledNames = found.takeNames();
    return found.arePlain();
}

bool HasPlainFaces(const Topology& topology, bool triangulate)
{
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const std::size_t size = topology.face(f).size();
        if (size < smallestObjFace || (triangulate && size > 4))
            return false;
    }
    return true;
}

/// Null where the text has to be looked at.
std::shared_ptr<const Topology> RecallTopology(const WrittenObj& written, const ObjReadOptions& options)
{
    const Topology& from = *written.mesh.topology;
    auto topology = std::make_shared<Topology>();
    topology->vertexCount = from.vertexCount;
    if (!options.readFaces || !written.options.writeFaces || from.faceCount() == 0)
        return topology;
    if (!HasPlainFaces(from, written.options.triangulate))
        return nullptr;
    const bool byGeometry = written.options.grouping == ObjGrouping::Geometry;
    const bool bySurface = written.options.grouping == ObjGrouping::Surfaces;
    if (written.options.grouping == ObjGrouping::Single)
        return nullptr;
    bool isPlain = true;
    if (options.readGroups && (byGeometry || bySurface))
        isPlain = RecallLabels(byGeometry ? from.faceGroups : from.faceSurfaces,
                               byGeometry ? from.groupNames : from.surfaceNames, topology->faceGroups,
                               topology->groupNames);
    if (options.readSurfaces && written.options.writeSurfaces)
        isPlain = RecallLabels(from.faceSurfaces, from.surfaceNames, topology->faceSurfaces,
                               topology->surfaceNames) &&
                  isPlain;
    if (!isPlain)
        return nullptr;
    const auto isSame = [&](auto part) { return from.*part == (*topology).*part; };
    if (isSame(&Topology::faceGroups) && isSame(&Topology::groupNames) && isSame(&Topology::faceSurfaces) &&
        isSame(&Topology::surfaceNames))
        return written.mesh.topology;
    topology->faceOffsets = from.faceOffsets;
    topology->cornerVertices = from.cornerVertices;
    return topology;
}

/// From centimetres to the file's number and back.
class RecalledPlacement {
public:
    RecalledPlacement(const ObjWriteOptions& written, const ObjSpace& space)
        : _decimal(written.decimals),
          _unit(1.0 / written.space.centimetresPerUnit), _written{written.space.first, written.space.second,
                                                                  written.space.third},
          _read{space.first, space.second, space.third}, _scale(space.centimetresPerUnit)
    {
    }

    /// @return whether the number can be told
    bool apply(Vec3f from, Vec3f& to) const
    {
        for (int k = 0; k < 3; ++k) {
            double value = from[_written[k].axis] * _unit;
            if (_written[k].invert)
                value = -value;
            const double scaled = _decimal.scaled(std::abs(value));
            if (!(scaled < ObjDecimal::limit))
                return false;
            double number = scaled / _decimal.power();
            if (value < 0.0 && scaled != 0.0)
                number = -number;
            const double placed = number * (_read[k].invert ? -_scale : _scale);
            if (std::abs(placed) > std::numeric_limits<float>::max())
                return false;
            to[_read[k].axis] = static_cast<float>(placed);
        }
        return true;
    }

private:
    ObjDecimal _decimal;
    double _unit;
    ObjAxis _written[3], _read[3];
    double _scale;
};

std::optional<std::vector<Vec3f>> RecallPositions(const WrittenObj& written, const ObjSpace& space)
{
    const RecalledPlacement placement(written.options, space);
    const std::vector<Vec3f>& from = written.mesh.positions;
    std::vector<Vec3f> positions(from.size());
    std::atomic<bool> areKnown = true;
    ForEachIndex(from.size(), 4096, [&](std::size_t v) {
        if (!placement.apply(from[v], positions[v]))
            areKnown = false;
    });
    if (!areKnown)
        return std::nullopt;
    return positions;
}

} // namespace

std::optional<ObjContent> Recall(const WrittenObj& written, const ObjReadOptions& options)
{
    const bool needsLines = written.hasLines && options.readLines;
    const bool needsTexCoords = written.hasTexCoords && options.readTexCoords;
    if (needsLines || needsTexCoords || written.options.decimals > ObjDecimal::mostDecimals ||
        written.options.writeObjects || !written.options.materialLibrary.empty())
        return std::nullopt;
    ObjContent content;
    content.mesh.topology = RecallTopology(written, options);
    if (!content.mesh.topology)
        return std::nullopt;
    std::optional<std::vector<Vec3f>> positions = RecallPositions(written, options.space);
    if (!positions)
        return std::nullopt;
    content.mesh.positions = std::move(*positions);
    return content;
}

} // namespace geometry
