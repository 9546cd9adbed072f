// The morphs of a figure or a folder, as a report.
// SPDX-License-Identifier: MIT

#include "facts/morph_facts.h"

#include "base/errors.h"
#include "command.h"
#include "dson/reader.h"
#include "dson/uri.h"

#include <algorithm>
#include <map>
#include <set>

#include <nlohmann/json.hpp>

namespace cli {

namespace fs = std::filesystem;

namespace {

bool IsListed(const FoundMorph& morph, const std::vector<std::string>& patterns)
{
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
        return FitsPattern(morph.name, pattern) || FitsPattern(morph.label, pattern);
    });
}

Json Listed(const MorphSurvey& survey, const std::vector<std::string>& patterns)
{
    Json list = Json::array();
    for (const FoundMorph& morph : survey.morphs)
        if (IsListed(morph, patterns))
            list.push_back({{"name", morph.name},
                            {"label", morph.label},
                            {"group", morph.group},
                            {"kind", morph.kind},
                            {"detail", !morph.hdUrl.empty()},
                            {"file", FileText(morph.file)}});
    return list;
}

Json Unusable(const MorphSurvey& survey)
{
    Json list = Json::array();
    for (const UnusableFile& file : survey.unusable)
        list.push_back({{"file", FileText(file.file)}, {"reason", file.reason}});
    return list;
}

bool DefinesMesh(const fs::path& file)
{
    try {
        return !dson::ReadDocument(file, {false}).geometries.empty();
    } catch (const base::Error&) {
        return false;
    }
}

/// Files of the figures that a scene has, each once. Besides them the file may define things itself.
std::set<fs::path> FigureFiles(const dson::Document& document, const ContentFiles& content)
{
    std::map<std::string, bool> paths; // bones name the figure's file as well, and have no mesh
    for (const dson::NodeInstance& node : document.nodeInstances)
        paths[dson::ParseUri(node.url).path] |= !node.geometries.empty();
    std::set<fs::path> files;
    for (const auto& [path, hasMesh] : paths) {
        const fs::path file = content.find(path);
        // An instance may leave its geometry to the definition.
        if (!file.empty() && (hasMesh || DefinesMesh(file)))
            files.insert(file);
    }
    if (!document.geometries.empty())
        files.insert(document.file);
    return files;
}

} // namespace

std::vector<fs::path> MorphFilesOf(const fs::path& file, const ContentFiles& content)
{
    std::error_code error;
    if (fs::is_directory(file, error))
        return MorphFilesBelow(file);
    const std::set<fs::path> figures = FigureFiles(dson::ReadDocument(file, {false}), content);
    if (figures.empty())
        throw base::FormatError("{}: names no figure that can be found", FileText(file));
    std::vector<fs::path> files;
    for (const fs::path& figure : figures)
        for (fs::path& morph : content.morphsOf(figure))
            files.push_back(std::move(morph));
    return files;
}

Json MorphFacts(const MorphSurvey& survey, const std::vector<std::string>& patterns, bool checks, bool asJson)
{
    Json report;
    if (checks)
        report["checked"] = survey.fileCount;
    const std::vector<std::string> all{"*"};
    if (!checks || !patterns.empty())
        report["morphs"] = Listed(survey, patterns.empty() ? all : patterns);
    report["unusable"] = Unusable(survey);
    AddDiagnostics(report, survey.diagnostics, asJson);
    return report;
}

} // namespace cli
