// What is told of a conversion, for programs and for people.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_json.h"

#include "command.h"
#include "progress.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace cli {

namespace {

Json Describe(const geometry::DistanceEstimate& distance)
{
    const auto millimetres = [](double cm) { return Rounded(millimetresPerCentimetre * cm, 4); };
    Json json{{"mean", millimetres(distance.summary.mean)},
              {"p95", millimetres(distance.summary.p95)},
              {"max", millimetres(distance.summary.max)}};
    if (distance.measured < distance.all)
        json["sample"] = {{"vertices", distance.measured},
                          {"of", distance.all},
                          {"mean_error", millimetres(distance.meanError)},
                          {"p95_from", millimetres(distance.p95Low)},
                          {"p95_to", millimetres(distance.p95High)}};
    return json;
}

Json Describe(const FigureReport& figure)
{
    return {{"label", figure.label},
            {"kind", figure.kind},
            {"asset_uri", figure.assetUri},
            {"vertices", figure.vertices}};
}

Json Describe(const MorphReport& morph, bool asJson)
{
    Json json{{"name", morph.name}};
    if (asJson)
        json["label"] = morph.label;
    json["kind"] = morph.kind;
    json["path"] = morph.path;
    json["vertices_moved"] = morph.verticesMoved;
    json["largest_displacement_mm"] = Rounded(morph.largestDisplacementMm, 3);
    if (morph.detailVerticesMoved > 0)
        json["detail_vertices_moved"] = morph.detailVerticesMoved;
    if (morph.jointsMoved) {
        json["joints_moved"] = *morph.jointsMoved;
        json["largest_joint_shift_mm"] = Rounded(morph.largestJointShiftMm, 3);
    }
    if (!morph.savedFile.empty())
        json["file"] = morph.savedFile;
    return json;
}

const char* const nothingKept = "nothing: --save-library, --export-obj, --pictures or --report say where to";

Json DescribeDials(const ConversionReport& report)
{
    return {{"source", Describe(report.sourceDials)}, {"target", Describe(report.targetDials)}};
}

Json DescribeDryRun(const ConversionReport& report, bool asJson)
{
    Json json = DescribePlan(report.planned, asJson);
    if (!asJson && report.planned.empty())
        json["kept"] = nothingKept;
    json["figures"] = {{"source", Describe(report.source)}, {"target", Describe(report.target)}};
    json["dials"] = DescribeDials(report);
    json["clone_shape"] = report.cloneShape;
    json["active_morphs"] = report.activeMorphs;
    json["morphs"] = report.plannedNames;
    AddDiagnostics(json, report.diagnostics, asJson);
    return json;
}

} // namespace

Json DescribeConversion(const ConversionReport& report, const Progress& progress, bool asJson)
{
    if (report.wasDryRun)
        return DescribeDryRun(report, asJson);
    Json created = Json::array(), missing = Json::array(), files = Json::array();
    for (const MorphReport& morph : report.created)
        created.push_back(Describe(morph, asJson));
    for (const auto& morph : report.missing)
        missing.push_back({{"name", morph.first}, {"value", morph.second}});
    for (const std::filesystem::path& file : report.files)
        files.push_back(FileText(file));
    Json json{{"figures", {{"source", Describe(report.source)}, {"target", Describe(report.target)}}},
              {"dials", DescribeDials(report)},
              {"kind", report.source.kind},
              {"clone_shape", report.cloneShape},
              {"active_morphs", report.activeMorphs},
              {"jobs", report.jobs},
              {"resolution", report.subdLevel ? "subd" : "base"},
              {"subd_level", report.subdLevel ? Json(*report.subdLevel) : Json(nullptr)},
              {"created_morphs", created},
              {"missing_morphs", missing}};
    json["surface_distance_mm"] = report.distance ? Describe(*report.distance) : Json(nullptr);
    if (report.distance)
        json["surface_distance_mm"]["parts"] = report.measuredParts;
    json["files"] = files;
    if (!report.page.empty())
        json["report"] = FileText(report.page);
    const bool isSaved = std::any_of(report.created.begin(), report.created.end(),
                                     [](const MorphReport& morph) { return !morph.savedFile.empty(); });
    if (!asJson && files.empty() && report.page.empty() && !isSaved)
        json["kept"] = nothingKept;
    if (!report.temporaryFolder.empty())
        json["temporary_folder"] = FileText(report.temporaryFolder);
    json["seconds"] = SecondsOf(progress);
    json["peak_memory_mib"] = Rounded(PeakMemoryMebibytes(), 1);
    AddDiagnostics(json, report.diagnostics, asJson);
    return json;
}

} // namespace cli
