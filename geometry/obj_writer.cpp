// Writing OBJ text: cut into pieces that are formatted in parallel and joined in order.
// SPDX-License-Identifier: MIT

#include "obj_writer.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/errors.h"
#include "obj_number.h"

#include <tbb/parallel_pipeline.h>

#include <array>
#include <cassert>
#include <cmath>
#include <cstring>

namespace geometry {

namespace {

constexpr std::size_t elementsPerPiece = 1 << 13;

/// All numbers of two digits, one after the other.
struct DigitPairs {
    char text[200] = {};

    constexpr DigitPairs()
    {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr DigitPairs digitPairs;

/// Appends to a text of which not much more than the end is known, without going through a locale, a format
/// string or the text's own bookkeeping for each character.
class TextEnd {
public:
    /// @param decimals  of numbers
    TextEnd(std::string& text, int decimals) : _text(text), _decimal(decimals), _used(text.size()) {}
    ~TextEnd() { _text.resize(_used); }
    TextEnd(const TextEnd&) = delete;
    TextEnd& operator=(const TextEnd&) = delete;

    void put(char c) { *place(1) = c, ++_used; }

    void put(std::string_view more)
    {
        std::copy(more.begin(), more.end(), place(more.size()));
        _used += more.size();
    }

    void index(std::uint64_t value)
    {
        Digits digits;
        digits.first = whole(digits.first, value);
        put(digits);
    }

    void number(double value)
    {
        const double scaled = _decimal.scaled(std::abs(value));
        if (_decimal.decimals() <= ObjDecimal::mostDecimals && scaled < ObjDecimal::limit)
            fixed(value < 0.0 && scaled != 0.0, static_cast<std::uint64_t>(scaled));
        else
            put(fmt::format("{:.{}f}", value == 0.0 ? 0.0 : value, _decimal.decimals()));
    }

private:
    /// What is written from its end on. The numbers here have fewer characters than are copied, and copying
    /// always as many takes no call.
    struct Digits {
        static constexpr std::size_t most = 24;
        char text[2 * most];
        char* first = text + most;

        std::size_t count() const { return static_cast<std::size_t>(text + most - first); }
    };

    void put(const Digits& digits)
    {
        std::memcpy(place(Digits::most), digits.first, Digits::most);
        _used += digits.count();
    }

    /// Room for so many characters behind the end.
    char* place(std::size_t count)
    {
        if (_text.size() - _used < count)
            _text.resize(std::max(_text.capacity(), 2 * _text.size() + count + 256));
        return _text.data() + _used;
    }

    static char* pair(char* end, std::uint64_t value)
    {
        end[-1] = digitPairs.text[2 * value + 1];
        end[-2] = digitPairs.text[2 * value];
        return end - 2;
    }

    /// Writes the digits before the end and returns where they begin.
    static char* whole(char* end, std::uint64_t value)
    {
        for (; value >= 100; value /= 100)
            end = pair(end, value % 100);
        if (value >= 10)
            return pair(end, value);
        *--end = static_cast<char>('0' + value);
        return end;
    }

    void fixed(bool negative, std::uint64_t scaled)
    {
        Digits digits;
        char*& first = digits.first;
        std::uint64_t fraction = scaled % _decimal.wholePower();
        int open = _decimal.decimals();
        for (; open >= 2; open -= 2, fraction /= 100)
            first = pair(first, fraction % 100);
        if (open == 1)
            *--first = static_cast<char>('0' + fraction);
        if (_decimal.decimals() > 0)
            *--first = '.';
        first = whole(first, scaled / _decimal.wholePower());
        if (negative)
            *--first = '-';
        put(digits);
    }

    std::string& _text;
    ObjDecimal _decimal;
    std::size_t _used;
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
        TextEnd end(text, _options.decimals);
        for (std::size_t v = piece.first; v < piece.last; ++v) {
            end.put(keyword);
            for (const ObjAxis& axis : axes) {
                const double value = values[v][axis.axis] * factor;
                end.put(' ');
                end.number(axis.invert ? -value : value);
            }
            end.put('\n');
        }
    }

    void formatTexCoords(std::string& text, const Piece& piece) const
    {
        const std::vector<TexCoords::Uv>& uvs = _parts[piece.part].texCoords->coordinates;
        TextEnd end(text, _options.decimals);
        for (std::size_t i = piece.first; i < piece.last; ++i) {
            end.put("vt ");
            end.number(uvs[i].u);
            end.put(' ');
            end.number(uvs[i].v);
            end.put('\n');
        }
    }

    void formatFaces(std::string& text, const Piece& piece) const
    {
        const ObjPart& part = _parts[piece.part];
        const Topology& topology = *part.mesh.topology;
        text.reserve((piece.last - piece.first) * 64);
        TextEnd end(text, 0);
        const CornerIndices corners = cornersOf(piece.part);
        for (std::size_t f = piece.first; f < piece.last; ++f) {
            formatNames(end, part, f);
            const std::uint32_t first = topology.faceOffsets[f], behind = topology.faceOffsets[f + 1];
            if (!_options.triangulate || behind - first <= 4) {
                formatFace(end, corners, first, first + 1, behind);
                continue;
            }
            for (std::uint32_t c = first + 1; c + 1 < behind; ++c)
                formatFace(end, corners, first, c, c + 2);
        }
    }

    void formatLines(std::string& text, const Piece& piece) const
    {
        TextEnd end(text, 0);
        for (std::size_t i = piece.first; i < piece.last; ++i) {
            end.put('l');
            for (const std::uint32_t vertex : _parts[piece.part].lines[i]) {
                end.put(' ');
                end.index(_bases[piece.part].vertices + vertex + 1);
            }
            end.put('\n');
        }
    }

    /// What the corners of a part name; null what they do not.
    struct CornerIndices {
        const std::uint32_t *vertices = nullptr, *uvs = nullptr;
        bool hasNormals = false;
        Numbering behind; ///< the last of the parts before
    };

    CornerIndices cornersOf(std::size_t p) const
    {
        const ObjPart& part = _parts[p];
        CornerIndices corners;
        corners.vertices = part.mesh.topology->cornerVertices.data();
        if (hasTexCoords(part) && !part.texCoords->cornerIndices.empty())
            corners.uvs = part.texCoords->cornerIndices.data();
        corners.hasNormals = hasNormals(part);
        corners.behind = _bases[p];
        return corners;
    }

    /// One face of the corner `pivot` and the corners [from, to).
    static void formatFace(TextEnd& end, const CornerIndices& corners, std::uint32_t pivot,
                           std::uint32_t from, std::uint32_t to)
    {
        end.put('f');
        formatCorner(end, corners, pivot);
        for (std::uint32_t c = from; c < to; ++c)
            formatCorner(end, corners, c);
        end.put('\n');
    }

    static void formatCorner(TextEnd& end, const CornerIndices& corners, std::uint32_t corner)
    {
        const std::uint32_t vertex = corners.vertices[corner];
        end.put(' ');
        end.index(corners.behind.vertices + vertex + 1);
        if (corners.uvs) {
            end.put('/');
            end.index(corners.behind.texCoords + corners.uvs[corner] + 1);
        }
        if (corners.hasNormals) {
            end.put(corners.uvs ? "/" : "//");
            end.index(corners.behind.normals + vertex + 1);
        }
    }

    /// `g` and `usemtl` records stand wherever the name changes, so that faces keep their order.
    void formatNames(TextEnd& end, const ObjPart& part, std::size_t f) const
    {
        const Topology& topology = *part.mesh.topology;
        const bool isGrouped = _options.grouping == ObjGrouping::Geometry;
        if (_options.grouping == ObjGrouping::Single && f == 0)
            end.put("g " + (part.name.empty() ? std::string("default") : OneLine(part.name)) + "\n");
        if (isGrouped)
            formatChange(end, "g ", topology.faceGroups, topology.groupNames, f);
        if (_options.grouping == ObjGrouping::Surfaces)
            formatChange(end, "g ", topology.faceSurfaces, topology.surfaceNames, f);
        if (_options.writeSurfaces)
            formatChange(end, "usemtl ", topology.faceSurfaces, topology.surfaceNames, f);
    }

    static void formatChange(TextEnd& end, const char* keyword, const std::vector<std::uint32_t>& labels,
                             const std::vector<std::string>& names, std::size_t f)
    {
        if (labels.empty() || (f > 0 && labels[f] == labels[f - 1]))
            return;
        end.put(keyword);
        end.put(OneLine(names[labels[f]]));
        end.put('\n');
    }

    base::Span<const ObjPart> _parts;
    const ObjWriteOptions& _options;
    std::vector<Numbering> _bases;
    std::vector<Piece> _pieces;
};

/// Formats the pieces in parallel and hands each text over in order, while others are formatted.
template <class Take>
void FormatPieces(const Formatter& formatter, const Take& take)
{
    constexpr std::size_t inFlight = 16;
    // Held here, since the pipeline forgets what is on its way when one of its steps throws. They end in
    // order, so that a place is free again when the next piece for it begins.
    std::array<std::string, inFlight> texts;
    std::size_t next = 0;
    const auto nextPiece = [&](tbb::flow_control& flow) -> std::size_t {
        if (next == formatter.pieceCount())
            flow.stop();
        return next++;
    };
    const auto format = [&](std::size_t piece) {
        base::ThrowIfCancelled();
        texts[piece % inFlight] = formatter.format(piece);
        return piece;
    };
    const auto handOver = [&](std::size_t piece) { take(texts[piece % inFlight]); };
    tbb::parallel_pipeline(
        inFlight, tbb::make_filter<void, std::size_t>(tbb::filter_mode::serial_in_order, nextPiece) &
                      tbb::make_filter<std::size_t, std::size_t>(tbb::filter_mode::parallel, format) &
                      tbb::make_filter<std::size_t, void>(tbb::filter_mode::serial_in_order, handOver));
}

} // namespace

std::string FormatObj(base::Span<const ObjPart> parts, const ObjWriteOptions& options)
{
    std::string whole;
    FormatPieces(Formatter(parts, options), [&](const std::string& text) { whole += text; });
    return whole;
}

void WriteObjSeen(const std::filesystem::path& file, base::Span<const ObjPart> parts,
                  const ObjWriteOptions& options, const std::function<void(std::string_view)>& see)
{
    const Formatter formatter(parts, options);
    base::AtomicFile output(file, base::Durability::Temporary);
    FormatPieces(formatter, [&](const std::string& text) {
        output.write(text);
        see(text);
    });
    base::ThrowIfCancelled();
    output.commit();
}

void WriteObj(const std::filesystem::path& file, base::Span<const ObjPart> parts,
              const ObjWriteOptions& options)
{
    WriteObjSeen(file, parts, options, [](std::string_view) {});
}

} // namespace geometry
