// Reading OBJ text: cut into chunks at record ends, parsed in parallel, put together in order.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "geometry/obj.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "geometry/limits.h"
#include "obj_chunk.h"
#include "obj_scan.h"

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <optional>
#include <unordered_map>

namespace geometry {

namespace {

constexpr std::size_t chunkBytes = std::size_t{1} << 19;

/// Behind the first line end at or after the place that does not continue a record.
std::size_t NextRecordStart(std::string_view text, std::size_t from)
{
    while (true) {
        const std::size_t newline = text.find('\n', from);
        if (newline == text.npos)
            return text.size();
        std::size_t last = newline;
        if (last > 0 && text[last - 1] == '\r')
            --last;
        if (last == 0 || text[last - 1] != '\\')
            return newline + 1;
        from = newline + 1;
    }
}

std::vector<std::string_view> CutIntoChunks(std::string_view text)
{
    std::vector<std::string_view> chunks;
    while (!text.empty()) {
        const std::size_t size = text.size() <= chunkBytes ? text.size() : NextRecordStart(text, chunkBytes);
        chunks.push_back(text.substr(0, size));
        text.remove_prefix(size);
    }
    return chunks;
}

/// What stands before each chunk, in all earlier ones.
struct Bases {
    std::size_t positions = 0, uvs = 0, faces = 0, corners = 0;
};

/// Puts the chunks together and checks every index against what the whole text defines.
class Assembly {
public:
    Assembly(std::string_view text, const ObjReadOptions& options, const std::string& name)
        : _text(text), _options(options), _name(name)
    {
    }

    ObjContent run()
    {
        refuseWhatIsNoText();
        giveLineEnds();
        parseChunks();
        countUp();
        auto topology = std::make_shared<Topology>();
        copyNumbers(*topology);
        checkCorners(*topology);
        copyNames(*topology, topology->faceGroups, topology->groupNames, &ObjChunk::groups);
        copyNames(*topology, topology->faceSurfaces, topology->surfaceNames, &ObjChunk::surfaces);
        copyLines();
        tellWhatIsLeftOut();
        _content.mesh.topology = std::move(topology);
        return std::move(_content);
    }

private:
    [[noreturn]] void fail(const char* where, const std::string& what) const
    {
        throw base::FormatError("{}:{}: {}", _name, lineOf(where), what);
    }

    void parseChunks()
    {
        std::string_view records = _text;
        if (records.substr(0, 3) == "\xEF\xBB\xBF")
            records.remove_prefix(3);
        const std::vector<std::string_view> texts = CutIntoChunks(records);
        _chunks.resize(texts.size());
        std::vector<std::optional<ObjFault>> faults(texts.size());
        tbb::parallel_for(std::size_t{0}, texts.size(), [&](std::size_t c) {
            base::ThrowIfCancelled();
            try {
                _chunks[c] = ParseObjChunk(texts[c], _options);
            } catch (ObjFault& fault) {
                faults[c] = std::move(fault);
            }
        });
        for (const std::optional<ObjFault>& fault : faults)
            if (fault)
                fail(fault->where, fault->what); // the first in the text, whichever thread met one first
    }

    void countUp()
    {
        _bases.resize(_chunks.size() + 1);
        for (std::size_t c = 0; c < _chunks.size(); ++c) {
            const ObjChunk& chunk = _chunks[c];
            Bases& next = _bases[c + 1];
            next = _bases[c];
            next.positions += chunk.positions.size();
            next.uvs += chunk.uvs.size();
            next.faces += chunk.faceSizes.size();
            next.corners += chunk.corners.values.size();
            _cornersHaveUvs &= chunk.cornersHaveUvs;
            _namesUvs |= chunk.namesUvs;
        }
        const Bases& all = _bases.back();
        if (all.positions > mostObjVertices || all.uvs > mostObjVertices || all.corners > UINT32_MAX)
            throw base::FormatError("{}: mesh is too large", _name);
        _cornersHaveUvs &= all.corners > 0 && all.uvs > 0 && _options.readTexCoords;
    }

    void copyNumbers(Topology& topology)
    {
        const Bases& all = _bases.back();
        topology.vertexCount = static_cast<std::uint32_t>(all.positions);
        topology.faceOffsets.resize(all.faces + 1);
        topology.cornerVertices.resize(all.corners);
        _content.mesh.positions.resize(all.positions);
        _content.texCoords.coordinates.resize(all.uvs);
        _content.texCoords.cornerIndices.resize(_cornersHaveUvs ? all.corners : 0);
        tbb::parallel_for(std::size_t{0}, _chunks.size(), [&](std::size_t c) { copyChunk(c, topology); });
    }

    void copyChunk(std::size_t c, Topology& topology)
    {
        base::ThrowIfCancelled();
        ObjChunk& chunk = _chunks[c];
        const Bases& base = _bases[c];
        std::copy(chunk.positions.begin(), chunk.positions.end(),
                  _content.mesh.positions.begin() + base.positions);
        std::copy(chunk.uvs.begin(), chunk.uvs.end(), _content.texCoords.coordinates.begin() + base.uvs);
        std::uint32_t end = static_cast<std::uint32_t>(base.corners);
        for (std::size_t f = 0; f < chunk.faceSizes.size(); ++f)
            topology.faceOffsets[base.faces + f + 1] = end += chunk.faceSizes[f];
        copyIndices(chunk.corners, base.positions, topology.cornerVertices.data() + base.corners);
        if (_cornersHaveUvs)
            copyIndices(chunk.cornerUvs, base.uvs, _content.texCoords.cornerIndices.data() + base.corners);
    }

    /// A relative index that reaches before the first element comes out beyond any count: it wraps around.
    static void copyIndices(ObjIndices& from, std::size_t base, std::uint32_t* to)
    {
        for (const std::uint32_t place : from.relative)
            from.values[place] += static_cast<std::int32_t>(base);
        std::copy(from.values.begin(), from.values.end(), to);
    }

    void checkCorners(const Topology& topology) const
    {
        const std::size_t bad = firstBeyond(topology.cornerVertices, topology.vertexCount);
        if (bad < topology.cornerCount())
            failAtCorner(topology, bad, "vertex", topology.cornerVertices[bad], topology.vertexCount);
        const std::vector<std::uint32_t>& uvs = _content.texCoords.cornerIndices;
        const std::size_t badUv = firstBeyond(uvs, _content.texCoords.coordinates.size());
        if (badUv < uvs.size())
            failAtCorner(topology, badUv, "texture coordinate", uvs[badUv],
                         _content.texCoords.coordinates.size());
    }

    static std::size_t firstBeyond(const std::vector<std::uint32_t>& indices, std::size_t count)
    {
        std::atomic<std::size_t> first = indices.size();
        tbb::parallel_for(
            tbb::blocked_range<std::size_t>(0, indices.size(), 1 << 16), [&](const auto& range) {
                const auto begin = indices.begin() + range.begin(), end = indices.begin() + range.end();
                const auto bad =
                    std::find_if(begin, end, [&](std::uint32_t index) { return index >= count; });
                if (bad == end)
                    return;
                const std::size_t place = static_cast<std::size_t>(bad - indices.begin());
                std::size_t known = first;
                while (place < known && !first.compare_exchange_weak(known, place)) {
                }
            });
        return first;
    }

    [[noreturn]] void failAtCorner(const Topology& topology, std::size_t corner, const char* kind,
                                   std::uint32_t index, std::size_t count) const
    {
        const auto behind =
            std::upper_bound(topology.faceOffsets.begin(), topology.faceOffsets.end(), corner);
        const char* const where =
            findRecord("f", smallestObjFace, static_cast<std::size_t>(behind - topology.faceOffsets.begin()));
        fail(where, nameIndex("face", kind, index, count));
    }

    static std::string nameIndex(const char* record, const char* kind, std::uint32_t index, std::size_t count)
    {
        if (static_cast<std::int32_t>(index) < 0)
            return fmt::format("{} names a {} before the first", record, kind);
        return fmt::format("{} names {} {} but only {} defined", record, kind, std::uint64_t{index} + 1,
                           base::Counted(count, "is", "are"));
    }

    /// Only once something is wrong: walks the text again to the n-th record (from 1) of the keyword that has
    /// so many tokens behind it.
    const char* findRecord(std::string_view keyword, std::size_t leastTokens, std::size_t n) const
    {
        ObjScanner scan(_text.data(), _text.data() + _text.size());
        while (!scan.atEnd()) {
            const bool isRecord = scan.nextToken();
            const char* const record = scan.at();
            if (isRecord && scan.takeToken() == keyword) {
                std::size_t tokens = 0;
                for (; tokens < leastTokens && scan.nextToken(); ++tokens)
                    scan.takeToken();
                if (tokens == leastTokens && --n == 0)
                    return record;
            }
            if (!isRecord && !scan.atEnd() && *record == '#')
                scan.skipLine();
            else
                scan.skipRecord();
        }
        return _text.data();
    }

    /// Names hold on across chunks; faces before the first name belong to "default".
    void copyNames(const Topology& topology, std::vector<std::uint32_t>& labels,
                   std::vector<std::string>& names, std::vector<ObjNameRun> ObjChunk::*runs) const
    {
        const auto hasRuns = [&](const ObjChunk& chunk) { return !(chunk.*runs).empty(); };
        if (topology.faceCount() == 0 || std::none_of(_chunks.begin(), _chunks.end(), hasRuns))
            return;
        labels.resize(topology.faceCount());
        std::unordered_map<std::string, std::uint32_t> known;
        std::string current = "default";
        const auto label = [&](std::size_t first, std::size_t last) {
            if (first == last)
                return;
            const auto [entry, isNew] = known.emplace(current, static_cast<std::uint32_t>(names.size()));
            if (isNew)
                names.push_back(current);
            std::fill(labels.begin() + first, labels.begin() + last, entry->second);
        };
        std::size_t done = 0;
        for (std::size_t c = 0; c < _chunks.size(); ++c)
            for (const ObjNameRun& run : _chunks[c].*runs) {
                const std::size_t first = _bases[c].faces + run.firstFace;
                label(done, first);
                done = first;
                current = run.name;
            }
        label(done, labels.size());
    }

    void copyLines()
    {
        std::size_t number = 0;
        for (std::size_t c = 0; c < _chunks.size(); ++c) {
            base::ThrowIfCancelled();
            ObjChunk& chunk = _chunks[c];
            std::vector<std::uint32_t> vertices(chunk.lineVertices.values.size());
            copyIndices(chunk.lineVertices, _bases[c].positions, vertices.data());
            auto next = vertices.begin();
            for (const std::uint32_t size : chunk.lineSizes) {
                _content.lines.emplace_back(next, next + size);
                next += size;
                ++number;
                for (const std::uint32_t vertex : _content.lines.back())
                    if (vertex >= _bases.back().positions)
                        fail(findRecord("l", shortestObjLine, number),
                             nameIndex("line", "vertex", vertex, _bases.back().positions));
            }
            std::move(chunk.materialLibraries.begin(), chunk.materialLibraries.end(),
                      std::back_inserter(_content.materialLibraries));
        }
    }

    /// Otherwise the first of its bytes would be called a fault of some record, or nothing be found in it.
    void refuseWhatIsNoText() const
    {
        const auto beginsWith = [this](std::string_view bytes) {
            return _text.substr(0, bytes.size()) == bytes;
        };
        if (beginsWith("\xFF\xFE") || beginsWith("\xFE\xFF"))
            throw base::FormatError("{}: is text in UTF-16, and an OBJ file is read in ASCII or UTF-8 only",
                                    _name);
        if (beginsWith("\x1F\x8B"))
            throw base::FormatError("{}: is compressed with gzip; unpack it first", _name);
    }

    /// Old systems end lines with a carriage return alone, and a text may have gone through several.
    void giveLineEnds()
    {
        const auto findAlone = [this](std::size_t at) {
            while ((at = _text.find('\r', at)) != _text.npos && _text.substr(at + 1, 1) == "\n")
                at += 2;
            return at;
        };
        std::size_t at = findAlone(0);
        if (at == _text.npos)
            return;
        _withLineEnds.assign(_text);
        for (; at != _text.npos; at = findAlone(at + 1))
            _withLineEnds[at] = '\n';
        _text = _withLineEnds;
    }

    void tellWhatIsLeftOut()
    {
        tell(&ObjChunk::shortFaces, "face has fewer than three corners and is left out",
             "faces have fewer than three corners and are left out");
        tell(&ObjChunk::shortLines, "line has fewer than two vertices and is left out",
             "lines have fewer than two vertices and are left out");
        tell(&ObjChunk::unknown, "record is of no kind that the format has and is left out",
             "records are of no kind that the format has and are left out");
        if (_namesUvs && _options.readTexCoords && !_cornersHaveUvs)
            warn(_bases.back().uvs == 0
                     ? "faces name texture coordinates, but none are defined"
                     : "some corners have no texture coordinates, so those of all are left out");
    }

    void tell(ObjLeftOut ObjChunk::*which, const char* one, const char* many)
    {
        ObjLeftOut all;
        for (const ObjChunk& chunk : _chunks) {
            const ObjLeftOut& here = chunk.*which;
            all.first = all.first ? all.first : here.first;
            all.count += here.count;
        }
        if (all.count > 0)
            warn(fmt::format("{} {}{} {}", all.count, all.count == 1 ? one : many,
                             all.count == 1 ? ", in line" : ", the first in line", lineOf(all.first)));
    }

    void warn(std::string what)
    {
        _content.diagnostics.push_back({base::Severity::Warning, _name, {}, std::move(what)});
    }

    std::ptrdiff_t lineOf(const char* where) const { return std::count(_text.data(), where, '\n') + 1; }

    std::string_view _text;
    std::string _withLineEnds;
    const ObjReadOptions& _options;
    const std::string& _name;
    std::vector<ObjChunk> _chunks;
    std::vector<Bases> _bases;
    bool _cornersHaveUvs = true, _namesUvs = false;
    ObjContent _content;
};

struct FileText {
    std::unique_ptr<char[]> bytes; // a string would be filled with zeros first
    std::size_t size = 0, room = 0;

    void makeRoom(std::size_t wanted)
    {
        std::unique_ptr<char[]> larger(new char[wanted]);
        std::copy_n(bytes.get(), size, larger.get());
        bytes = std::move(larger);
        room = wanted;
    }
};

FileText ReadWholeFile(const std::filesystem::path& file)
{
    base::InputFile input(file, "cannot open");
    FileText text;
    // One more than there is, so that the end shows without making room for more.
    text.makeRoom(input.size() + 1);
    while (const std::size_t count = input.read(text.bytes.get() + text.size, text.room - text.size)) {
        text.size += count;
        if (text.size == text.room)
            text.makeRoom(2 * text.room + (std::size_t{1} << 16));
    }
    return text;
}

} // namespace

ObjContent ParseObj(std::string_view text, const ObjReadOptions& options, const std::string& name)
{
    return Assembly(text, options, name).run();
}

ObjContent ReadObj(const std::filesystem::path& file, const ObjReadOptions& options)
{
    const FileText text = ReadWholeFile(file);
    return ParseObj({text.bytes.get(), text.size}, options, file.string());
}

} // namespace geometry
