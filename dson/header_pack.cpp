// What a morph file says besides its displacements, as few bytes that are read in no time.
// SPDX-License-Identifier: MIT

#include "dson/header_pack.h"

#include "base/errors.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace dson {

namespace {

template <class T, class Wanted>
using IfIs = std::enable_if_t<std::is_same_v<std::remove_const_t<T>, Wanted>>;

// One list of members serves both ways. Each names all of them, so that none added later is forgotten.

template <class Archive, class T>
IfIs<T, AssetInfo> ForMembers(Archive& archive, T& info)
{
    auto& [id, type, author, email, website, revision, modified] = info;
    archive(id, type, author, email, website, revision, modified);
}

template <class Archive, class T>
IfIs<T, Channel> ForMembers(Archive& archive, T& channel)
{
    auto& [id, type, name, label, value, currentValue, min, max, clamped, displayAsPercent, visible, locked,
           autoFollow, stepSize, enumValues, text, otherValue, targetChannel] = channel;
    archive(id, type, name, label, value, currentValue, min, max, clamped, displayAsPercent, visible, locked,
            autoFollow, stepSize, enumValues, text, otherValue, targetChannel);
}

template <class Archive, class T>
IfIs<T, ChannelChange> ForMembers(Archive& archive, T& change)
{
    auto& [label, min, max, clamped, visible, locked] = change;
    archive(label, min, max, clamped, visible, locked);
}

template <class Archive, class T>
IfIs<T, Operation> ForMembers(Archive& archive, T& operation)
{
    auto& [kind, url, value, knot] = operation;
    archive(kind, url, value);
    if (kind == Operation::Kind::PushKnot)
        for (auto& number : knot)
            archive(number);
}

template <class Archive, class T>
IfIs<T, Formula> ForMembers(Archive& archive, T& formula)
{
    auto& [output, stage, operations] = formula;
    archive(output, stage, operations);
}

template <class Archive, class T>
IfIs<T, MorphData> ForMembers(Archive& archive, T& morph)
{
    auto& [vertexCount, deltas, hdUrl, hdChecksum] = morph;
    static_cast<void>(deltas); // read when they are needed
    archive(vertexCount, hdUrl, hdChecksum);
}

template <class Archive, class T>
IfIs<T, Modifier> ForMembers(Archive& archive, T& modifier)
{
    auto& [id, name, parent, presentationType, channel, hasChannel, effect, region, group, formulas, morph,
           kept] = modifier;
    static_cast<void>(effect); // none, see CanPackHeaders
    static_cast<void>(kept);   // none without nodes
    archive(id, name, parent, presentationType, channel, hasChannel, region, group, formulas, morph);
}

template <class Archive, class T>
IfIs<T, ModifierInstance> ForMembers(Archive& archive, T& instance)
{
    auto& [id, url, parent, name, group, value, channelText, numberText, change, formulas, effect, kept] =
        instance;
    static_cast<void>(effect);
    static_cast<void>(kept); // none without nodes
    archive(id, url, parent, name, group, value, channelText, numberText, change, formulas);
}

template <class Archive, class T>
IfIs<T, base::Diagnostic> ForMembers(Archive& archive, T& diagnostic)
{
    auto& [severity, file, asset, what] = diagnostic;
    archive(severity, file, asset, what);
}

template <class Archive, class T>
IfIs<T, Document> ForMembers(Archive& archive, T& document)
{
    auto& [file, info, geometries, nodes, modifiers, skins, influenceMaps, nodeInstances, modifierInstances,
           animations, addOns, kept, leftOut, diagnostics, hasDeltas] = document;
    static_cast<void>(kept); // none without nodes
    static_cast<void>(file); // known to who asks
    static_cast<void>(geometries);
    static_cast<void>(nodes);
    static_cast<void>(skins);
    static_cast<void>(influenceMaps);
    static_cast<void>(nodeInstances);
    static_cast<void>(animations);
    static_cast<void>(hasDeltas);
    archive(info, modifiers, modifierInstances, addOns, leftOut, diagnostics);
}

class Packer {
public:
    template <class... Members>
    void operator()(const Members&... members)
    {
        (put(members), ...);
    }
    std::string take() { return std::move(_bytes); }

private:
    /// Seven bits a byte, the lowest first: most numbers are small.
    void putCount(std::uint64_t number)
    {
        for (; number > 0x7f; number >>= 7)
            _bytes.push_back(static_cast<char>(0x80 | (number & 0x7f)));
        _bytes.push_back(static_cast<char>(number));
    }
    void put(const std::string& text)
    {
        putCount(text.size());
        _bytes += text;
    }
    template <class T>
    void put(const T& value)
    {
        if constexpr (std::is_same_v<T, bool> || std::is_enum_v<T>)
            _bytes.push_back(static_cast<char>(value));
        else if constexpr (std::is_arithmetic_v<T>)
            _bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        else
            ForMembers(*this, value);
    }
    template <class T>
    void put(const std::optional<T>& value)
    {
        put(value.has_value());
        if (value)
            put(*value);
    }
    template <class T>
    void put(const std::vector<T>& list)
    {
        putCount(list.size());
        for (const T& item : list)
            put(item);
    }

    std::string _bytes;
};

class Unpacker {
public:
    explicit Unpacker(std::string_view bytes) : _bytes(bytes) {}

    template <class... Members>
    void operator()(Members&... members)
    {
        (get(members), ...);
    }
    bool isAtEnd() const { return _bytes.empty(); }

private:
    std::string_view cut(std::size_t size)
    {
        if (size > _bytes.size())
            throw base::FormatError("packed headers are cut off");
        const std::string_view part = _bytes.substr(0, size);
        _bytes.remove_prefix(size);
        return part;
    }
    /// Of bytes, or of things of a byte and more each.
    std::size_t getCount()
    {
        std::uint64_t number = 0;
        unsigned char byte = 0;
        int shift = 0;
        do {
            byte = static_cast<unsigned char>(cut(1).front());
            number |= std::uint64_t(byte & 0x7f) << shift;
            shift += 7;
        } while ((byte & 0x80) && shift < 63);
        if (number > _bytes.size())
            throw base::FormatError("packed headers are cut off");
        return static_cast<std::size_t>(number);
    }
    void get(std::string& text) { text = cut(getCount()); }
    template <class T>
    void get(T& value)
    {
        if constexpr (std::is_same_v<T, bool> || std::is_enum_v<T>)
            value = static_cast<T>(cut(1).front());
        else if constexpr (std::is_arithmetic_v<T>)
            std::memcpy(&value, cut(sizeof value).data(), sizeof value);
        else
            ForMembers(*this, value);
    }
    template <class T>
    void get(std::optional<T>& value)
    {
        bool isThere = false;
        get(isThere);
        if (isThere)
            get(value.emplace());
    }
    template <class T>
    void get(std::vector<T>& list)
    {
        list.resize(getCount());
        for (T& item : list)
            get(item);
    }

    std::string_view _bytes;
};

} // namespace

bool CanPackHeaders(const Document& document)
{
    const auto hasEffect = [](const auto& modifier) { return modifier.effect.has_value(); };
    return std::none_of(document.modifiers.begin(), document.modifiers.end(), hasEffect) &&
           std::none_of(document.modifierInstances.begin(), document.modifierInstances.end(), hasEffect) &&
           !document.hasDeltas && document.geometries.empty() && document.nodes.empty() &&
           document.skins.empty() && document.influenceMaps.empty() && document.nodeInstances.empty() &&
           document.animations.empty();
}

std::string PackHeaders(const Document& document)
{
    Packer packer;
    ForMembers(packer, document);
    return packer.take();
}

Document UnpackHeaders(std::string_view bytes, const std::filesystem::path& file)
{
    Document document;
    document.file = file;
    document.hasDeltas = false;
    Unpacker unpacker(bytes);
    ForMembers(unpacker, document);
    if (!unpacker.isAtEnd())
        throw base::FormatError("packed headers have more behind their end");
    return document;
}

} // namespace dson
