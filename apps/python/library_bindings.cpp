// Libraries, figures and their dials.
// SPDX-License-Identifier: MIT

#include "arrays.h"
#include "base/counted.h"
#include "base/errors.h"
#include "bindings.h"
#include "classes.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "dzintproperty.h"
#include "dznumericproperty.h"
#include "errors.h"
#include "faces.h"
#include "figure.h"
#include "figure_kind.h"
#include "figure_scene.h"
#include "ks_daz-helpers.h"
#include "openhost/shapes.h"
#include "scene_nodes.h"
#include "work.h"

#include <cmath>
#include <set>

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace python {

namespace fs = std::filesystem;

DzFigure& Figure::use() const
{
    origin->checkUsable();
    if (!node)
        Raise("ClosedError", "the figure is no longer in the library's scene");
    return *node;
}

namespace {

constexpr int finestLevel = 5;

/// Does the work with a figure, and tells what the host had to say of it.
template <class Function>
auto WorkWith(const Figure& figure, Function&& function)
{
    DzFigure& node = figure.use();
    auto result = [&] {
        const OpenLibrary::Use use(*figure.origin);
        return RunFreely([&] { return function(node); });
    }();
    figure.origin->warn();
    return result;
}

struct Dial {
    Figure figure;
    QPointer<DzNumericProperty> property;
    std::string name, label;

    /// Throws as Figure::use().
    DzNumericProperty& use() const
    {
        figure.use();
        if (!property)
            Raise("ClosedError", "the dial is no longer on its figure");
        return *property;
    }
    /// What stands behind it, if it is an alias.
    DzNumericProperty& target() const { return cli::TargetOf({&use()}); }
};

void Turn(const Dial& dial, double value)
{
    DzNumericProperty& property = dial.use();
    if (!std::isfinite(value))
        throw cli::UsageError(fmt::format("\"{}\" cannot be set to what is not finite", dial.name));
    base::Diagnostics met;
    WorkWith(dial.figure, [&](DzFigure&) {
        cli::Dial known;
        known.property = &property;
        known.name = dial.name;
        cli::TurnDial(known, {dial.name, value}, met);
        return true;
    });
    dial.figure.origin->warn(met);
}

/// The dials of a figure, by name.
struct Dials {
    Figure figure;

    Dial find(const std::string& name) const
    {
        const cli::Dial found = cli::FindDial(figure.use(), name);
        return {figure, found.property, found.name, found.label};
    }
    bool has(const std::string& name) const
    {
        try {
            find(name);
            return true;
        } catch (const cli::UnknownDial&) {
            return false;
        }
    }
    /// Those shown, each name once.
    std::vector<Dial> all() const
    {
        const DzFigure& node = figure.use();
        std::vector<Dial> dials;
        std::set<std::string> names;
        for (const std::vector<cli::Dial>& list : {cli::OwnDials(node), cli::BoneDials(node)})
            for (const cli::Dial& one : list)
                if (!one.property->isHidden() && names.insert(one.name).second)
                    dials.push_back({figure, one.property, one.name, one.label});
        return dials;
    }
};

py::list Names(const std::vector<Dial>& dials)
{
    py::list names;
    for (const Dial& dial : dials)
        names.append(Text(dial.name));
    return names;
}

py::list Items(const std::vector<Dial>& dials)
{
    py::list items;
    for (const Dial& dial : dials)
        items.append(py::make_tuple(Text(dial.name), dial));
    return items;
}

bool HasMesh(const DzNode& node)
{
    return node.getObject() && kst::daz::GetCurrentShape(node, false);
}

std::vector<DzNode*> OpenFile(const OpenLibrary& library, cli::HostSession& session, const fs::path& path)
{
    const std::set<const DzNode*> before = cli::NodesInScene();
    try {
        return session.open(cli::SceneOf(path, library.folders(), session.temporaryFolder()));
    } catch (...) {
        // Half a figure of a load that came to nothing would be in the way of the next.
        cli::RemoveAllBut(before);
        throw;
    }
}

std::vector<Figure> Load(const std::shared_ptr<OpenLibrary>& library, const fs::path& path)
{
    std::vector<Figure> figures;
    {
        const OpenLibrary::Use use(*library);
        for (DzNode* const node : RunFreely([&] { return OpenFile(*library, use.session(), path); }))
            if (auto* const figure = qobject_cast<DzFigure*>(node); figure && HasMesh(*figure))
                figures.push_back({library, figure, path});
    }
    library->warn();
    if (figures.empty())
        throw base::FormatError("{}: has no figure with a mesh", path.u8string());
    return figures;
}

/// Copied, since the scene's own changes with the next dial.
geometry::PolygonMesh MeshOf(const Figure& figure)
{
    return WorkWith(figure, [](const DzFigure& node) {
        const geometry::PolygonMeshView view = openhost::WorldMesh(node);
        return geometry::PolygonMesh{std::make_shared<geometry::Topology>(*view.topology),
                                     {view.positions.begin(), view.positions.end()}};
    });
}

py::array VerticesOf(const Figure& figure)
{
    return FromVectors(WorkWith(figure, [](const DzFigure& node) {
        const base::Span<const geometry::Vec3f> positions = openhost::WorldMesh(node).positions;
        return std::vector<geometry::Vec3f>(positions.begin(), positions.end());
    }));
}

int LevelOf(const Figure& figure)
{
    using kst::daz::NodeResolution;
    const DzFigure& node = figure.use();
    int level = 0;
    const bool isFine = kst::daz::GetNodeResolution(node) == NodeResolution::HighResolution;
    return isFine && kst::daz::GetSubdivisionLevel(node, &level) ? level : 0;
}

void SetLevel(const Figure& figure, int level)
{
    using kst::daz::NodeResolution;
    if (level < 0 || level > finestLevel)
        throw cli::UsageError(fmt::format("level: is {}, not 0 to {}", level, finestLevel));
    const DzFigure& node = figure.use();
    if (level > 0)
        kst::daz::FindSubdivisionLevelIntProperty(node, true)->setValue(level);
    kst::daz::SetNodeResolution(
        node, level > 0 ? NodeResolution::HighResolution : NodeResolution::BaseResolution, true);
}

fs::path ToFolder(const py::handle& folder)
{
    try {
        return folder.cast<fs::path>();
    } catch (const py::cast_error&) {
        throw py::type_error("a content folder is no path");
    }
}

std::vector<fs::path> ToFolders(const py::object& folders)
{
    std::vector<fs::path> paths;
    if (py::isinstance<py::str>(folders) || py::hasattr(folders, "__fspath__"))
        paths.push_back(ToFolder(folders));
    else
        for (const py::handle folder : py::iter(folders))
            paths.push_back(ToFolder(folder));
    if (paths.empty())
        throw cli::UsageError("a library needs a content folder");
    return paths;
}

void BindDials(py::module_& module)
{
    const auto number = [](double (DzNumericProperty::*get)() const) {
        return [get](const Dial& dial) { return (dial.target().*get)(); };
    };
    py::class_<Dial>(module, "Dial", "A number of a figure. 1 is what is shown as 100 %.")
        .def_property_readonly(
            "name", [](const Dial& dial) { return Text(dial.name); }, "The dial's name.")
        .def_property_readonly(
            "label", [](const Dial& dial) { return Text(dial.label); }, "What users see.")
        .def_property_readonly(
            "path", [](const Dial& dial) { return Text(dial.use().getPath().toStdString()); },
            "Where the dial is shown, such as \"/Head/Nose\".")
        .def_property(
            "value", [](const Dial& dial) { return dial.use().getDoubleValue(); }, &Turn,
            "The value in effect, with what other dials add. A value beyond the limits is held within them, "
            "with a Warning. Raises UsageError for what is not finite.")
        .def_property_readonly("default", number(&DzNumericProperty::getDoubleDefaultValue),
                               "The value that a new figure has.")
        .def_property_readonly("min", number(&DzNumericProperty::getDoubleMin), "The least value.")
        .def_property_readonly("max", number(&DzNumericProperty::getDoubleMax), "The largest value.")
        .def_property_readonly(
            "clamped", [](const Dial& dial) { return dial.target().isClamped(); },
            "Whether the dial stays within its limits.")
        .def("__repr__",
             [](const Dial& dial) { return Text(fmt::format("<gantrel.Dial \"{}\">", dial.name)); });
    py::class_<Dials>(
        module, "Dials",
        "A mapping of the dials that a figure shows, by name. A dial is also found by its label, "
        "and without regard to case; hidden ones, and those that every figure has, are found "
        "and not listed.")
        .def("__getitem__", &Dials::find, py::arg("name"), "The dial; raises UnknownDialError.")
        .def(
            "__setitem__",
            [](const Dials& dials, const std::string& name, double value) { Turn(dials.find(name), value); },
            py::arg("name"), py::arg("value"), "Sets the dial's value; raises UnknownDialError.")
        .def("__contains__", &Dials::has, py::arg("name"), "Whether a dial of the name is found.")
        .def(
            "__contains__", [](const Dials&, const py::object&) { return false; }, py::arg("name"))
        .def("__len__", [](const Dials& dials) { return dials.all().size(); })
        .def("__repr__",
             [](const Dials& dials) {
                 return "<gantrel.Dials: " + base::Counted(dials.all().size(), "dial", "dials") + ">";
             })
        .def("__iter__", [](const Dials& dials) { return py::iter(Names(dials.all())); })
        .def(
            "keys", [](const Dials& dials) { return Names(dials.all()); }, "A list of the names.")
        .def("values", &Dials::all, "A list of the dials.")
        .def(
            "items", [](const Dials& dials) { return Items(dials.all()); }, "A list of both.")
        .def(
            "get",
            [](const Dials& dials, const std::string& name, const py::object& otherwise) {
                return dials.has(name) ? py::cast(dials.find(name)) : otherwise;
            },
            py::arg("name"), py::arg("default") = py::none(), "The dial, or what is given for none.");
}

void BindFigure(py::module_& module)
{
    py::class_<Figure>(module, "Figure", "A figure in a library's scene; of use until the library is closed.")
        .def_property_readonly(
            "label", [](const Figure& figure) { return Text(figure.use().getLabel().toStdString()); },
            "Its name in the scene.")
        .def_property_readonly(
            "kind",
            [](const Figure& figure) {
                return cli::FigureKindName(kst::daz::GetBaseFigure(kst::daz::GetNodeAssetUri(figure.use())));
            },
            "\"genesis9\", \"genesis8_1female\" and so on; \"other\" for no stock figure.")
        .def_readonly("file", &Figure::file, "The file that it was loaded from.")
        .def_property_readonly(
            "dials", [](const Figure& figure) { return Dials{figure}; }, "A mapping of names to dials.")
        .def_property_readonly(
            "vertices", &VerticesOf,
            "Positions of the present shape in the world, at the present level; cm, shape (n, 3), float32. "
            "A copy of its own: the scene's array changes with the next dial.")
        .def_property_readonly(
            "faces", [](const Figure& figure) { return Faces{MeshOf(figure).topology}; },
            "The faces at the present level, a copy of its own.")
        .def_property("level", &LevelOf, &SetLevel,
                      "The subdivision level, 0 to 5; 0 is the figure's own mesh. Raises UsageError.")
        .def("__repr__", [](const Figure& figure) {
            return Text(fmt::format("<gantrel.Figure of \"{}\">", figure.file.filename().u8string()));
        });
}

} // namespace

void BindLibrary(py::module_& module)
{
    BindDials(module);
    BindFigure(module);
    py::class_<OpenLibrary, std::shared_ptr<OpenLibrary>>(
        module, "Library",
        "Content folders, and a scene for figures of them. A process has one at a time, used by the thread "
        "that opened it; a with statement closes it.",
        CallableClass())
        .def(py::init([](const py::object& folders) { return OpenLibrary::open(ToFolders(folders)); }),
             py::arg("folders"),
             "folders is one path or several, in order: the first that has a file is where it is taken "
             "from.\n\n"
             "Raises FileError, UsageError or BusyError.")
        .def(
            "load",
            [](const std::shared_ptr<OpenLibrary>& library, const fs::path& path) {
                return Load(library, path).front();
            },
            py::arg("path"),
            "Loads a .duf or .dsf file and returns the first figure in it. What cannot be read is told as a "
            "Warning.\n\nRaises FileError, FormatError or Error.")
        .def("load_all", &Load, py::arg("path"), "Does the same and returns all figures of the file.")
        .def_property_readonly(
            "folders", [](const OpenLibrary& library) { return library.folders(); }, "The content folders.")
        .def_property_readonly(
            "closed", [](const OpenLibrary& library) { return !library.isOpen(); },
            "Whether close was called.")
        .def("__repr__",
             [](const OpenLibrary& library) {
                 return Text(fmt::format("<gantrel.Library of {}{}>",
                                         base::Counted(library.folders().size(), "folder", "folders"),
                                         library.isOpen() ? "" : ", closed"));
             })
        .def("close", &OpenLibrary::close,
             "Ends the host; figures are of no use then. Does nothing the second time.")
        .def("__enter__", [](const py::object& self) { return self; })
        .def("__exit__", [](OpenLibrary& library, const py::args&) { library.close(); });
    module.def("_close_library", [] {
        if (const std::shared_ptr<OpenLibrary> library = OpenLibrary::current();
            library && !library->isForked())
            library->close();
    });
}

} // namespace python
