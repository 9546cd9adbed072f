// Morph files.
// SPDX-License-Identifier: MIT

#include "arrays.h"
#include "base/counted.h"
#include "base/errors.h"
#include "bindings.h"
#include "classes.h"
#include "command.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "dson/writer.h"
#include "errors.h"
#include "geometry/errors.h"
#include "work.h"

#include <cmath>
#include <numeric>
#include <optional>

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace python {

namespace fs = std::filesystem;

namespace {

/// Its modifier has a morph.
struct Morph {
    dson::Modifier modifier;

    const dson::MorphData& data() const { return *modifier.morph; }
};

/// Ascending, as files have them.
geometry::SparseDeltas Sorted(const std::vector<std::uint32_t>& vertices,
                              base::Span<const geometry::Vec3f> deltas)
{
    std::vector<std::size_t> order(vertices.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return vertices[a] < vertices[b]; });
    geometry::SparseDeltas sorted;
    for (const std::size_t i : order) {
        if (!sorted.vertices.empty() && sorted.vertices.back() == vertices[i])
            throw geometry::TopologyError("vertices: has {} twice", vertices[i]);
        sorted.vertices.push_back(vertices[i]);
        sorted.deltas.push_back(deltas[i]);
    }
    return sorted;
}

struct MorphArguments {
    std::string name;
    std::optional<std::string> label;
    std::string group;
    std::int64_t vertexCount;
    double min, max;
    bool isClamped;
};

Morph MakeMorph(const MorphArguments& arguments, const py::object& vertices, const py::object& deltas)
{
    if (arguments.name.empty())
        throw cli::UsageError("name: is empty");
    if (!(std::isfinite(arguments.min) && std::isfinite(arguments.max) && arguments.min <= arguments.max))
        throw cli::UsageError("max: is below min, or one of the two is not finite");
    const std::vector<std::uint32_t> indices = ToIndices(vertices, "vertices");
    const Vectors moves = ToDeltas(deltas, "deltas");
    if (indices.size() != moves.span.size())
        throw geometry::TopologyError("there are {} but {}",
                                      base::Counted(indices.size(), "vertex", "vertices"),
                                      base::Counted(moves.span.size(), "delta", "deltas"));
    Morph morph{dson::MakeMorph(arguments.name, arguments.group)};
    morph.modifier.channel.label = arguments.label.value_or(arguments.name);
    morph.modifier.channel.min = arguments.min;
    morph.modifier.channel.max = arguments.max;
    morph.modifier.channel.clamped = arguments.isClamped;
    dson::MorphData data;
    data.vertexCount = arguments.vertexCount;
    data.deltas = Sorted(indices, moves.span);
    const bool isTooShort = data.vertexCount >= 0 && !data.deltas.empty() &&
                            data.deltas.vertices.back() >= static_cast<std::uint64_t>(data.vertexCount);
    if (data.vertexCount < -1 || isTooShort)
        throw geometry::TopologyError("vertex_count: is {}, and the morph moves vertex {}", data.vertexCount,
                                      data.deltas.empty() ? 0 : data.deltas.vertices.back());
    morph.modifier.morph = std::move(data);
    return morph;
}

std::vector<Morph> ReadMorphs(const fs::path& path)
{
    dson::Document document = RunFreely([&] { return dson::ReadDocument(path); });
    Warn(document.diagnostics);
    std::vector<Morph> morphs;
    for (dson::Modifier& modifier : document.modifiers)
        if (modifier.morph)
            morphs.push_back({std::move(modifier)});
    return morphs;
}

struct PlaceForMorph {
    fs::path contentFolder;
    std::string path, parent, author;
    bool compress, overwrite;
};

fs::path WriteMorphFile(const Morph& morph, const PlaceForMorph& place)
{
    if (place.path.empty() || dson::LeavesFolder(fs::path(place.path).relative_path().u8string()))
        throw cli::UsageError("path: \"" + place.path + "\" is none below a content folder");
    if (dson::ParseUri(place.parent).id.empty())
        throw cli::UsageError("parent: \"" + place.parent + "\" names no figure, such as /data/A/B/B.dsf#B");
    dson::AssetInfo info;
    info.id = place.path.front() == '/' ? place.path : "/" + place.path;
    info.type = "modifier";
    info.author = place.author;
    dson::Modifier modifier = morph.modifier;
    modifier.parent = place.parent;
    dson::WriteOptions options;
    options.compress = place.compress;
    options.isReplacement = true;
    const fs::path file = place.contentFolder.u8string() + info.id;
    std::error_code error;
    if (!place.overwrite && fs::exists(file, error))
        throw base::IoError("{}: is there already; overwrite=True replaces it", file.u8string());
    return RunFreely([&] { return dson::WriteMorph(info, modifier, place.contentFolder, options); });
}

void BindMorph(py::module_& module)
{
    py::class_<Morph>(module, "Morph", "What a dial does to the vertices of a mesh.", CallableClass())
        .def(py::init([](const std::string& name, const py::object& vertices, const py::object& deltas,
                         const std::optional<std::string>& label, const std::string& group,
                         std::int64_t vertexCount, double min, double max, bool isClamped) {
                 return MakeMorph({name, label, group, vertexCount, min, max, isClamped}, vertices, deltas);
             }),
             py::arg("name"), py::arg("vertices"), py::arg("deltas"), py::kw_only(),
             py::arg("label") = py::none(), py::arg("group") = "/", py::arg("vertex_count") = -1,
             py::arg("min") = 0.0, py::arg("max") = 1.0, py::arg("clamped") = true,
             "vertices has the indices, shape (n,), each once; deltas how far each moves at a dial of 1, in "
             "cm, "
             "shape (n, 3). Both are copied. vertex_count is that of the whole mesh, -1 for one that nobody "
             "checks.\n\nRaises MeshError or UsageError.")
        .def_property_readonly(
            "name", [](const Morph& morph) { return Text(morph.modifier.name); }, "The morph's name.")
        .def_property_readonly(
            "label", [](const Morph& morph) { return Text(morph.modifier.channel.label); }, "What users see.")
        .def_property_readonly(
            "group", [](const Morph& morph) { return Text(morph.modifier.group); },
            "Where the dial is shown, such as \"/Head/Nose\".")
        .def_property_readonly(
            "min", [](const Morph& morph) { return morph.modifier.channel.min; },
            "The least value of the dial; None where the file has none.")
        .def_property_readonly(
            "max", [](const Morph& morph) { return morph.modifier.channel.max; },
            "The largest value of the dial; None where the file has none.")
        .def_property_readonly(
            "clamped", [](const Morph& morph) { return morph.modifier.channel.clamped; },
            "Whether the dial stays within its limits.")
        .def_property_readonly(
            "vertex_count", [](const Morph& morph) { return morph.data().vertexCount; },
            "Vertices of the mesh; -1 for unchecked.")
        .def_property_readonly(
            "vertices",
            [](const py::object& self) {
                return ViewOf(self.cast<const Morph&>().data().deltas.vertices, self);
            },
            "The vertices that move, ascending; shape (n,), uint32, read only, without a copy.")
        .def_property_readonly(
            "deltas",
            [](const py::object& self) {
                return ViewOf(self.cast<const Morph&>().data().deltas.deltas, self);
            },
            "How far they move, in cm; shape (n, 3), float32, read only, without a copy.")
        .def_property_readonly(
            "detail_file", [](const Morph& morph) { return Text(morph.data().hdUrl); },
            "Address of the file with detail for subdivided meshes; empty for none.")
        .def("__repr__", [](const Morph& morph) {
            return Text(fmt::format("<gantrel.Morph \"{}\": {}>", morph.modifier.name,
                                    base::Counted(morph.data().deltas.size(), "vertex", "vertices")));
        });
}

} // namespace

void BindMorphs(py::module_& module)
{
    BindMorph(module);
    module.def(
        "read_morphs", &ReadMorphs, py::arg("path"),
        "The morphs of a .dsf or .duf file, plain or compressed; dials that move nothing are not among "
        "them.\n\nWhat the file has odd is told as a Warning. Raises FileError or FormatError.");
    module.def(
        "write_morph",
        [](const fs::path& library, const std::string& path, const Morph& morph, const std::string& parent,
           const std::string& author, bool compress, bool overwrite) {
            return WriteMorphFile(morph, {library, path, parent, author, compress, overwrite});
        },
        py::arg("library"), py::arg("path"), py::arg("morph"), py::kw_only(), py::arg("parent"),
        py::arg("author") = "", py::arg("compress") = false, py::arg("overwrite") = false,
        "Writes a morph below a content folder, and returns the file's path.\n\n"
        "path is that within the folder, parent the address of the figure, such as \"/data/A/B/B.dsf#B\". "
        "Folders are made; the file appears whole or not at all. Links to other dials and detail for "
        "subdivided "
        "meshes, which a morph that was read may have had in its file, are not written.\n\n"
        "Raises FileError, also where a file is there and overwrite is not set, FormatError or UsageError.");
}

} // namespace python
