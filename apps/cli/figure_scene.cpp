// Figures in their own files, and scenes of them.
// SPDX-License-Identifier: MIT

#include "figure_scene.h"

#include "base/atomic_file.h"
#include "base/errors.h"
#include "command.h"
#include "dson/uri.h"
#include "mesh_files.h"
#include "report.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Path below a content directory, as addresses have it.
std::string ContentPath(const fs::path& file, const std::vector<fs::path>& directories)
{
    const fs::path whole = fs::weakly_canonical(file);
    for (const fs::path& directory : directories) {
        const fs::path below = whole.lexically_relative(fs::weakly_canonical(directory));
        if (!below.empty() && *below.begin() != "..")
            return "/" + below.generic_u8string();
    }
    throw base::FormatError("{}: lies in no content directory", FileText(file));
}

const dson::Node* FigureIn(const dson::Document& document)
{
    const dson::Node* figure = nullptr;
    for (const dson::Node& node : document.nodes)
        if (node.parent.empty() && (!figure || (figure->type != "figure" && node.type == "figure")))
            figure = &node;
    return document.geometries.empty() ? nullptr : figure;
}

Json SceneWith(const std::string& path, const dson::Node& figure, const std::string& geometry)
{
    const Json geometries = Json::array({{{"id", geometry + "-1"}, {"url", dson::MakeUri(path, geometry)}}});
    const Json node{{"id", figure.id},
                    {"url", dson::MakeUri(path, figure.id)},
                    {"label", figure.label},
                    {"geometries", geometries}};
    return {{"file_version", "0.6.0.0"},
            {"asset_info", {{"id", "/figure.duf"}, {"type", "character"}}},
            {"scene", {{"nodes", Json::array({node})}}}};
}

} // namespace

const dson::Geometry* GeometryOf(const dson::Document& document, const std::string& id)
{
    std::string wanted = id;
    for (const dson::SkinDefinition& skin : document.skins)
        if (skin.node == id)
            wanted = skin.geometry;
    const auto geometry = std::find_if(document.geometries.begin(), document.geometries.end(),
                                       [&wanted](const dson::Geometry& one) { return one.id == wanted; });
    if (geometry != document.geometries.end())
        return &*geometry;
    return document.geometries.empty() ? nullptr : &document.geometries.front();
}

fs::path SceneOf(const fs::path& file, const std::vector<fs::path>& contentDirectories,
                 const fs::path& folder)
{
    if (!HasExtension(file, ".dsf"))
        return file;
    const dson::Document document = dson::ReadDocument(file, {false});
    if (!document.nodeInstances.empty())
        return file;
    const dson::Node* const figure = FigureIn(document);
    if (!figure)
        throw base::FormatError("{}: defines no figure", FileText(file));
    const fs::path scene = folder / "figure.duf";
    base::WriteFileAtomically(
        scene,
        SceneWith(ContentPath(file, contentDirectories), *figure, GeometryOf(document, figure->id)->id)
            .dump(),
        base::Durability::Temporary);
    return scene;
}

} // namespace cli
