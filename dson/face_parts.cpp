// Turning the members of a DSON file into values: faces.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "json_rows.h"
#include "parts.h"

#include <algorithm>

#include <fmt/format.h>

namespace dson {

namespace {

constexpr std::uint32_t noLabel = UINT32_MAX;

/// How many faces something was met at, and which was the first.
struct FaceTally {
    std::size_t count = 0, first = 0;

    void add(std::size_t face)
    {
        if (count++ == 0)
            first = face;
    }
};

struct FaceOddities {
    FaceTally leftOut, cut, unlabelled;

    void tell(const std::string& id, ParseContext& context) const
    {
        const auto say = [&](const FaceTally& tally, const char* one, const char* many, const char* what) {
            if (tally.count > 0)
                context.warn(id, fmt::format("{} {}: the first is {}", base::Counted(tally.count, one, many),
                                             what, tally.first));
        };
        say(leftOut, "face is", "faces are",
            "not two labels and three corners that the mesh has, and left out");
        say(cut, "face keeps", "faces keep", "only those corners that the mesh has");
        say(unlabelled, "face is", "faces are",
            "of a group or surface that is not defined, and put into one named default");
    }
};

/// The place of the label for what has none.
std::uint32_t DefaultLabel(std::vector<std::string>& names)
{
    const auto found = std::find(names.begin(), names.end(), "default");
    const auto place = static_cast<std::uint32_t>(found - names.begin());
    if (found == names.end())
        names.emplace_back("default");
    return place;
}

void LabelTheRest(std::vector<std::uint32_t>& labels, std::vector<std::string>& names)
{
    if (std::find(labels.begin(), labels.end(), noLabel) == labels.end())
        return;
    std::replace(labels.begin(), labels.end(), noLabel, DefaultLabel(names));
}

class FaceReader {
public:
    FaceReader(geometry::Topology& topology, geometry::LeftOutFaces& leftOut)
        : _topology(topology), _leftOut(leftOut)
    {
    }

    void read(const Element& row)
    {
        const std::size_t face = _place++;
        _corners.clear();
        const std::size_t given = readRow(row);
        if (_corners.size() < 3) {
            _leftOut.numbers.push_back(static_cast<std::uint32_t>(face));
            _met.leftOut.add(face);
            return;
        }
        if (_corners.size() < given)
            _met.cut.add(face);
        _topology.addFace(_corners);
        const std::uint32_t group = labelOf(0, _topology.groupNames);
        const std::uint32_t surface = labelOf(1, _topology.surfaceNames);
        if (group == noLabel || surface == noLabel)
            _met.unlabelled.add(face);
        _topology.faceGroups.push_back(group);
        _topology.faceSurfaces.push_back(surface);
    }

    const FaceOddities& met() const { return _met; }

private:
    /// @return how many corners it names, be they there or not
    std::size_t readRow(const Element& row)
    {
        std::size_t place = 0;
        if (!row.is_array())
            return 0;
        for (const Element item : Items(row)) {
            const double number = AsNumber(item).value_or(NAN);
            if (place < 2)
                _labels[place] = number;
            else if (IsIndex(number, _topology.vertexCount))
                _corners.push_back(static_cast<std::uint32_t>(number));
            ++place;
        }
        return place < 2 ? 0 : place - 2;
    }

    std::uint32_t labelOf(std::size_t kind, const std::vector<std::string>& names) const
    {
        const bool isThere = IsIndex(_labels[kind], static_cast<double>(names.size()));
        return isThere ? static_cast<std::uint32_t>(_labels[kind]) : noLabel;
    }

    geometry::Topology& _topology;
    geometry::LeftOutFaces& _leftOut;
    std::size_t _place = 0;
    double _labels[2] = {};
    std::vector<std::uint32_t> _corners;
    FaceOddities _met;
};

} // namespace

geometry::LeftOutFaces ParseFaces(const Element& json, geometry::Topology& topology, const std::string& id,
                                  ParseContext& context)
{
    geometry::LeftOutFaces leftOut;
    FaceReader reader(topology, leftOut);
    ForEachValue(json, "polylist", [&](const Element& row) { reader.read(row); });
    LabelTheRest(topology.faceGroups, topology.groupNames);
    LabelTheRest(topology.faceSurfaces, topology.surfaceNames);
    reader.met().tell(id, context);
    return leftOut;
}

} // namespace dson
