// Running `gantrel convert-morphs` on a small library with morphs that tests write by hand.
// SPDX-License-Identifier: MIT

#include "cli_morph_library.h"

#include "dson/dhdm.h"
#include "dson/file_text.h"
#include "dson/reader.h"

#include <filesystem>
#include <fstream>

namespace {

const char* const folder = "/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/";

std::string MembersOf(const std::string& members)
{
    return members.empty() ? members : ", " + members;
}

void Write(const std::string& file, const std::string& text)
{
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream(file) << text;
}

std::string FileText(const std::string& name, const std::string& modifier)
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/data/Daz%203D/Genesis%208/Female/Morphs/Test/Base/)" +
           name + R"(.dsf", "type": "modifier"}, "modifier_library": [{"id": ")" + name + R"(", "name": ")" +
           name + R"(", "parent": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female")" +
           modifier + "}]}";
}

std::string ChannelText(const std::string& more)
{
    std::string text = R"(, "channel": {"id": "value", "type": "float", "name": "Value")" + MembersOf(more);
    for (const auto& [name, value] :
         {std::pair("\"value\"", "0"), std::pair("\"min\"", "0"), std::pair("\"max\"", "1")})
        if (more.find(name) == more.npos)
            text += std::string(", ") + name + ": " + value;
    return text + "}";
}

} // namespace

std::string MorphLibraryTest::writeMorph(const std::string& name, const std::string& channel,
                                         const std::string& members, const std::string& deltas,
                                         const std::string& detailUrl) const
{
    const std::string file = library(folder) + name + ".dsf";
    Write(file,
          FileText(name, MembersOf(members) + ChannelText(channel) + R"(, "morph": {"hd_url": ")" +
                             detailUrl + R"(", "vertex_count": 488, "deltas": {"values": )" + deltas + "}}"));
    return file;
}

void MorphLibraryTest::writeControl(const std::string& name, const std::string& formulas) const
{
    Write(library(folder) + name + ".dsf",
          FileText(name, ChannelText({}) + R"(, "formulas": [)" + formulas + "]"));
}

std::string MorphLibraryTest::uriOf(const std::string& name)
{
    return "Genesis8Female:/data/Daz%203D/Genesis%208/Female/Morphs/Test/Base/" + name + ".dsf#" + name +
           "?value";
}

std::string MorphLibraryTest::push(const std::string& name)
{
    return R"({"op": "push", "url": ")" + uriOf(name) + R"("})";
}

std::string MorphLibraryTest::formula(const std::string& output, const std::string& operations,
                                      const std::string& more)
{
    return R"({"output": ")" + uriOf(output) + "\"" + MembersOf(more) + R"(, "operations": [)" + operations +
           "]}";
}

std::string MorphLibraryTest::writeScene(const std::string& name, const std::string& modifier,
                                         const std::string& hipRotation) const
{
    const std::string file = library("/People/") + name;
    Write(file, R"({"file_version": "0.6.0.0", "asset_info": {"id": "/People/Scene.duf", "type": "scene"},
        "scene": {"nodes": [
            {"id": "Genesis8Female", "url": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female",
             "label": "Genesis 8 Female",
             "geometries": [{"id": "Genesis8Female-1",
                             "url": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female-1"}]},
            {"id": "hip", "url": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#hip",
             "parent": "#Genesis8Female", "rotation": )" +
                    hipRotation + R"(}],
            "modifiers": [)" +
                    modifier + "]}}");
    return file;
}

std::vector<std::string> MorphLibraryTest::argumentsOf(const std::vector<std::string>& more,
                                                       const std::string& saved,
                                                       const std::string& source) const
{
    std::vector<std::string> all =
        argumentsFor(source.empty() ? sourceFile() : source, targetFile(), saving(saved));
    all.front() = "convert-morphs";
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

ProgramResult MorphLibraryTest::convertMorphs(const std::vector<std::string>& more, const std::string& saved,
                                              const std::string& source) const
{
    return RunProgram(argumentsOf(more, saved, source));
}

nlohmann::json MorphLibraryTest::report(const std::vector<std::string>& more, const std::string& saved,
                                        const std::string& source) const
{
    std::vector<std::string> all = more;
    all.push_back("--json");
    const ProgramResult result = convertMorphs(all, saved, source);
    ExpectSuccess(result);
    expectNoTraces();
    return nlohmann::json::parse(result.out);
}

std::string MorphLibraryTest::fileOf(const std::string& saved, const std::string& morph)
{
    return saved + "/" + savedFolder + "/" + morph + ".dsf";
}

std::string MorphLibraryTest::read(const std::string& file)
{
    return dson::ReadBytes(file);
}

nlohmann::json MorphLibraryTest::morphIn(const std::string& saved, const std::string& morph)
{
    return nlohmann::json::parse(read(fileOf(saved, morph))).at("modifier_library").at(0);
}

std::vector<geometry::Vec3f> MorphLibraryTest::deltasOf(const std::string& saved,
                                                        const std::string& morph) const
{
    return MorphDeltas(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"), fileOf(saved, morph));
}

std::vector<geometry::Vec3f> MorphLibraryTest::detailOf(const std::string& saved,
                                                        const std::string& morph) const
{
    const dson::Document figure = dson::ReadDocument(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    const std::string file = saved + "/" + savedFolder + "/" + morph + ".dhdm";
    const geometry::Topology& cage = *figure.geometries.at(0).mesh.topology;
    std::vector<geometry::Vec3f> offsets;
    std::size_t cornerCount = cage.cornerCount();
    for (const geometry::DetailLevel& level : dson::DecodeDhdm(dson::ReadBytes(file), cage, file).levels) {
        const std::size_t first = offsets.size();
        offsets.resize(first + (cornerCount *= 4));
        for (std::size_t i = 0; i < level.size(); ++i)
            offsets.at(first + level.corners[i]) = level.offsets[i];
    }
    return offsets;
}
