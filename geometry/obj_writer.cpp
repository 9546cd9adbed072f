// Writing OBJ text: cut into pieces that are formatted in parallel and joined in order.
// SPDX-License-Identifier: MIT

#include "geometry/obj.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/errors.h"

#include <tbb/parallel_for.h>

#include <cassert>
#include <cmath>

namespace geometry {

namespace {

constexpr std::size_t elementsPerPiece = 1 << 13;

/// Appends numbers to a text without going through a locale or a format string.
class Digits {
public:
    Digits(std::string& text, int decimals) : _text(text), _decimals(decimals)
    {
        for (int d = 0; d < decimals; ++d)
            _power *= 10.0;
    }

    void index(std::uint64_t value)
    {
        char buffer[20];
        char* first = buffer + sizeof buffer;
        do
            *--first = static_cast<char>('0' + value % 10);
        while ((value /= 10) != 0);
        _text.append(first, static_cast<std::size_t>(buffer + sizeof buffer - first));
    }

    void number(double value)
    {
        const double scaled = std::nearbyint(std::abs(value) * _power);
        // Below 2^53 the product of a float and up to nine decimals is exact, and so is its rounding.
        if (_decimals <= 9 && scaled < 9007199254740992.0)
            fixed(value < 0.0 && scaled != 0.0, static_cast<std::uint64_t>(scaled));
        else
            fmt::format_to(std::back_inserter(_text), "{:.{}f}", value == 0.0 ? 0.0 : value, _decimals);
    }

private:
    void fixed(bool negative, std::uint64_t scaled)
    {
        char buffer[24];
        char* first = buffer + sizeof buffer;
        for (int d = 0; d < _decimals; ++d, scaled /= 10)
            *--first = static_cast<char>('0' + scaled % 10);
        if (_decimals > 0)
            *--first = '.';
        do
            *--first = static_cast<char>('0' + scaled % 10);
        while ((scaled /= 10) != 0);
        if (negative)
            *--first = '-';
        _text.append(first, static_cast<std::size_t>(buffer + sizeof buffer - first));
    }

    std::string& _text;
    int _decimals;
    double _power = 1.0;
};

enum class Record { Header, Vertices, TexCoords, Normals, PartStart, Faces, Lines };

/// A run of records of one kind of one part.
struct Piece {
    Record record = Record::Header;
    std::size_t part = 0, first = 0, last = 0;
};

/// A name as one line: a line break in it would begin a record of its own, and a backslash at its end would
/// go on in the next. Readers take no blank at the end for a part of the name.
std::string OneLine(std::string name)
{
    for (char& c : name)
        if (c == '\n' || c == '\r')
            c = ' ';
    if (!name.empty() && name.back() == '\\')
        name += ' ';
    return name;
}

/// How many elements the parts before have numbered.
struct Numbering {
    std::uint64_t vertices = 0, texCoords = 0, normals = 0;
};

class Formatter {
public:
    Formatter(base::Span<const ObjPart> parts, const ObjWriteOptions& options)
        : _parts(parts), _options(options)
    {
        assert(options.decimals >= 0 && options.decimals <= 17);
        plan();
    }

    std::size_t pieceCount() const { return _pieces.size(); }

    std::string format(std::size_t piece) const
    {
        const Piece& p = _pieces[piece];
        std::string text;
        switch (p.record) {
        case Record::Header:
            if (!_options.materialLibrary.empty())
                text = "mtllib " + _options.materialLibrary + "\n";
            break;
        case Record::Vertices:
            formatVectors(text, "v", _parts[p.part].mesh.positions, p,
                          1.0 / _options.space.centimetresPerUnit);
            break;
        case Record::Normals:
            formatVectors(text, "vn", _parts[p.part].normals, p, 1.0);
            break;
        case Record::TexCoords:
            formatTexCoords(text, p);
            break;
        case Record::PartStart:
            formatPartStart(text, _parts[p.part]);
            break;
        case Record::Faces:
            formatFaces(text, p);
            break;
        case Record::Lines:
            formatLines(text, p);
            break;
        }
        return text;
    }

private:
    bool hasTexCoords(const ObjPart& part) const { return _options.writeTexCoords && part.texCoords; }
    bool hasNormals(const ObjPart& part) const { return _options.writeNormals && !part.normals.empty(); }

    void plan()
    {
        _pieces.push_back({Record::Header});
        Numbering next;
        for (std::size_t p = 0; p < _parts.size(); ++p) {
            const ObjPart& part = _parts[p];
            assert(part.normals.empty() || part.normals.size() == part.mesh.vertexCount());
            _bases.push_back(next);
            _pieces.push_back({Record::PartStart, p});
            cut(Record::Vertices, p, part.mesh.vertexCount());
            next.vertices += part.mesh.vertexCount();
            if (hasTexCoords(part)) {
                cut(Record::TexCoords, p, part.texCoords->coordinates.size());
                next.texCoords += part.texCoords->coordinates.size();
            }
            if (hasNormals(part)) {
                cut(Record::Normals, p, part.normals.size());
                next.normals += part.normals.size();
            }
            if (_options.writeFaces)
                cut(Record::Faces, p, part.mesh.faceCount());
            if (_options.writeLines)
                cut(Record::Lines, p, part.lines.size());
        }
    }

    void cut(Record record, std::size_t part, std::size_t count)
    {
        for (std::size_t first = 0; first < count; first += elementsPerPiece)
            _pieces.push_back({record, part, first, std::min(first + elementsPerPiece, count)});
    }

    void formatPartStart(std::string& text, const ObjPart& part) const
    {
        if (_options.writeObjects && !part.name.empty())
            text += "o " + OneLine(part.name) + "\n";
    }

    void formatVectors(std::string& text, std::string_view keyword, base::Span<const Vec3f> values,
                       const Piece& piece, double factor) const
    {
        const ObjAxis axes[] = {_options.space.first, _options.space.second, _options.space.third};
        text.reserve((piece.last - piece.first) *
                     (keyword.size() + 3 * (6 + std::size_t(_options.decimals))));
        Digits digits(text, _options.decimals);
        for (std::size_t v = piece.first; v < piece.last; ++v) {
            text += keyword;
            for (const ObjAxis& axis : axes) {
                const double value = values[v][axis.axis] * factor;
                text += ' ';
                digits.number(axis.invert ? -value : value);
            }
            text += '\n';
        }
    }

    void formatTexCoords(std::string& text, const Piece& piece) const
    {
        const std::vector<TexCoords::Uv>& uvs = _parts[piece.part].texCoords->coordinates;
        Digits digits(text, _options.decimals);
        for (std::size_t i = piece.first; i < piece.last; ++i) {
            text += "vt ";
            digits.number(uvs[i].u);
            text += ' ';
            digits.number(uvs[i].v);
            text += '\n';
        }
    }

    void formatFaces(std::string& text, const Piece& piece) const
    {
        const ObjPart& part = _parts[piece.part];
        const Topology& topology = *part.mesh.topology;
        text.reserve((piece.last - piece.first) * 32);
        for (std::size_t f = piece.first; f < piece.last; ++f) {
            formatNames(text, part, f);
            const std::uint32_t first = topology.faceOffsets[f], end = topology.faceOffsets[f + 1];
            if (!_options.triangulate || end - first <= 4) {
                formatFace(text, piece.part, first, first + 1, end);
                continue;
            }
            for (std::uint32_t c = first + 1; c + 1 < end; ++c)
                formatFace(text, piece.part, first, c, c + 2);
        }
    }

    void formatLines(std::string& text, const Piece& piece) const
    {
        Digits digits(text, 0);
        for (std::size_t i = piece.first; i < piece.last; ++i) {
            text += 'l';
            for (const std::uint32_t vertex : _parts[piece.part].lines[i]) {
                text += ' ';
                digits.index(_bases[piece.part].vertices + vertex + 1);
            }
            text += '\n';
        }
    }

    /// One face of the corner `pivot` and the corners [from, to).
    void formatFace(std::string& text, std::size_t part, std::uint32_t pivot, std::uint32_t from,
                    std::uint32_t to) const
    {
        text += 'f';
        formatCorner(text, part, pivot);
        for (std::uint32_t c = from; c < to; ++c)
            formatCorner(text, part, c);
        text += '\n';
    }

    void formatCorner(std::string& text, std::size_t p, std::uint32_t corner) const
    {
        const ObjPart& part = _parts[p];
        const std::uint32_t vertex = part.mesh.topology->cornerVertices[corner];
        Digits digits(text, 0);
        text += ' ';
        digits.index(_bases[p].vertices + vertex + 1);
        const bool withUv = hasTexCoords(part) && !part.texCoords->cornerIndices.empty();
        if (withUv) {
            text += '/';
            digits.index(_bases[p].texCoords + part.texCoords->cornerIndices[corner] + 1);
        }
        if (hasNormals(part)) {
            text += withUv ? "/" : "//";
            digits.index(_bases[p].normals + vertex + 1);
        }
    }

    /// `g` and `usemtl` records stand wherever the name changes, so that faces keep their order.
    void formatNames(std::string& text, const ObjPart& part, std::size_t f) const
    {
        const Topology& topology = *part.mesh.topology;
        const bool isGrouped = _options.grouping == ObjGrouping::Geometry;
        if (_options.grouping == ObjGrouping::Single && f == 0)
            text += "g " + (part.name.empty() ? std::string("default") : OneLine(part.name)) + "\n";
        if (isGrouped)
            formatChange(text, "g ", topology.faceGroups, topology.groupNames, f);
        if (_options.grouping == ObjGrouping::Surfaces)
            formatChange(text, "g ", topology.faceSurfaces, topology.surfaceNames, f);
        if (_options.writeSurfaces)
            formatChange(text, "usemtl ", topology.faceSurfaces, topology.surfaceNames, f);
    }

    static void formatChange(std::string& text, const char* keyword, const std::vector<std::uint32_t>& labels,
                             const std::vector<std::string>& names, std::size_t f)
    {
        if (labels.empty() || (f > 0 && labels[f] == labels[f - 1]))
            return;
        text += keyword;
        text += OneLine(names[labels[f]]);
        text += '\n';
    }

    base::Span<const ObjPart> _parts;
    const ObjWriteOptions& _options;
    std::vector<Numbering> _bases;
    std::vector<Piece> _pieces;
};

/// Formats pieces [first, last) in parallel.
std::vector<std::string> FormatPieces(const Formatter& formatter, std::size_t first, std::size_t last)
{
    std::vector<std::string> texts(last - first);
    tbb::parallel_for(first, last, [&](std::size_t p) {
        base::ThrowIfCancelled();
        texts[p - first] = formatter.format(p);
    });
    return texts;
}

} // namespace

std::string FormatObj(base::Span<const ObjPart> parts, const ObjWriteOptions& options)
{
    const Formatter formatter(parts, options);
    const std::vector<std::string> texts = FormatPieces(formatter, 0, formatter.pieceCount());
    std::size_t size = 0;
    for (const std::string& text : texts)
        size += text.size();
    std::string whole;
    whole.reserve(size);
    for (const std::string& text : texts)
        whole += text;
    return whole;
}

void WriteObj(const std::filesystem::path& file, base::Span<const ObjPart> parts,
              const ObjWriteOptions& options)
{
    constexpr std::size_t batch = 64; // pieces held in memory at a time
    const Formatter formatter(parts, options);
    base::AtomicFile output(file, base::Durability::Temporary);
    for (std::size_t first = 0; first < formatter.pieceCount(); first += batch)
        for (const std::string& text :
             FormatPieces(formatter, first, std::min(first + batch, formatter.pieceCount())))
            output.write(text);
    base::ThrowIfCancelled();
    output.commit();
}

} // namespace geometry
