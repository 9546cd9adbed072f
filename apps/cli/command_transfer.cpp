// The subcommand `transfer`.
// SPDX-License-Identifier: MIT

#include "command_transfer.h"

#include "base/counted.h"
#include "command.h"
#include "dson/reader.h"
#include "geometry/crumple.h"
#include "geometry/deltas.h"
#include "geometry/errors.h"
#include "geometry/misfit.h"
#include "geometry/morph_transfer.h"
#include "interrupt.h"
#include "mesh_files.h"
#include "options.h"
#include "output_name.h"
#include "planned_files.h"
#include "progress.h"
#include "report.h"
#include "standard_streams.h"
#include "surface_match.h"

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using geometry::Vec3f;

/// A vertex that moves less counts as resting; cm.
constexpr float movedTolerance = 1e-4f;

struct TransferArguments {
    std::string sourceNeutral, sourceMorphed, targetNeutral, out;
    bool anyway = false, registers = false, json = false, isDryRun = false;
};

struct TransferInput {
    geometry::ObjContent source, morphed, target;
};

TransferInput ReadInput(const TransferArguments& arguments, base::Diagnostics& met)
{
    TransferInput input{ReadSurfaceFile(arguments.sourceNeutral, met),
                        ReadMeshFile(arguments.sourceMorphed, met),
                        ReadSurfaceFile(arguments.targetNeutral, met)};
    const std::size_t neutralCount = input.source.mesh.vertexCount(),
                      morphedCount = input.morphed.mesh.vertexCount();
    if (neutralCount != morphedCount)
        throw geometry::TopologyError("{} has {} but {} has {}", InputText(arguments.sourceMorphed),
                                      base::Counted(morphedCount, "vertex", "vertices"),
                                      InputText(arguments.sourceNeutral), neutralCount);
    return input;
}

std::vector<Vec3f> Difference(const std::vector<Vec3f>& neutral, const std::vector<Vec3f>& morphed)
{
    std::vector<Vec3f> deltas(neutral.size());
    for (std::size_t v = 0; v < deltas.size(); ++v)
        deltas[v] = morphed[v] - neutral[v];
    return deltas;
}

std::vector<Vec3f> Moved(std::vector<Vec3f> positions, const std::vector<Vec3f>& deltas)
{
    for (std::size_t v = 0; v < positions.size(); ++v)
        positions[v] += deltas[v];
    return positions;
}

void WriteMoved(const std::filesystem::path& file, const geometry::ObjContent& target,
                const std::vector<Vec3f>& positions)
{
    geometry::ObjPart part;
    part.mesh = {target.mesh.topology.get(), positions};
    part.texCoords = &target.texCoords;
    part.name = file.stem().u8string();
    geometry::ObjWriteOptions options;
    if (!target.materialLibraries.empty())
        options.materialLibrary = target.materialLibraries.front();
    geometry::WriteObj(file, {&part, 1}, options);
}

Json Describe(const geometry::Crumple& crumple)
{
    return {{"mean_degrees", Rounded(crumple.meanDegrees, 2)},
            {"p95_degrees", Rounded(crumple.p95Degrees, 2)},
            {"steep_percent", Rounded(100.0 * crumple.steepShare, 2)}};
}

Json Report(const TransferArguments& arguments, const TransferInput& input,
            const geometry::MatchStatistics& statistics, const std::vector<Vec3f>& deltas,
            const Progress& progress)
{
    const geometry::SparseDeltas moved = geometry::MakeDeltas(deltas, movedTolerance);
    Json report;
    report["source_neutral"] = arguments.sourceNeutral;
    report["source_morphed"] = arguments.sourceMorphed;
    report["target_neutral"] = arguments.targetNeutral;
    report["out"] = arguments.out;
    report["source_vertices"] = input.source.mesh.vertexCount();
    report["target_vertices"] = input.target.mesh.vertexCount();
    report["matched_vertices"] = statistics.matched;
    report["filled_vertices"] = statistics.filled;
    report["slide_mm"] = {{"mean", Rounded(statistics.meanSlide * millimetresPerCentimetre, 4)},
                          {"max", Rounded(statistics.longestSlide * millimetresPerCentimetre, 4)}};
    report["moved_vertices"] = moved.size();
    report["largest_displacement_mm"] = Rounded(geometry::LargestLength(moved) * millimetresPerCentimetre, 4);
    Json seconds = Json::object();
    for (const auto& [stage, duration] : progress.seconds())
        seconds[stage] = Rounded(duration, 4);
    seconds["total"] = Rounded(progress.totalSeconds(), 4);
    report["seconds"] = std::move(seconds);
    return report;
}

EitherWayMatch MatchWith(const TransferArguments& arguments, const TransferInput& input)
{
    try {
        geometry::MatchOptions options;
        options.registersFeatures = arguments.registers;
        return MatchEitherWay(input.source.mesh.view(), input.target.mesh.view(), options);
    } catch (const geometry::TopologyError& error) {
        throw geometry::TopologyError("{}: {}", InputText(arguments.sourceNeutral), error.what());
    }
}

/// @throws geometry::TopologyError  the meshes do not belong together, and nobody said to go on
EitherWayMatch Match(const TransferArguments& arguments, const TransferInput& input, base::Diagnostics& met)
{
    const auto warn = [&](const std::string& what) {
        met.push_back({base::Severity::Warning, InputText(arguments.targetNeutral), {}, what});
    };
    if (!HasArea(input.target.mesh.view()))
        throw geometry::TopologyError("{}: has no face with an area, so nothing tells which side is out",
                                      InputText(arguments.targetNeutral));
    EitherWayMatch matched = MatchWith(arguments, input);
    if (matched.isTurned)
        warn(fmt::format(
            "its faces are wound the other way round than those of {}; matched as if they were not",
            InputText(arguments.sourceNeutral)));
    if (!matched.isMisfit)
        return matched;
    const std::string reason =
        geometry::DescribeMisfit(matched.map.statistics(), input.source.mesh.positions,
                                 input.target.mesh.positions, InputText(arguments.sourceNeutral));
    if (!arguments.anyway)
        throw geometry::TopologyError("{}: {} (--anyway goes on)", InputText(arguments.targetNeutral),
                                      reason);
    warn(reason);
    return matched;
}

/// The neutral shapes say how much of it the target's own edges make.
Json DescribeCrumple(const EitherWayMatch& matched, const TransferInput& input,
                     const std::vector<Vec3f>& moved)
{
    const geometry::Topology& known = *input.target.mesh.topology;
    const geometry::Topology turned = matched.isTurned ? TurnedInsideOut(known) : geometry::Topology{};
    const geometry::Topology& topology = matched.isTurned ? turned : known;
    const auto measure = [&](const geometry::PolygonMesh& source, const std::vector<Vec3f>& target) {
        return Describe(geometry::MeasureCrumple(matched.map, source.view(), {&topology, target}));
    };
    return {{"neutral", measure(input.source.mesh, input.target.mesh.positions)},
            {"morphed", measure(input.morphed.mesh, moved)}};
}

void CheckFiles(const TransferArguments& arguments)
{
    CheckOneAtMost({{"--source-neutral", arguments.sourceNeutral},
                    {"--source-morphed", arguments.sourceMorphed},
                    {"--target-neutral", arguments.targetNeutral}});
    if (!IsStandardStream(arguments.out))
        CheckOutput(arguments.out,
                    {arguments.sourceNeutral, arguments.sourceMorphed, arguments.targetNeutral});
}

void Transfer(const TransferArguments& arguments)
{
    CheckFiles(arguments);
    const OutputFile out("--out", arguments.out, "standard output.obj", arguments.json);
    PlannedFiles planned;
    if (!arguments.isDryRun)
        ExpectFiles();
    else if (out.isStandardOutput())
        PlanStandardOutput(planned);
    else
        PlanFile(planned, arguments.out);
    Progress progress(!arguments.json);
    progress.stage("read", "Reading the meshes");
    base::Diagnostics met;
    const TransferInput input = ReadInput(arguments, met);
    progress.stage("match", "Matching the surfaces");
    const EitherWayMatch matched = Match(arguments, input, met);
    progress.stage("transfer", "Carrying the morph over");
    const std::vector<Vec3f> deltas =
        matched.map.transfer(Difference(input.source.mesh.positions, input.morphed.mesh.positions));
    const std::vector<Vec3f> moved = Moved(input.target.mesh.positions, deltas);
    if (!arguments.isDryRun) {
        progress.stage("write", "Writing " + arguments.out);
        WriteMoved(out.path(), input.target, moved);
    }
    progress.finish();
    if (!arguments.isDryRun)
        out.send();
    Json report = Report(arguments, input, matched.map.statistics(), deltas, progress);
    report["crumple"] = DescribeCrumple(matched, input, moved);
    AddDiagnostics(report, met, arguments.json);
    WriteResult(arguments.isDryRun ? WithPlan(planned, report, arguments.json) : report, arguments.json,
                arguments.isDryRun);
}

} // namespace

void AddTransferCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<TransferArguments>();
    CLI::App* const command = program.add_subcommand(
        "transfer", "Carry a morph from one mesh to another one that lies close to it");
    command->footer("Example:\n"
                    "  gantrel transfer \\\n"
                    "      --source-neutral old.obj --source-morphed old-smile.obj \\\n"
                    "      --target-neutral new.obj --out new-smile.obj");
    const auto addFile = [&](const char* option, std::string& file, const char* what) {
        command->add_option(option, file, what)->type_name("FILE.obj")->required();
    };
    addFile("--source-neutral", arguments->sourceNeutral,
            "The source's neutral shape; - reads one of the three from standard input");
    addFile("--source-morphed", arguments->sourceMorphed, "The source's morphed shape, same vertices");
    addFile("--target-neutral", arguments->targetNeutral, "The target's neutral shape");
    addFile("--out", arguments->out, "The target's morphed shape, to be written; - for standard output");
    command->add_flag("--anyway", arguments->anyway,
                      "Go on also when hardly any of the target lies on the source");
    AddRegisterOption(*command, arguments->registers);
    AddDryRunOption(*command, arguments->isDryRun, "all else is done");
    AddJsonOption(*command, arguments->json);
    command->callback([arguments, &context] { context.work = [arguments] { Transfer(*arguments); }; });
}

} // namespace cli
