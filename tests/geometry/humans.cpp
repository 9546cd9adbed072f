// Loading the human meshes and measuring against their known answers.
// SPDX-License-Identifier: MIT

#include "humans.h"

#include "geometry/obj.h"

#include <nlohmann/json.hpp>
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace humans {

using geometry::Vec3f;

std::optional<std::filesystem::path> Folder()
{
    const char* const named = std::getenv("GANTREL_HUMANS");
    const std::filesystem::path folder = named ? named : GANTREL_SOURCE_DIR "/../shared/humans";
    if (std::filesystem::exists(folder / "source" / "neutral.obj"))
        return folder;
    return std::nullopt;
}

std::vector<Vec3f> ReadDisplacements(const std::filesystem::path& file, std::size_t vertexCount)
{
    const std::unique_ptr<gzFile_s, int (*)(gzFile)> stream(gzopen(file.string().c_str(), "rb"), gzclose);
    if (!stream)
        throw std::runtime_error("cannot open " + file.string());
    std::vector<Vec3f> result(vertexCount);
    char line[256];
    gzgets(stream.get(), line, sizeof line); // the heading
    while (gzgets(stream.get(), line, sizeof line)) {
        std::size_t vertex = 0;
        Vec3f delta;
        if (std::sscanf(line, "%zu,%f,%f,%f", &vertex, &delta.x, &delta.y, &delta.z) == 4)
            result.at(vertex) = delta;
    }
    return result;
}

Pair Load(const std::filesystem::path& folder)
{
    Pair pair;
    pair.source = geometry::ReadObj(folder / "source" / "neutral.obj").mesh;
    pair.target = geometry::ReadObj(folder / "target" / "default.obj").mesh;
    const std::vector<Vec3f> clone =
        ReadDisplacements(folder / "target" / "clone.csv.gz", pair.target.vertexCount());
    for (std::size_t v = 0; v < clone.size(); ++v)
        pair.target.positions[v] += clone[v];
    for (const auto& entry : std::filesystem::directory_iterator(folder / "source" / "morphs")) {
        const std::filesystem::path file = entry.path().filename();
        pair.morphs.push_back(
            {file.stem().stem().string(), ReadDisplacements(entry.path(), pair.source.vertexCount()),
             ReadDisplacements(folder / "truth" / "morphs" / file, pair.target.vertexCount())});
    }
    return pair;
}

namespace {

nlohmann::json ReadJson(const std::filesystem::path& file)
{
    const std::unique_ptr<gzFile_s, int (*)(gzFile)> stream(gzopen(file.string().c_str(), "rb"), gzclose);
    if (!stream)
        throw std::runtime_error("cannot open " + file.string());
    std::string text;
    char block[65536];
    for (int read = 0; (read = gzread(stream.get(), block, sizeof block)) > 0;)
        text.append(block, static_cast<std::size_t>(read));
    return nlohmann::json::parse(text);
}

Vec3f ToVec(const nlohmann::json& numbers)
{
    return {numbers.at(0).get<float>(), numbers.at(1).get<float>(), numbers.at(2).get<float>()};
}

JointPlaces ToPlaces(const nlohmann::json& joints, const std::vector<std::string>& names)
{
    JointPlaces places;
    for (const std::string& name : names) {
        places.heads.push_back(ToVec(joints.at(name).at("head")));
        places.tails.push_back(ToVec(joints.at(name).at("tail")));
    }
    return places;
}

} // namespace

Skeleton ReadSkeleton(const std::filesystem::path& folder)
{
    const nlohmann::json file = ReadJson(folder / "skeleton.json");
    Skeleton skeleton;
    for (const nlohmann::json& bone : file.at("bones")) {
        skeleton.names.push_back(bone.at("name"));
        const auto parent =
            std::find(skeleton.names.begin(), skeleton.names.end(),
                      bone.at("parent").is_null() ? "" : bone.at("parent").get<std::string>());
        skeleton.parents.push_back(
            parent == skeleton.names.end() ? -1 : static_cast<int>(parent - skeleton.names.begin()));
    }
    skeleton.source = ToPlaces(file.at("source_neutral"), skeleton.names);
    skeleton.target = ToPlaces(file.at("target_default"), skeleton.names);
    for (const auto& morph : file.at("source_morphs").items())
        skeleton.morphs[morph.key()] = ToPlaces(morph.value(), skeleton.names);
    return skeleton;
}

geometry::SkinWeights ReadWeights(const std::filesystem::path& file, const Skeleton& skeleton)
{
    const nlohmann::json json = ReadJson(file);
    std::vector<geometry::JointWeights> joints;
    for (const std::string& name : skeleton.names) {
        joints.emplace_back();
        if (json.at("weights").contains(name))
            joints.back() = {json.at("weights").at(name).at("i"), json.at("weights").at(name).at("w")};
    }
    return geometry::MakeSkinWeights(json.at("vertex_count"), joints);
}

std::vector<float> Errors(const std::vector<Vec3f>& found, const std::vector<Vec3f>& truth)
{
    std::vector<float> errors;
    for (std::size_t v = 0; v < truth.size(); ++v)
        if (Length(truth[v]) > 0.01f) // 0.1 mm
            errors.push_back(Length(found[v] - truth[v]));
    return errors;
}

} // namespace humans
