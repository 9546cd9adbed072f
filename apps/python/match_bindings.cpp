// Carrying morphs between meshes.
// SPDX-License-Identifier: MIT

#include "arrays.h"
#include "base/counted.h"
#include "bindings.h"
#include "classes.h"
#include "command.h"
#include "dson/reader.h"
#include "errors.h"
#include "geometry/errors.h"
#include "geometry/misfit.h"
#include "geometry/morph_transfer.h"
#include "surface_match.h"
#include "work.h"

#include <cmath>

#include <fmt/format.h>

namespace python {

namespace {

using geometry::MatchStatistics;
using geometry::PolygonMeshView;
using geometry::SurfaceMap;
using geometry::TopologyError;
using geometry::Vec3f;

struct MatchArguments {
    bool registers = false, anyway = false;
    float maxDistanceInEdges = geometry::MatchOptions().maxDistanceInEdges;
    float maxAngleDegrees = geometry::MatchOptions().maxAngleDegrees;
};

geometry::MatchOptions OptionsOf(const MatchArguments& arguments)
{
    if (!std::isfinite(arguments.maxDistanceInEdges) || arguments.maxDistanceInEdges <= 0.0f)
        throw cli::UsageError("max_distance: is no number above 0");
    if (!(arguments.maxAngleDegrees > 0.0f && arguments.maxAngleDegrees <= 180.0f))
        throw cli::UsageError("max_angle: is no angle above 0 and up to 180");
    return {arguments.maxDistanceInEdges, arguments.maxAngleDegrees, arguments.registers};
}

/// A mesh of the caller's, as long as the arguments live.
struct GivenMesh {
    GivenMesh(const py::handle& vertices, const char* verticesName, const py::handle& faces,
              const char* facesName)
        : positions(ToPositions(vertices, verticesName)),
          topology(ToTopology(faces, positions.span.size(), facesName))
    {
    }
    PolygonMeshView view() const { return {topology.get(), positions.span}; }

    Vectors positions;
    std::shared_ptr<const geometry::Topology> topology;
};

/// @throws TopologyError  the meshes do not belong together, and nobody said to go on
SurfaceMap MatchMeshes(const GivenMesh& source, const GivenMesh& target, const MatchArguments& arguments)
{
    const geometry::MatchOptions options = OptionsOf(arguments);
    cli::EitherWayMatch matched = RunFreely([&] {
        if (target.topology->faceCount() > 0 && !cli::HasArea(target.view()))
            throw TopologyError("target_faces: none has an area, so nothing tells which side is out");
        return cli::MatchEitherWay(source.view(), target.view(), options);
    });
    if (matched.isTurned)
        Warn(
            {{base::Severity::Warning,
              {},
              {},
              "target_faces: are wound the other way round than source_faces; matched as if they were not"}});
    if (!matched.isMisfit)
        return std::move(matched.map);
    const std::string reason =
        "target_vertices: " + geometry::DescribeMisfit(matched.map.statistics(), source.positions.span,
                                                       target.positions.span, "the source");
    if (!arguments.anyway)
        throw TopologyError("{}; anyway=True goes on", reason);
    Warn({{base::Severity::Warning, {}, {}, reason}});
    return std::move(matched.map);
}

class Match {
public:
    Match(const py::object& sourceVertices, const py::object& sourceFaces, const py::object& targetVertices,
          const py::object& targetFaces, const MatchArguments& arguments)
        : _map(MatchMeshes({sourceVertices, "source_vertices", sourceFaces, "source_faces"},
                           {targetVertices, "target_vertices", targetFaces, "target_faces"}, arguments))
    {
    }

    py::array transfer(const py::object& values) const
    {
        // One number a vertex, such as a weight, is carried like the three of a delta.
        if (const py::array array = py::array::ensure(values); array && array.ndim() == 1) {
            const Floats numbers = ToNumbers(array, "values");
            const base::Span<const float> span(numbers.data(), static_cast<std::size_t>(numbers.size()));
            return FromFloats(RunFreely([&] { return _map.transfer(span); }));
        }
        PyErr_Clear();
        const Vectors deltas = ToDeltas(values, "values");
        return FromVectors(RunFreely([&] { return _map.transfer(deltas.span); }));
    }

    const SurfaceMap& map() const { return _map; }

private:
    SurfaceMap _map;
};

std::vector<Vec3f> Difference(base::Span<const Vec3f> neutral, base::Span<const Vec3f> morphed)
{
    std::vector<Vec3f> deltas(neutral.size());
    for (std::size_t v = 0; v < deltas.size(); ++v)
        deltas[v] = morphed[v] - neutral[v];
    return deltas;
}

py::array Transfer(const py::object& sourceNeutral, const py::object& sourceMorphed,
                   const py::object& sourceFaces, const py::object& targetNeutral,
                   const py::object& targetFaces, bool registers, bool anyway)
{
    const GivenMesh source{sourceNeutral, "source_neutral", sourceFaces, "source_faces"};
    const GivenMesh target{targetNeutral, "target_neutral", targetFaces, "target_faces"};
    const Vectors morphed = ToPositions(sourceMorphed, "source_morphed");
    if (morphed.span.size() != source.positions.span.size())
        throw TopologyError("source_morphed: has {} but source_neutral has {}",
                            base::Counted(morphed.span.size(), "vertex", "vertices"),
                            source.positions.span.size());
    MatchArguments arguments;
    arguments.registers = registers;
    arguments.anyway = anyway;
    const SurfaceMap map = MatchMeshes(source, target, arguments);
    return FromVectors(RunFreely([&] {
        std::vector<Vec3f> shape = map.transfer(Difference(source.positions.span, morphed.span));
        for (std::size_t v = 0; v < shape.size(); ++v)
            shape[v] += target.positions.span[v];
        return shape;
    }));
}

void BindStatistics(py::module_& module)
{
    py::class_<MatchStatistics>(module, "MatchStatistics", "What a match found.")
        .def_readonly("matched", &MatchStatistics::matched,
                      "Target vertices with a place of their own on the source.")
        .def_readonly("filled", &MatchStatistics::filled,
                      "Target vertices that take their values from their neighbours.")
        .def_readonly("mean_slide", &MatchStatistics::meanSlide,
                      "How far vertices had slid along the source's surface, on average; cm.")
        .def_readonly("longest_slide", &MatchStatistics::longestSlide, "The longest of these ways; cm.")
        .def("__repr__", [](const MatchStatistics& statistics) {
            return fmt::format("<gantrel.MatchStatistics: {} matched, {} filled>", statistics.matched,
                               statistics.filled);
        });
}

} // namespace

void BindMatches(py::module_& module)
{
    BindStatistics(module);
    const MatchArguments defaults;
    py::class_<Match>(module, "Match",
                      "Where each vertex of a target lies on a source's surface. Made once for a pair of "
                      "neutral shapes that lie close to each other, it carries any number of morphs, also on "
                      "several threads.",
                      CallableClass())
        .def(py::init([](const py::object& sourceVertices, const py::object& sourceFaces,
                         const py::object& targetVertices, const py::object& targetFaces, bool registers,
                         bool anyway, float maxDistance, float maxAngle) {
                 return std::make_unique<Match>(sourceVertices, sourceFaces, targetVertices, targetFaces,
                                                MatchArguments{registers, anyway, maxDistance, maxAngle});
             }),
             py::arg("source_vertices"), py::arg("source_faces"), py::arg("target_vertices"),
             py::arg("target_faces"), py::kw_only(), py::arg("register") = false, py::arg("anyway") = false,
             py::arg("max_distance") = defaults.maxDistanceInEdges,
             py::arg("max_angle") = defaults.maxAngleDegrees,
             "Arrays of float32 that are contiguous row by row are read where they are; others are converted "
             "first. None is kept.\n\n"
             "register moves the match to where the features of both meet, for targets that are bent; it "
             "takes "
             "a few times as long. anyway goes on, with a Warning, when hardly any of the target lies on the "
             "source. A target that is inside out is turned for the match, with a Warning. max_distance is "
             "in mean edge lengths near the vertex, max_angle in degrees between the "
             "normals.\n\n"
             "Raises MeshError or UsageError.")
        .def("transfer", &Match::transfer, py::arg("values"),
             "Carries deltas (cm, shape (n, 3)) or numbers (shape (n,)), one for each source vertex, and "
             "returns one for each target vertex, float32. Linear in the values.\n\nRaises MeshError.")
        .def_property_readonly(
            "statistics", [](const Match& match) { return match.map().statistics(); },
            "A MatchStatistics object.")
        .def_property_readonly(
            "source_faces",
            [](const py::object& self) {
                return ViewOf(self.cast<const Match&>().map().sourceFaces(), self);
            },
            "The source face that each target vertex lies nearest to, uint32; 2**32 - 1 where filled in.")
        .def_property_readonly(
            "source_vertex_count", [](const Match& match) { return match.map().sourceVertexCount(); },
            "How many values transfer takes.")
        .def_property_readonly(
            "target_vertex_count", [](const Match& match) { return match.map().targetVertexCount(); },
            "How many values transfer returns.")
        .def("__repr__", [](const Match& match) {
            return fmt::format("<gantrel.Match: {} to {}>",
                               base::Counted(match.map().sourceVertexCount(), "vertex", "vertices"),
                               match.map().targetVertexCount());
        });
    module.def("transfer", &Transfer, py::arg("source_neutral"), py::arg("source_morphed"),
               py::arg("source_faces"), py::arg("target_neutral"), py::arg("target_faces"), py::kw_only(),
               py::arg("register") = false, py::arg("anyway") = false,
               "Carries one morph to a mesh that lies close to the source, and returns the target's morphed "
               "positions in cm, shape (n, 3), float32. For several morphs of a pair, make a Match.\n\n"
               "Arguments are read as those of Match are. Raises MeshError.");
}

} // namespace python
