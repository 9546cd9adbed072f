// Parsing the records of one chunk of OBJ text.
// SPDX-License-Identifier: MIT

#include "obj_chunk.h"

#include "obj_scan.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>
#include <limits>

namespace geometry {

namespace {

/// Turns file coordinates into ours.
struct Placement {
    int axes[3];
    double factors[3];

    explicit Placement(const ObjSpace& space)
    {
        const ObjAxis* const from[] = {&space.first, &space.second, &space.third};
        for (int k = 0; k < 3; ++k) {
            axes[k] = from[k]->axis;
            factors[k] = from[k]->invert ? -space.centimetresPerUnit : space.centimetresPerUnit;
        }
        assert((1 << axes[0] | 1 << axes[1] | 1 << axes[2]) == 7 && "each axis is used once");
    }
};

/// Whether the format has such records, of whatever use they are here.
bool IsOfTheFormat(std::string_view keyword)
{
    static constexpr std::string_view all[] = {
        "vn",     "f",          "vt",        "s",     "g",     "o",      "usemtl",   "l",        "p",
        "mtllib", "vp",         "fo",        "mg",    "lod",   "bevel",  "c_interp", "d_interp", "usemap",
        "maplib", "shadow_obj", "trace_obj", "ctech", "stech", "cstype", "deg",      "bmat",     "step",
        "curv",   "curv2",      "surf",      "parm",  "trim",  "hole",   "scrv",     "sp",       "end",
        "con",    "call",       "csh",       "bsp",   "bzp",   "cdc",    "cdp",      "res"};
    return std::find(std::begin(all), std::end(all), keyword) != std::end(all);
}

class ChunkParser {
public:
    ChunkParser(std::string_view text, const ObjReadOptions& options)
        : _scan(text.data(), text.data() + text.size()), _options(options), _placement(options.space)
    {
    }

    ObjChunk parse()
    {
        while (!_scan.atEnd()) {
            if (_scan.nextToken())
                parseRecord();
            else if (!_scan.atEnd() && *_scan.at() == '#')
                _scan.skipLine();
            else
                _scan.skipRecord();
        }
        return std::move(_chunk);
    }

private:
    void parseRecord()
    {
        const char* const record = _scan.at();
        const std::string_view keyword = _scan.takeToken();
        if (keyword == "v")
            parseVertex(record);
        else if (keyword == "f" && _options.readFaces)
            parseFace(record);
        else if (keyword == "vt" && _options.readTexCoords)
            parseTexCoord(record);
        else if (keyword == "l" && _options.readLines)
            parseLine(record);
        else if (keyword == "g" && _options.readGroups)
            startRun(_chunk.groups);
        else if (keyword == "usemtl" && _options.readSurfaces)
            startRun(_chunk.surfaces);
        else if (keyword == "mtllib")
            _chunk.materialLibraries.emplace_back(_scan.takeText());
        else if (!IsOfTheFormat(keyword))
            _chunk.unknown.add(record);
        _scan.skipRecord();
    }

    void parseVertex(const char* record)
    {
        Vec3f position;
        for (int k = 0; k < 3; ++k) {
            if (!_scan.nextToken())
                throw ObjFault{record, "vertex has fewer than three coordinates"};
            position[_placement.axes[k]] = takeFloat(record, _placement.factors[k]);
        }
        _chunk.positions.push_back(position);
    }

    /// A number that is finite in the precision that meshes have.
    float takeFloat(const char* record, double factor = 1.0)
    {
        const char* const start = _scan.at();
        const double value = _scan.takeNumber() * factor;
        if (std::abs(value) > std::numeric_limits<float>::max())
            throw ObjFault{record, "bad number \"" +
                                       std::string(start, static_cast<std::size_t>(_scan.at() - start)) +
                                       "\""};
        return static_cast<float>(value);
    }

    void parseTexCoord(const char* record)
    {
        if (!_scan.nextToken())
            throw ObjFault{record, "texture coordinate has no number"};
        TexCoords::Uv uv;
        uv.u = takeFloat(record);
        if (_scan.nextToken())
            uv.v = takeFloat(record);
        _chunk.uvs.push_back(uv);
    }

    void parseFace(const char* record)
    {
        const std::size_t first = _chunk.corners.values.size();
        std::size_t uvs = 0;
        while (_scan.nextToken())
            uvs += parseCorner();
        const std::size_t size = _chunk.corners.values.size() - first;
        if (size >= smallestObjFace) {
            _chunk.cornersHaveUvs &= uvs == size;
            _chunk.namesUvs |= uvs > 0;
            _chunk.faceSizes.push_back(static_cast<std::uint32_t>(size));
            return;
        }
        _chunk.corners.cut(first);
        _chunk.cornerUvs.cut(_chunk.cornerUvs.values.size() - (_options.readTexCoords ? uvs : 0));
        _chunk.shortFaces.add(record);
    }

    /// @return whether it names a texture coordinate
    bool parseCorner()
    {
        const char* const start = _scan.at();
        append(_chunk.corners, _scan.takeIndex(), _chunk.positions.size());
        bool hasUv = false;
        if (_scan.takeSlash()) {
            hasUv = _scan.atIndex();
            if (hasUv)
                appendUv(_scan.takeIndex());
            if (_scan.takeSlash() && _scan.atIndex())
                _scan.takeIndex(); // normals are always worked out anew
        }
        _scan.endToken(start);
        return hasUv;
    }

    void parseLine(const char* record)
    {
        const std::size_t first = _chunk.lineVertices.values.size();
        while (_scan.nextToken()) {
            const char* const start = _scan.at();
            append(_chunk.lineVertices, _scan.takeIndex(), _chunk.positions.size());
            if (_scan.takeSlash() && _scan.atIndex())
                _scan.takeIndex();
            _scan.endToken(start);
        }
        const std::size_t size = _chunk.lineVertices.values.size() - first;
        if (size >= shortestObjLine) {
            _chunk.lineSizes.push_back(static_cast<std::uint32_t>(size));
            return;
        }
        _chunk.lineVertices.cut(first);
        _chunk.shortLines.add(record);
    }

    void appendUv(std::int32_t index)
    {
        if (_options.readTexCoords)
            append(_chunk.cornerUvs, index, _chunk.uvs.size());
    }

    static void append(ObjIndices& indices, std::int32_t index, std::size_t defined)
    {
        if (index > 0) {
            indices.values.push_back(index - 1);
            return;
        }
        indices.relative.push_back(static_cast<std::uint32_t>(indices.values.size()));
        indices.values.push_back(static_cast<std::int32_t>(defined) + index);
    }

    void startRun(std::vector<ObjNameRun>& runs)
    {
        const std::string_view name = _scan.takeText();
        runs.push_back({static_cast<std::uint32_t>(_chunk.faceSizes.size()),
                        name.empty() ? std::string("default") : std::string(name)});
    }

    ObjScanner _scan;
    const ObjReadOptions& _options;
    Placement _placement;
    ObjChunk _chunk;
};

} // namespace

ObjChunk ParseObjChunk(std::string_view text, const ObjReadOptions& options)
{
    return ChunkParser(text, options).parse();
}

} // namespace geometry
