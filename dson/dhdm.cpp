// The companion file of a morph that holds its detail for subdivided meshes.
// SPDX-License-Identifier: MIT

#include "dson/dhdm.h"

#include "base/counted.h"
#include "base/errors.h"
#include "dson/limits.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include <fmt/format.h>
#include <zlib.h>

namespace dson {

using base::FormatError;
using geometry::DetailLevel;
using geometry::Vec3f;

namespace {

const std::string checksumKind = "crc32:";

constexpr std::uint32_t magic = 0xD0D0D0D0;
constexpr std::uint32_t oneAsFloat = 0x3F800000;
/// Below this level the upper half of a path holds all of it, and only that is written.
constexpr int firstLongLevel = 4;

std::size_t EditSize(int level)
{
    return 3 * sizeof(float) + (level < firstLongLevel ? 1 : 2) * sizeof(std::uint16_t);
}

/// Values one after the other; little-endian, as are the machines this is built for.
class Reader {
public:
    Reader(std::string_view bytes, const std::string& name) : _bytes(bytes), _name(name) {}

    std::size_t position() const { return _at; }
    std::size_t remaining() const { return _bytes.size() - _at; }

    template <class T>
    T take()
    {
        if (remaining() < sizeof(T))
            throw base::FormatError("{}: ends at byte {} in the middle of a level", _name, _bytes.size());
        T value;
        std::memcpy(&value, _bytes.data() + _at, sizeof value);
        _at += sizeof value;
        return value;
    }

private:
    std::string_view _bytes;
    const std::string& _name;
    std::size_t _at = 0;
};

template <class T>
void Append(std::string& bytes, T value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// Both ways between a corner of a refined face and the path that leads to it.
struct Path {
    /// Level and steps, two bits each, from bit 23 downward.
    static std::uint32_t pack(std::uint32_t cornerInFace, std::uint32_t below, int level)
    {
        std::uint32_t path = static_cast<std::uint32_t>(level + 1) << 28 | cornerInFace << 22;
        return path | below << (22 - 2 * level);
    }
    static std::uint32_t cornerInFace(std::uint32_t path) { return path >> 22 & 3; }
    static std::uint32_t below(std::uint32_t path, int level)
    {
        return path >> (22 - 2 * level) & ((1u << 2 * level) - 1);
    }
};

/// Nothing but quads, of a number that nobody has checked yet: takes no memory for them.
struct QuadCage {
    std::uint32_t faces = 0;

    std::size_t faceCount() const { return faces; }
    std::size_t cornerCount() const { return 4 * std::size_t{faces}; }
    std::uint32_t firstCorner(std::uint32_t face) const { return 4 * face; }
    std::size_t cornersOf(std::uint32_t) const { return 4; }
};

struct MeshCage {
    const geometry::Topology& mesh;

    std::size_t faceCount() const { return mesh.faceCount(); }
    std::size_t cornerCount() const { return mesh.cornerCount(); }
    std::uint32_t firstCorner(std::uint32_t face) const { return mesh.faceOffsets[face]; }
    std::size_t cornersOf(std::uint32_t face) const { return mesh.face(face).size(); }
};

/// One file's levels against one cage.
template <class Cage>
class Decoder {
public:
    Decoder(std::string_view bytes, const Cage& cage, const std::string& name)
        : _reader(bytes, name), _cage(cage), _name(name)
    {
    }

    geometry::MultiresDetail run()
    {
        const std::uint32_t first = _reader.take<std::uint32_t>(), count = _reader.take<std::uint32_t>();
        _reader.take<std::uint32_t>(); // one, as a float
        if (first != magic || count != _reader.take<std::uint32_t>())
            throw base::FormatError("{}: is no file of morph detail", _name);
        geometry::MultiresDetail detail;
        for (std::uint32_t i = 0; i < count; ++i)
            detail.levels.push_back(level(static_cast<int>(i) + 1));
        if (_reader.remaining() > 0)
            throw base::FormatError("{}: {} behind the last level", _name,
                                    base::Counted(_reader.remaining(), "byte follows", "bytes follow"));
        return detail;
    }

private:
    DetailLevel level(int expected)
    {
        const std::uint32_t faces = _reader.take<std::uint32_t>(), number = _reader.take<std::uint32_t>();
        if (faces != _cage.faceCount())
            throw base::FormatError("{}: is for {} but the figure has {}", _name,
                                    base::Counted(faces, "face", "faces"), _cage.faceCount());
        const double finest = static_cast<double>(_cage.cornerCount()) * std::pow(4.0, expected);
        if (number != static_cast<std::uint32_t>(expected) || expected > deepestDetailLevel ||
            finest > 4294967295.0)
            throw base::FormatError("{}: level {} is numbered {} or too fine", _name, expected, number);
        const std::uint32_t edits = _reader.take<std::uint32_t>(), size = _reader.take<std::uint32_t>();
        if (edits > _reader.remaining() / EditSize(expected) || size > _reader.remaining())
            throw base::FormatError("{}: level {} is larger than the file", _name, expected);
        const std::size_t start = _reader.position();
        DetailLevel result;
        result.corners.reserve(edits);
        result.offsets.reserve(edits);
        while (result.size() < edits)
            face(expected, edits, result);
        if (_reader.position() - start != size)
            throw base::FormatError("{}: level {} has {} instead of {}", _name, expected,
                                    base::Counted(_reader.position() - start, "byte", "bytes"), size);
        Sort(result);
        return result;
    }

    void face(int level, std::uint32_t edits, DetailLevel& result)
    {
        const std::uint32_t index = _reader.take<std::uint32_t>(), count = _reader.take<std::uint32_t>();
        if (index >= _cage.faceCount() || count == 0 || count > edits - result.size())
            throw base::FormatError("{}: level {} holds {} of face {}", _name, level,
                                    base::Counted(count, "edit", "edits"), index);
        for (std::uint32_t i = 0; i < count; ++i) {
            Vec3f offset;
            offset.x = _reader.take<float>();
            std::uint32_t path = 0;
            if (level >= firstLongLevel)
                path = _reader.take<std::uint16_t>();
            path |= std::uint32_t{_reader.take<std::uint16_t>()} << 16;
            offset.y = _reader.take<float>();
            offset.z = _reader.take<float>();
            const std::uint32_t cornerInFace = Path::cornerInFace(path);
            const bool isGood = path >> 28 == static_cast<std::uint32_t>(level + 1) &&
                                cornerInFace < _cage.cornersOf(index) && IsFinite(offset);
            if (!isGood)
                throw base::FormatError("{}: level {} has a broken edit of face {}", _name, level, index);
            result.corners.push_back((_cage.firstCorner(index) + cornerInFace) << 2 * level |
                                     Path::below(path, level));
            result.offsets.push_back(offset);
        }
    }

    static void Sort(DetailLevel& level)
    {
        if (std::is_sorted(level.corners.begin(), level.corners.end()))
            return;
        std::vector<std::size_t> order(level.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(), [&level](std::size_t a, std::size_t b) {
            return level.corners[a] < level.corners[b];
        });
        DetailLevel sorted;
        for (const std::size_t i : order) {
            sorted.corners.push_back(level.corners[i]);
            sorted.offsets.push_back(level.offsets[i]);
        }
        level = std::move(sorted);
    }

    Reader _reader;
    const Cage _cage;
    const std::string& _name;
};

void AppendEdit(std::string& bytes, std::uint32_t path, Vec3f offset, int level)
{
    Append(bytes, offset.x);
    if (level >= firstLongLevel)
        Append(bytes, static_cast<std::uint16_t>(path));
    Append(bytes, static_cast<std::uint16_t>(path >> 16));
    Append(bytes, offset.y);
    Append(bytes, offset.z);
}

/// @param detail  on a cage of quads
DhdmLevel Describe(const DetailLevel& detail, int level)
{
    DhdmLevel facts;
    facts.edits = detail.size();
    for (std::size_t i = 0; i < detail.size(); ++i) {
        const int faceBits = 2 * level + 2;
        facts.vertices += i == 0 || detail.corners[i] != detail.corners[i - 1];
        facts.faces += i == 0 || detail.corners[i] >> faceBits != detail.corners[i - 1] >> faceBits;
    }
    return facts;
}

/// The face that holds a corner of the cage.
std::uint32_t FaceOf(const geometry::Topology& cage, std::uint32_t corner)
{
    const auto next = std::upper_bound(cage.faceOffsets.begin(), cage.faceOffsets.end(), corner);
    return static_cast<std::uint32_t>(next - cage.faceOffsets.begin() - 1);
}

/// One level's edits, face by face, as the corners ascend.
std::string EncodeEdits(const DetailLevel& detail, int level, const geometry::Topology& cage,
                        std::uint32_t* written)
{
    constexpr std::uint32_t none = UINT32_MAX;
    std::string bytes;
    bytes.reserve(detail.size() * (EditSize(level) + 4));
    std::uint32_t openFace = none, count = 0;
    std::size_t countAt = 0;
    for (std::size_t i = 0; i < detail.size(); ++i) {
        if (!IsFinite(detail.offsets[i]))
            throw base::FormatError("a displacement of level {} is not finite",
                                    level); // nobody would read it
        const std::uint32_t cageCorner = detail.corners[i] >> 2 * level;
        const std::uint32_t face = openFace != none && cageCorner < cage.faceOffsets[openFace + 1]
                                       ? openFace
                                       : FaceOf(cage, cageCorner);
        const std::uint32_t cornerInFace = cageCorner - cage.faceOffsets[face];
        if (cornerInFace > 3)
            continue;
        if (face != openFace) {
            Append(bytes, face);
            countAt = bytes.size();
            count = 0;
            Append(bytes, count);
            openFace = face;
        }
        const std::uint32_t below = detail.corners[i] & ((1u << 2 * level) - 1);
        AppendEdit(bytes, Path::pack(cornerInFace, below, level), detail.offsets[i], level);
        ++count;
        ++*written;
        std::memcpy(bytes.data() + countAt, &count, sizeof count);
    }
    return bytes;
}

} // namespace

geometry::MultiresDetail DecodeDhdm(std::string_view bytes, const geometry::Topology& cage,
                                    const std::string& name)
{
    return Decoder<MeshCage>(bytes, {cage}, name).run();
}

DhdmFacts DescribeDhdm(std::string_view bytes, const std::string& name)
{
    DhdmFacts facts;
    constexpr std::size_t faceCountAt = 16;
    if (bytes.size() >= faceCountAt + sizeof facts.faceCount)
        std::memcpy(&facts.faceCount, bytes.data() + faceCountAt, sizeof facts.faceCount);
    if (facts.faceCount > mostDetailFaces)
        throw base::FormatError("{}: is for {} faces, more than any figure has", name, facts.faceCount);
    const geometry::MultiresDetail detail = Decoder<QuadCage>(bytes, {facts.faceCount}, name).run();
    for (std::size_t i = 0; i < detail.levels.size(); ++i)
        facts.levels.push_back(Describe(detail.levels[i], static_cast<int>(i) + 1));
    return facts;
}

std::string EncodeDhdm(const geometry::MultiresDetail& detail, const geometry::Topology& cage,
                       std::size_t* leftOut)
{
    const auto levels = static_cast<std::uint32_t>(detail.levels.size());
    if (detail.levels.size() > deepestDetailLevel)
        throw base::FormatError("detail of {} levels has no place in a file", detail.levels.size());
    std::string bytes;
    for (const std::uint32_t word : {magic, levels, oneAsFloat, levels})
        Append(bytes, word);
    *leftOut = 0;
    for (int level = 1; level <= static_cast<int>(levels); ++level) {
        const DetailLevel& current = detail.levels[static_cast<std::size_t>(level) - 1];
        std::uint32_t written = 0;
        const std::string edits = EncodeEdits(current, level, cage, &written);
        *leftOut += current.size() - written;
        if (edits.size() > UINT32_MAX)
            throw base::FormatError("detail of level {} is too large for a file", level);
        for (const std::uint32_t word :
             {static_cast<std::uint32_t>(cage.faceCount()), static_cast<std::uint32_t>(level), written,
              static_cast<std::uint32_t>(edits.size())})
            Append(bytes, word);
        bytes += edits;
    }
    return bytes;
}

const char* const otherDetail = "is not the detail that was saved with the morph";

std::string DhdmChecksum(std::string_view bytes)
{
    const uLong sum = crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
    return fmt::format("{}{:08x}-{}", checksumKind, sum, bytes.size());
}

bool FitsChecksum(std::string_view bytes, const std::string& checksum)
{
    const bool isKnown = checksum.compare(0, checksumKind.size(), checksumKind) == 0;
    return !isKnown || checksum == DhdmChecksum(bytes);
}

} // namespace dson
