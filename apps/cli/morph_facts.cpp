// The morphs of a figure or a folder, as a report.
// SPDX-License-Identifier: MIT

#include "morph_facts.h"

#include "base/errors.h"
#include "command.h"
#include "dson/reader.h"
#include "dson/uri.h"

#include <algorithm>
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

/// Files of the figures that a scene has, each once.
std::set<fs::path> FigureFiles(const dson::Document& document, const ContentFiles& content)
{
    if (!document.geometries.empty())
        return {document.file};
    std::set<fs::path> files;
    for (const dson::NodeInstance& node : document.nodeInstances) {
        const fs::path file =
            node.geometries.empty() ? fs::path() : content.find(dson::ParseUri(node.url).path);
        if (!file.empty())
            files.insert(file);
    }
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
