// What is told of a conversion of single morphs, for programs and for people.
// SPDX-License-Identifier: MIT

#include "morphs/morph_json.h"

#include "base/counted.h"
#include "command.h"
#include "dson/reader.h"
#include "progress.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

Json Describe(const ConvertedMorph& morph, bool asJson)
{
    Json json{{"name", morph.name}};
    if (asJson) {
        json["label"] = morph.label;
        json["source"] = morph.source;
        json["path"] = morph.path;
        json["region"] = morph.region;
    }
    json["vertices_moved"] = morph.verticesMoved;
    if (morph.detailVerticesMoved > 0 || asJson)
        json["detail_vertices_moved"] = morph.detailVerticesMoved;
    json["largest_displacement_mm"] = Rounded(morph.largestDisplacementMm, 3);
    if (asJson) {
        json["drivers"] = morph.drivers;
        json["notes"] = morph.notes;
    }
    json["file"] = morph.file;
    return json;
}

Json Describe(const std::vector<SkippedMorph>& morphs)
{
    Json skipped = Json::array();
    for (const SkippedMorph& morph : morphs)
        skipped.push_back({{"name", morph.name}, {"reason", morph.reason}});
    return skipped;
}

Json DescribeDryRun(const MorphConversionReport& report, bool asJson)
{
    Json json = DescribePlan(report.planned, asJson);
    json["source"] = report.source;
    json["target"] = report.target;
    json["skipped"] = Describe(report.skipped);
    AddDiagnostics(json, report.diagnostics, asJson);
    return json;
}

} // namespace

Json DescribeMorphConversion(const MorphConversionReport& report, const Progress& progress, bool asJson)
{
    if (report.wasDryRun)
        return DescribeDryRun(report, asJson);
    Json created = Json::array();
    for (const ConvertedMorph& morph : report.created)
        created.push_back(Describe(morph, asJson));
    Json json{{"source", report.source},
              {"target", report.target},
              {"created", created},
              {"skipped", Describe(report.skipped)}};
    if (!report.page.empty()) {
        json["files"] = {FileText(report.page)};
        json["report"] = FileText(report.page);
    }
    json["seconds"] = SecondsOf(progress);
    json["peak_memory_mib"] = Rounded(PeakMemoryMebibytes(), 1);
    AddDiagnostics(json, report.diagnostics, asJson);
    return json;
}

std::string FailureOf(const MorphConversionReport& report)
{
    std::size_t failures = 0;
    for (const SkippedMorph& morph : report.skipped)
        failures += morph.isFailure ? 1 : 0;
    if (failures == 0)
        return {};
    if (report.wasDryRun)
        return base::Counted(failures, "morph would not be converted", "morphs would not be converted");
    return fmt::format("{} converted; {} saved", base::Counted(failures, "morph was not", "morphs were not"),
                       base::Counted(report.created.size(), "is", "are"));
}

} // namespace cli
