// Meshes: faces, OBJ files, subdivision.
// SPDX-License-Identifier: MIT

#include "arrays.h"
#include "base/counted.h"
#include "bindings.h"
#include "command.h"
#include "dson/reader.h"
#include "errors.h"
#include "faces.h"
#include "geometry/errors.h"
#include "geometry/obj.h"
#include "geometry/subdivision.h"
#include "memory_need.h"
#include "mesh_files.h"
#include "work.h"

#include <cmath>
#include <optional>
#include <string>

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace python {

namespace fs = std::filesystem;

namespace {

using geometry::Topology;
using geometry::TopologyError;

/// As figures have it.
constexpr int finestLevel = 5;

struct Mesh {
    py::array vertices;
    Faces faces;
};

Mesh Wrap(geometry::PolygonMesh mesh)
{
    return {FromVectors(std::move(mesh.positions)), {std::move(mesh.topology)}};
}

Mesh ReadObjFile(const fs::path& path)
{
    base::Diagnostics met;
    geometry::ObjContent content = RunFreely([&] { return cli::ReadMeshFile(path, met); });
    Warn(met);
    return Wrap(std::move(content.mesh));
}

void WriteObjFile(const fs::path& path, const py::object& vertices, const py::object& faces,
                  const std::string& name, int decimals)
{
    constexpr int mostDecimals = 17;
    if (decimals < 0 || decimals > mostDecimals)
        throw cli::UsageError(fmt::format("decimals: is {}, not 0 to {}", decimals, mostDecimals));
    const Vectors positions = ToPositions(vertices, "vertices");
    const auto topology = ToTopology(faces, positions.span.size(), "faces");
    geometry::ObjPart part;
    part.mesh = {topology.get(), positions.span};
    part.name = name;
    geometry::ObjWriteOptions options;
    options.decimals = decimals;
    RunFreely([&] { geometry::WriteObj(path, {&part, 1}, options); });
}

/// Systems that promise more memory than there is end the program when it is used.
void CheckMemory(const Topology& cage, int level)
{
    // Measured with planes at levels 2 to 5: 250 to 261 bytes for each vertex of the finest mesh.
    constexpr double bytesForVertex = 320.0, mebibyte = 1024.0 * 1024.0;
    const double vertices = static_cast<double>(cage.cornerCount()) * std::pow(4.0, level - 1);
    const std::optional<double> left = cli::MemoryLeft();
    if (!left || level == 0 || vertices * bytesForVertex <= *left)
        return;
    PyErr_SetString(
        PyExc_MemoryError,
        fmt::format("Subdivision to level {} needs about {:.0f} MiB of memory, and {:.0f} are left.", level,
                    vertices * bytesForVertex / mebibyte, *left / mebibyte)
            .c_str());
    throw py::error_already_set();
}

Mesh Subdivide(const py::object& vertices, const py::object& faces, int level)
{
    if (level < 0 || level > finestLevel)
        throw cli::UsageError(fmt::format("level: is {}, not 0 to {}", level, finestLevel));
    const Vectors positions = ToPositions(vertices, "vertices");
    const auto topology = ToTopology(faces, positions.span.size(), "faces");
    CheckMemory(*topology, level);
    return Wrap(RunFreely([&] {
        const geometry::Subdivision subdivision(topology, level);
        return geometry::PolygonMesh{subdivision.topology(level),
                                     subdivision.refine(positions.span, 0, level)};
    }));
}

py::array FaceAt(const py::object& self, py::ssize_t index)
{
    const Topology& topology = *self.cast<const Faces&>().topology;
    const auto count = static_cast<py::ssize_t>(topology.faceCount());
    if (index < -count || index >= count)
        throw py::index_error("the mesh has " + base::Counted(topology.faceCount(), "face", "faces"));
    return ViewOf(topology.face(static_cast<std::size_t>(index < 0 ? index + count : index)), self);
}

py::array AsArray(const py::object& self)
{
    const Topology& topology = *self.cast<const Faces&>().topology;
    const std::size_t faces = topology.faceCount(), corners = faces == 0 ? 0 : topology.face(0).size();
    for (std::size_t f = 0; f < faces; ++f)
        if (topology.face(f).size() != corners)
            throw TopologyError("face {} has {} corners and face 0 has {}", f, topology.face(f).size(),
                                corners);
    return ViewOf(topology.cornerVertices, self).reshape({faces, corners});
}

void BindFaces(py::module_& module)
{
    const auto labels = [](const py::object& self, std::vector<std::uint32_t> Topology::*member) {
        return ViewOf((*self.cast<const Faces&>().topology).*member, self);
    };
    const auto names = [](const std::vector<std::string>& texts) {
        py::list list;
        for (const std::string& text : texts)
            list.append(Text(text));
        return list;
    };
    py::class_<Faces>(module, "Faces", "The faces of a mesh: polygons as lists of vertex indices. Read only.")
        .def("__len__", [](const Faces& faces) { return faces.topology->faceCount(); })
        .def("__getitem__", &FaceAt, py::arg("index"), "The vertices of a face, shape (corners,), uint32.")
        .def("as_array", &AsArray,
             "All faces in one array of shape (faces, corners), uint32, without a copy.\n\n"
             "Raises MeshError when the faces have different numbers of corners.")
        .def_property_readonly(
            "vertex_count", [](const Faces& faces) { return faces.topology->vertexCount; },
            "How many vertices the mesh has.")
        .def_property_readonly(
            "offsets", [=](const py::object& self) { return labels(self, &Topology::faceOffsets); },
            "Where each face begins in corners, and the end of the last; shape (faces + 1,), uint32.")
        .def_property_readonly(
            "corners", [=](const py::object& self) { return labels(self, &Topology::cornerVertices); },
            "The vertices of all faces, one face after the other; uint32.")
        .def_property_readonly(
            "group_names", [=](const Faces& faces) { return names(faces.topology->groupNames); },
            "Names of the face groups, for example one for each bone.")
        .def_property_readonly(
            "groups", [=](const py::object& self) { return labels(self, &Topology::faceGroups); },
            "The group of each face, an index into group_names; empty without groups.")
        .def_property_readonly(
            "surface_names", [=](const Faces& faces) { return names(faces.topology->surfaceNames); },
            "Names of the surfaces, or materials.")
        .def_property_readonly(
            "surfaces", [=](const py::object& self) { return labels(self, &Topology::faceSurfaces); },
            "The surface of each face, an index into surface_names; empty without surfaces.")
        .def("__repr__", [](const Faces& faces) {
            return "<gantrel.Faces: " + base::Counted(faces.topology->faceCount(), "face", "faces") + ">";
        });
}

} // namespace

void BindMeshes(py::module_& module)
{
    BindFaces(module);
    py::class_<Mesh>(module, "Mesh", "Vertices and faces.")
        .def_readonly("vertices", &Mesh::vertices, "Positions in cm, shape (n, 3), float32.")
        .def_readonly("faces", &Mesh::faces, "A Faces object.")
        .def("__repr__", [](const Mesh& mesh) {
            return fmt::format(
                "<gantrel.Mesh: {}, {}>",
                base::Counted(static_cast<std::size_t>(mesh.vertices.shape(0)), "vertex", "vertices"),
                base::Counted(mesh.faces.topology->faceCount(), "face", "faces"));
        });
    module.def(
        "read_obj", &ReadObjFile, py::arg("path"),
        "Reads an OBJ file, whose unit is taken for a centimetre; its vertices keep their order.\n\n"
        "What is left out is told as a Warning. Raises FileError, or FormatError, which names the line.");
    module.def("write_obj", &WriteObjFile, py::arg("path"), py::arg("vertices"), py::arg("faces"),
               py::kw_only(), py::arg("name") = "mesh", py::arg("decimals") = 6,
               "Writes an OBJ file in centimetres, in place of one that is there; it appears whole or not at "
               "all.\n\nRaises FileError, MeshError or UsageError.");
    module.def(
        "subdivide", &Subdivide, py::arg("vertices"), py::arg("faces"), py::arg("level"),
        "Refines a mesh by the rules of Catmull and Clark; level is 0 to 5, and 0 is the mesh itself.\n\n"
        "Borders are smooth curves. Raises MeshError or UsageError, and MemoryError before the work for what "
        "the "
        "machine cannot hold.");
}

} // namespace python
