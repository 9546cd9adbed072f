// What is in a file of morph detail.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "command.h"
#include "dials.h"
#include "dson/dhdm.h"
#include "dson/file_text.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "facts/file_facts.h"

#include <optional>

#include <nlohmann/json.hpp>

namespace cli {

namespace fs = std::filesystem;

namespace {

Json Levels(const dson::DhdmFacts& facts)
{
    Json levels = Json::array();
    for (std::size_t i = 0; i < facts.levels.size(); ++i)
        levels.push_back({{"level", i + 1},
                          {"edits", facts.levels[i].edits},
                          {"vertices", facts.levels[i].vertices},
                          {"cage_faces", facts.levels[i].faces}});
    return levels;
}

/// Whether an address names the file, as far as its own name goes: the folder may be another on this disk.
bool NamesFile(const std::string& url, const fs::path& file)
{
    return Folded(fs::path(dson::ParseUri(url).path).filename().u8string()) ==
           Folded(file.filename().u8string());
}

/// The mesh of the figure that a morph is for.
Json FigureFacts(const dson::Modifier& morph, std::uint32_t faceCount, const ContentFiles& content)
{
    const std::string path = dson::ParseUri(morph.parent).path;
    const fs::path file = content.find(path);
    if (file.empty())
        return {{"file", path}, {"faces", nullptr}, {"fits", nullptr}};
    const dson::Document document = dson::ReadDocument(file, {false});
    if (document.geometries.empty())
        return {{"file", FileText(file)}, {"faces", nullptr}, {"fits", nullptr}};
    const std::size_t faces = document.geometries.front().mesh.faceCount();
    return {{"file", FileText(file)}, {"faces", faces}, {"fits", faces == faceCount}};
}

/// The morph of the file beside it that names it.
void AddMorph(Json& facts, const fs::path& file, std::uint32_t faceCount, const ContentFiles& content)
{
    const fs::path beside = fs::path(file).replace_extension(".dsf");
    std::error_code error;
    if (!fs::exists(beside, error)) {
        facts["morph"] = nullptr;
        return;
    }
    Json morph{{"file", FileText(beside)}, {"name", nullptr}, {"names_this_file", false}};
    const dson::Document document = dson::ReadDocument(beside, {false});
    for (const dson::Modifier& modifier : document.modifiers) {
        if (!modifier.morph || !NamesFile(modifier.morph->hdUrl, file))
            continue;
        morph["name"] = modifier.name;
        morph["names_this_file"] = true;
        facts["figure"] = FigureFacts(modifier, faceCount, content);
    }
    facts["morph"] = std::move(morph);
}

} // namespace

Json DhdmFacts(const fs::path& file, const ContentFiles& content)
{
    const std::string bytes = dson::ReadBytes(file);
    const dson::DhdmFacts detail = dson::DescribeDhdm(bytes, file.string());
    Json facts;
    facts["file"] = FileText(file);
    facts["bytes"] = bytes.size();
    facts["faces"] = detail.faceCount;
    facts["levels"] = Levels(detail);
    AddMorph(facts, file, detail.faceCount, content);
    return facts;
}

} // namespace cli
