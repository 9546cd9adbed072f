// Skeletons and skin weights in plain JSON.
// SPDX-License-Identifier: MIT

#include "plain_formats.h"

#include "base/errors.h"
#include "dson/file_text.h"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

namespace content {

namespace {

using base::FormatError;
using geometry::Vec3f;
using nlohmann::json;

/// More bones than this are no skeleton.
constexpr std::size_t mostBones = 4096;

/// Deeper nesting than these files ever have is refused while parsing, before it can exhaust the stack.
json ParseJson(const std::filesystem::path& file)
{
    constexpr int deepest = 32;
    const auto guard = [&](int depth, json::parse_event_t, json&) {
        if (depth > deepest)
            throw base::FormatError("{}: nested too deeply", file.string());
        return true;
    };
    try {
        return json::parse(dson::ReadBytes(file), guard);
    } catch (const json::exception&) {
        throw base::FormatError("{}: not valid JSON", file.string());
    }
}

const json& Member(const json& object, const char* name, const std::string& where)
{
    const auto found = object.is_object() ? object.find(name) : object.end();
    if (!object.is_object() || found == object.end())
        throw base::FormatError("{}: has no member '{}'", where, name);
    return *found;
}

float Number(const json& value, const std::string& where)
{
    if (!value.is_number())
        throw base::FormatError("{}: expected a number", where);
    const double number = value.get<double>();
    if (!std::isfinite(number) || std::abs(number) > 1e6)
        throw base::FormatError("{}: number is out of range", where);
    return static_cast<float>(number);
}

std::string Text(const json& value, const std::string& where)
{
    if (!value.is_string() || value.get_ref<const std::string&>().empty())
        throw base::FormatError("{}: expected a name", where);
    return value.get<std::string>();
}

Vec3f Place(const json& value, const std::string& where)
{
    if (!value.is_array() || value.size() != 3)
        throw base::FormatError("{}: expected three numbers", where);
    return {Number(value[0], where), Number(value[1], where), Number(value[2], where)};
}

std::vector<PlainBone> ReadBones(const json& root, const std::string& file)
{
    const json& list = Member(root, "bones", file);
    if (!list.is_array() || list.empty() || list.size() > mostBones)
        throw base::FormatError("{}: 'bones' is not a list of 1 to {} bones", file, mostBones);
    std::vector<PlainBone> bones;
    std::map<std::string, int> indices;
    for (const json& entry : list) {
        const std::string where = file + ": bone " + std::to_string(bones.size());
        PlainBone bone;
        bone.name = Text(Member(entry, "name", where), where);
        const json& parent = Member(entry, "parent", where);
        if (!parent.is_null()) {
            const auto found = indices.find(Text(parent, where));
            if (found == indices.end())
                throw base::FormatError("{}: parent '{}' is not listed before it", where,
                                        parent.get<std::string>());
            bone.parent = found->second;
        }
        if (!indices.emplace(bone.name, static_cast<int>(bones.size())).second)
            throw base::FormatError("{}: name '{}' is used twice", where, bone.name);
        bones.push_back(std::move(bone));
    }
    return bones;
}

std::vector<PlainBone> WithPlaces(std::vector<PlainBone> bones, const json& set, const std::string& where)
{
    for (PlainBone& bone : bones) {
        const json& places = Member(set, bone.name.c_str(), where);
        bone.head = Place(Member(places, "head", where + "/" + bone.name), where + "/" + bone.name + "/head");
        bone.tail = Place(Member(places, "tail", where + "/" + bone.name), where + "/" + bone.name + "/tail");
    }
    return bones;
}

/// A set of positions is an object that has an entry for the first bone.
std::vector<std::string> JointSets(const json& root, const std::string& firstBone)
{
    std::vector<std::string> names;
    for (const auto& [name, value] : root.items())
        if (value.is_object() && value.contains(firstBone) && value[firstBone].is_object())
            names.push_back(name);
    return names;
}

std::string ChooseSet(const std::vector<std::string>& sets, const std::string& wanted,
                      const std::string& preferred, const std::string& file)
{
    const auto has = [&](const std::string& name) {
        return std::find(sets.begin(), sets.end(), name) != sets.end();
    };
    std::string all;
    for (const std::string& name : sets)
        all += (all.empty() ? "" : ", ") + name;
    if (sets.empty())
        throw base::FormatError("{}: has no joint set", file);
    if (!wanted.empty()) {
        if (!has(wanted))
            throw base::FormatError("{}: has no joint set '{}'; there are {}", file, wanted, all);
        return wanted;
    }
    if (has(preferred))
        return preferred;
    if (sets.size() > 1)
        throw base::FormatError("{}: has several joint sets, name one of {}", file, all);
    return sets.front();
}

geometry::JointWeights ReadBoneWeights(const json& entry, std::size_t vertexCount, const std::string& where)
{
    const json &vertices = Member(entry, "i", where), &weights = Member(entry, "w", where);
    if (!vertices.is_array() || !weights.is_array() || vertices.size() != weights.size())
        throw base::FormatError("{}: 'i' and 'w' are not two lists of the same length", where);
    std::vector<std::pair<std::uint32_t, float>> rows;
    rows.reserve(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        if (!vertices[i].is_number_unsigned() || vertices[i].get<std::uint64_t>() >= vertexCount)
            throw base::FormatError("{}: entry {} names vertex {} but the mesh has {}", where, i,
                                    vertices[i].dump(), vertexCount);
        const float weight = Number(weights[i], where);
        if (weight < 0.0f || weight > 1.0f)
            throw base::FormatError("{}: entry {} has a weight that is not within 0 and 1", where, i);
        rows.emplace_back(vertices[i].get<std::uint32_t>(), weight);
    }
    std::sort(rows.begin(), rows.end());
    geometry::JointWeights result;
    for (const auto& [vertex, weight] : rows) {
        if (!result.vertices.empty() && result.vertices.back() == vertex)
            throw base::FormatError("{}: vertex {} is listed twice", where, vertex);
        result.vertices.push_back(vertex);
        result.weights.push_back(weight);
    }
    return result;
}

} // namespace

PlainSkeleton ReadPlainSkeleton(const std::filesystem::path& file, const std::string& joints,
                                const std::string& preferred)
{
    const json root = ParseJson(file);
    PlainSkeleton skeleton;
    skeleton.file = file.string();
    const std::vector<PlainBone> bones = ReadBones(root, skeleton.file);
    skeleton.joints = ChooseSet(JointSets(root, bones.front().name), joints, preferred, skeleton.file);
    skeleton.bones = WithPlaces(bones, root[skeleton.joints], skeleton.file + ": " + skeleton.joints);
    // Joints under morphs are known for the source's own set only.
    const auto morphs = root.find("source_morphs");
    if (skeleton.joints == "source_neutral" && morphs != root.end() && morphs->is_object())
        for (const auto& [name, set] : morphs->items())
            skeleton.morphs[name] = WithPlaces(bones, set, skeleton.file + ": source_morphs/" + name);
    return skeleton;
}

std::vector<geometry::JointWeights> ReadPlainWeights(const std::filesystem::path& file,
                                                     const PlainSkeleton& skeleton, std::size_t vertexCount)
{
    const json root = ParseJson(file);
    const std::string name = file.string();
    const json& count = Member(root, "vertex_count", name);
    if (!count.is_number_unsigned() || count.get<std::uint64_t>() != vertexCount)
        throw base::FormatError("{}: is for {} vertices but the mesh has {}", name, count.dump(),
                                vertexCount);
    const json& perBone = Member(root, "weights", name);
    if (!perBone.is_object())
        throw base::FormatError("{}: 'weights' is not an object", name);
    std::map<std::string, std::size_t> indices;
    for (std::size_t b = 0; b < skeleton.bones.size(); ++b)
        indices[skeleton.bones[b].name] = b;
    std::vector<geometry::JointWeights> weights(skeleton.bones.size());
    for (const auto& [bone, entry] : perBone.items()) {
        const auto found = indices.find(bone);
        if (found == indices.end())
            throw base::FormatError("{}: bone '{}' is not in {}", name, bone, skeleton.file);
        weights[found->second] = ReadBoneWeights(entry, vertexCount, name + ": " + bone);
    }
    return weights;
}

} // namespace content
