// Conversions.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "bindings.h"
#include "classes.h"
#include "command.h"
#include "conversions/convert_options.h"
#include "dson/reader.h"
#include "errors.h"
#include "figure.h"
#include "interrupt.h"
#include "option_words.h"
#include "progress.h"
#include "report.h"
#include "work.h"

#include <algorithm>
#include <array>
#include <optional>

#include <fmt/format.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

namespace python {

namespace fs = std::filesystem;

namespace {

struct Conversion {
    cli::ConversionReport report;
    std::vector<std::pair<std::string, double>> seconds;
};

struct Save {
    fs::path contentFolder;
    std::string vendor, product;
    bool compress, overwrite;
};

/// `accept_missing=True` for `--accept-missing`.
std::string KeywordOf(const std::string& option)
{
    constexpr std::array flags{"--accept-missing", "--overwrite"};
    std::string word = option.substr(2);
    std::replace(word.begin(), word.end(), '-', '_');
    return std::find(flags.begin(), flags.end(), option) == flags.end() ? word : word + "=True";
}

/// "NAME=VALUE" of each, as the options have it; a text stays as it is.
std::vector<std::string> Assignments(const py::dict& values)
{
    std::vector<std::string> texts;
    for (const auto& [name, value] : values) {
        if (!py::isinstance<py::str>(name) ||
            !(py::isinstance<py::str>(value) || PyNumber_Check(value.ptr())))
            throw py::type_error("dials and bases are texts with numbers");
        texts.push_back(fmt::format(
            "{}={}", name.cast<std::string>(),
            py::isinstance<py::str>(value)
                ? value.cast<std::string>()
                : fmt::format("{}", py::float_(py::reinterpret_borrow<py::object>(value)).cast<double>())));
    }
    return texts;
}

/// For sentences about a value of the wrong kind.
std::string Shown(const py::handle& value)
{
    constexpr std::size_t longest = 60;
    const py::str text = py::repr(value);
    if (py::len(text) <= longest)
        return text;
    return text[py::slice(0, longest, 1)].cast<std::string>() + "..."; // of characters, not of bytes
}

/// Of any mapping; empty for None.
py::dict ToDictionary(const py::object& mapping, const char* name)
{
    if (mapping.is_none())
        return py::dict();
    try {
        return py::dict(mapping);
    } catch (const py::error_already_set&) {
        throw py::type_error(
            fmt::format("convert: {} is {}, not a mapping of texts to numbers", name, Shown(mapping)));
    }
}

fs::path ToFile(const py::object& value, const char* name)
{
    try {
        return value.cast<fs::path>();
    } catch (const py::cast_error&) {
        throw py::type_error(
            fmt::format("convert: {} is {}, neither the name of a file nor a Figure", name, Shown(value)));
    }
}

std::string JobsText(const py::object& jobs)
{
    if (py::isinstance<py::str>(jobs))
        return jobs.cast<std::string>();
    if (!py::isinstance<py::iterable>(jobs))
        throw py::type_error(fmt::format("convert: jobs is {}, not a list of texts", Shown(jobs)));
    std::string text;
    for (const py::handle job : py::iter(jobs)) {
        if (!py::isinstance<py::str>(job))
            throw py::type_error("jobs are texts");
        text += (text.empty() ? "" : ",") + job.cast<std::string>();
    }
    return text;
}

/// What is wanted of a conversion, whatever the figures.
struct Wishes {
    py::object jobs;
    std::optional<std::string> name;
    std::string path;
    py::dict base;
    std::string resolution;
    std::optional<int> subd;
    bool adjustRig, registers, acceptMissing;
    std::optional<Save> save;
    std::optional<fs::path> exportObj, pictures, report;
    std::optional<std::string> author;

    bool writesFiles() const { return save || exportObj || pictures || report; }
};

void CheckLevel(const Wishes& wishes)
{
    if (wishes.resolution != "base" && wishes.resolution != "subd")
        throw cli::UsageError("resolution: is \"" + wishes.resolution + "\", not base or subd");
    constexpr int finest = 5;
    if (wishes.subd && (*wishes.subd < 1 || *wishes.subd > finest))
        throw cli::UsageError(fmt::format("subd: is {}, not 1 to {}", *wishes.subd, finest));
}

cli::ConvertArguments ArgumentsOf(const Wishes& wishes)
{
    CheckLevel(wishes);
    cli::ConvertArguments arguments;
    arguments.jobs = wishes.jobs.is_none() ? cli::DefaultJobs() : JobsText(wishes.jobs);
    arguments.name = wishes.name;
    arguments.path = wishes.path;
    arguments.bases = Assignments(wishes.base);
    arguments.resolution = wishes.resolution;
    arguments.subdLevel = wishes.subd;
    arguments.adjustRig = wishes.adjustRig;
    arguments.registers = wishes.registers;
    arguments.acceptMissing = wishes.acceptMissing;
    if (wishes.author && !wishes.save)
        throw cli::UsageError("author is for saved morphs, and save is not given");
    arguments.author = wishes.author.value_or(std::string());
    if (wishes.save) {
        arguments.contentDirectory = wishes.save->contentFolder.u8string();
        arguments.vendor = wishes.save->vendor;
        arguments.product = wishes.save->product;
        arguments.compress = wishes.save->compress;
        arguments.overwrite = wishes.save->overwrite;
    }
    arguments.exportObj = wishes.exportObj.value_or(fs::path()).u8string();
    arguments.pictures = wishes.pictures.value_or(fs::path()).u8string();
    arguments.page = wishes.report.value_or(fs::path()).u8string();
    return arguments;
}

/// The host's own code is on the stack, so an exception of the function's ends the work later.
void TellStages(cli::Progress& progress, const py::object& function)
{
    if (function.is_none())
        return;
    if (PyCallable_Check(function.ptr()) == 0)
        throw py::type_error(fmt::format("convert: progress is {}, not a function", Shown(function)));
    progress.tellStagesTo([caller = py::handle(function)](const std::string& stage) {
        const py::gil_scoped_acquire lock;
        try {
            caller(Text(stage));
        } catch (py::error_already_set& error) {
            error.restore();
            Work::current()->endWithError();
        }
    });
}

/// Each once; behind an error, which says what is worse, none of them can become one.
void TellOfFailure(const std::string& files)
{
    base::Diagnostics met = cli::TakeKeptForError();
    if (!files.empty())
        met.push_back({base::Severity::Warning, {}, {}, files});
    std::sort(met.begin(), met.end(), [](const auto& a, const auto& b) { return ToLine(a) < ToLine(b); });
    met.erase(std::unique(met.begin(), met.end()), met.end());
    try {
        Warn(met);
    } catch (const py::error_already_set&) {
    }
}

/// @param convert  runs without the interpreter's lock
template <class Function>
Conversion Run(const py::object& progressFunction, bool writesFiles, Function&& convert)
{
    cli::ForgetNotes();
    cli::Progress progress(false);
    TellStages(progress, progressFunction);
    try {
        Conversion conversion;
        conversion.report = RunFreely([&] { return convert(progress); });
        conversion.seconds = progress.seconds();
        return conversion;
    } catch (const py::error_already_set&) {
        TellOfFailure(writesFiles ? cli::InterruptSentence() : std::string());
        throw;
    } catch (const base::Cancelled&) {
        TellOfFailure(writesFiles ? cli::InterruptSentence() : std::string());
        throw;
    } catch (...) {
        TellOfFailure({});
        throw;
    }
}

/// A warning that the program turns into an exception does not take along what is made, or saved, already.
template <class Tell>
py::object TellWith(Conversion conversion, const Tell& tell)
{
    const base::Diagnostics met = conversion.report.diagnostics;
    const py::object result = py::cast(std::move(conversion));
    try {
        tell(met);
    } catch (const py::error_already_set& raised) {
        raised.value().attr("result") = result;
        throw;
    }
    return result;
}

py::object ConvertLoaded(const Figure& source, const Figure& target, const Wishes& wishes,
                         const py::object& progressFunction)
{
    DzFigure &sourceNode = source.use(), &targetNode = target.use();
    cli::ConvertArguments arguments = ArgumentsOf(wishes);
    arguments.source = source.file.u8string();
    arguments.target = target.file.u8string();
    const cli::ConversionRequest request = cli::MakeRequest(arguments);
    Conversion conversion = [&] {
        const OpenLibrary::Use use(*source.origin);
        return Run(progressFunction, wishes.writesFiles(), [&](cli::Progress& progress) {
            return cli::ConvertFigures(use.session(), sourceNode, targetNode, request, progress);
        });
    }();
    return TellWith(std::move(conversion),
                    [&source](const base::Diagnostics& met) { source.origin->warn(met); });
}

py::object ConvertFiles(const fs::path& source, const fs::path& target, const std::vector<fs::path>& content,
                        const py::dict& dials, const Wishes& wishes, const py::object& progressFunction)
{
    cli::ConvertArguments arguments = ArgumentsOf(wishes);
    arguments.source = source.u8string();
    arguments.target = target.u8string();
    arguments.dials = Assignments(dials);
    for (const fs::path& folder : content)
        arguments.content.push_back(folder.u8string());
    const cli::ConversionRequest request = cli::MakeRequest(arguments);
    const OpenLibrary::Reservation reservation;
    Conversion conversion = Run(progressFunction, wishes.writesFiles(),
                                [&](cli::Progress& progress) { return cli::Convert(request, progress); });
    return TellWith(std::move(conversion), Warn);
}

py::object Convert(const py::object& source, const py::object& target, const std::vector<fs::path>& content,
                   const py::dict& dials, const Wishes& wishes, const py::object& progressFunction)
{
    const bool isLoaded = py::isinstance<Figure>(source);
    if (isLoaded != py::isinstance<Figure>(target))
        throw cli::UsageError("source and target are to be two figures or two files");
    if (!isLoaded)
        return ConvertFiles(ToFile(source, "source"), ToFile(target, "target"), content, dials, wishes,
                            progressFunction);
    if (!content.empty() || !dials.empty())
        throw cli::UsageError("content: it and dials are for files; figures have both already");
    return ConvertLoaded(source.cast<const Figure&>(), target.cast<const Figure&>(), wishes,
                         progressFunction);
}

void BindMeasures(py::module_& module)
{
    using geometry::DistanceEstimate;
    py::class_<DistanceEstimate>(
        module, "Distances",
        "How far the surfaces of source and result are apart, both ways, in cm. Of large meshes a sample is "
        "measured, and the maximum is that of all vertices.")
        .def_property_readonly(
            "mean", [](const DistanceEstimate& d) { return d.summary.mean; }, "The mean distance.")
        .def_property_readonly(
            "p95", [](const DistanceEstimate& d) { return d.summary.p95; }, "What 95 % do not exceed.")
        .def_property_readonly(
            "max", [](const DistanceEstimate& d) { return d.summary.max; }, "The largest distance.")
        .def_readonly("measured", &DistanceEstimate::measured, "Vertices in the sample.")
        .def_readonly("all", &DistanceEstimate::all, "Vertices of both figures.")
        .def_readonly("mean_error", &DistanceEstimate::meanError,
                      "In 19 of 20 cases the mean of all is not further from that of the sample.")
        .def_readonly("p95_low", &DistanceEstimate::p95Low, "In 19 of 20 cases the p95 of all is not lower.")
        .def_readonly("p95_high", &DistanceEstimate::p95High,
                      "In 19 of 20 cases the p95 of all is not higher.")
        .def("__repr__", [](const DistanceEstimate& d) {
            return fmt::format("<gantrel.Distances: mean {:.4g} cm, largest {:.4g} cm>", d.summary.mean,
                               d.summary.max);
        });
    py::class_<cli::FigureReport>(module, "FigureInfo", "A figure of a conversion.")
        .def_property_readonly(
            "label", [](const cli::FigureReport& figure) { return Text(figure.label); }, "Its label.")
        .def_readonly("kind", &cli::FigureReport::kind, "As Figure.kind.")
        .def_property_readonly(
            "asset", [](const cli::FigureReport& figure) { return Text(figure.assetUri); },
            "The address of its definition.")
        .def_readonly("vertex_count", &cli::FigureReport::vertices, "Of its own mesh, not subdivided.")
        .def("__repr__", [](const cli::FigureReport& figure) {
            return Text(fmt::format("<gantrel.FigureInfo \"{}\", {}>", figure.label, figure.kind));
        });
}

void BindCreatedMorph(py::module_& module)
{
    using cli::MorphReport;
    constexpr double centimetres = 1.0 / cli::millimetresPerCentimetre;
    py::class_<MorphReport>(module, "CreatedMorph", "A morph that a conversion made.")
        .def_property_readonly(
            "name", [](const MorphReport& morph) { return Text(morph.name); }, "Its name.")
        .def_property_readonly(
            "label", [](const MorphReport& morph) { return Text(morph.label); }, "What users see.")
        .def_readonly("kind", &MorphReport::kind, "\"full\", \"head\" or \"body\".")
        .def_property_readonly(
            "path", [](const MorphReport& morph) { return Text(morph.path); }, "Where its dial is shown.")
        .def_readonly("vertices_moved", &MorphReport::verticesMoved, "Of the figure's own mesh.")
        .def_readonly("detail_vertices_moved", &MorphReport::detailVerticesMoved,
                      "Of all subdivision levels.")
        .def_property_readonly(
            "largest_displacement",
            [=](const MorphReport& morph) { return centimetres * morph.largestDisplacementMm; },
            "How far the vertex moves that moves furthest; cm.")
        .def_readonly("joints_moved", &MorphReport::jointsMoved, "None unless the rig was adjusted.")
        .def_property_readonly(
            "largest_joint_shift",
            [=](const MorphReport& morph) { return centimetres * morph.largestJointShiftMm; },
            "How far the joint moves that moves furthest; cm.")
        .def_property_readonly(
            "file",
            [](const MorphReport& morph) {
                return morph.savedFile.empty() ? std::nullopt
                                               : std::optional<fs::path>(fs::u8path(morph.savedFile));
            },
            "Where it was saved; None if it was not.")
        .def("__repr__", [](const MorphReport& morph) {
            return Text(fmt::format("<gantrel.CreatedMorph \"{}\", {}>", morph.name, morph.kind));
        });
}

py::list WarningsOf(const Conversion& conversion)
{
    py::list lines;
    for (const base::Diagnostic& one : conversion.report.diagnostics)
        if (const py::str line = Text(ToLine(one));
            one.severity != base::Severity::Note && !lines.contains(line))
            lines.append(line);
    return lines;
}

py::dict Dictionary(const std::vector<std::pair<std::string, double>>& pairs)
{
    py::dict dictionary;
    for (const auto& [name, value] : pairs)
        dictionary[Text(name)] = value;
    return dictionary;
}

void BindResult(py::module_& module)
{
    py::class_<Conversion>(module, "Conversion", "What a conversion made.")
        .def_property_readonly(
            "source", [](const Conversion& c) { return c.report.source; }, "A FigureInfo object.")
        .def_property_readonly(
            "target", [](const Conversion& c) { return c.report.target; }, "A FigureInfo object.")
        .def_property_readonly(
            "created", [](const Conversion& c) { return c.report.created; }, "The new morphs.")
        .def_property_readonly(
            "jobs", [](const Conversion& c) { return c.report.jobs; }, "Of full, head and body.")
        .def_property_readonly(
            "level", [](const Conversion& c) { return c.report.subdLevel; },
            "The subdivision level; None for morphs of base resolution.")
        .def_property_readonly(
            "active_morphs", [](const Conversion& c) { return c.report.activeMorphs; },
            "How many morphs the source wore.")
        .def_property_readonly(
            "missing", [](const Conversion& c) { return Dictionary(c.report.missing); },
            "Morphs of the source that were lost on the way, with their values.")
        .def_property_readonly(
            "distances", [](const Conversion& c) { return c.report.distance; },
            "A Distances object; None unless the morphs make the whole figure.")
        .def_property_readonly(
            "files", [](const Conversion& c) { return c.report.files; },
            "What was written besides the morphs.")
        .def_property_readonly("warnings", &WarningsOf, "All that was told as a Warning.")
        .def_property_readonly(
            "seconds", [](const Conversion& c) { return Dictionary(c.seconds); }, "How long each stage took.")
        .def("__repr__", [](const Conversion& c) {
            return Text(fmt::format("<gantrel.Conversion of \"{}\": {}>", c.report.source.label,
                                    base::Counted(c.report.created.size(), "morph", "morphs")));
        });
}

} // namespace

void BindConversion(py::module_& module)
{
    cli::SetOptionWords(&KeywordOf);
    BindMeasures(module);
    BindCreatedMorph(module);
    BindResult(module);
    py::class_<Save>(module, "Save", "Where a conversion saves its morphs.", CallableClass())
        .def(py::init([](const fs::path& library, const std::string& vendor, const std::string& product,
                         bool compress, bool overwrite) {
                 if (library.empty())
                     throw cli::UsageError("the library of a Save is empty");
                 return Save{library, vendor, product, compress, overwrite};
             }),
             py::arg("library"), py::arg("vendor"), py::arg("product"), py::kw_only(),
             py::arg("compress") = false, py::arg("overwrite") = false,
             "library is a content folder, vendor and product are folders of the morphs in it. overwrite "
             "replaces "
             "morphs that were saved there by the same names.")
        .def_readonly("library", &Save::contentFolder, "The content folder.")
        .def_readonly("vendor", &Save::vendor, "The vendor folder.")
        .def_readonly("product", &Save::product, "The product folder.")
        .def_readonly("compress", &Save::compress, "Whether the files are compressed.")
        .def_readonly("overwrite", &Save::overwrite, "Whether morphs of the same names are replaced.")
        .def("__reduce__",
             [](const Save& save) {
                 const py::object make = py::module_::import("gantrel").attr("_make_save");
                 return py::make_tuple(make, py::make_tuple(save.contentFolder, save.vendor, save.product,
                                                            save.compress, save.overwrite));
             })
        .def("__repr__", [](const Save& save) {
            return Text(fmt::format("<gantrel.Save into \"{}\", {}, {}>", save.contentFolder.u8string(),
                                    save.vendor, save.product));
        });
    module.def(
        "convert",
        [](const py::object& source, const py::object& target,
           const std::optional<std::vector<fs::path>>& content, const py::object& dials,
           const py::object& jobs, const std::optional<std::string>& name, const std::string& path,
           const py::object& base, const std::string& resolution, std::optional<int> subd, bool adjustRig,
           bool registers, bool acceptMissing, const std::optional<Save>& save,
           const std::optional<std::string>& author, const std::optional<fs::path>& exportObj,
           const std::optional<fs::path>& pictures, const std::optional<fs::path>& report,
           const py::object& progress) {
            const Wishes wishes{jobs,          name,  path,      ToDictionary(base, "base"),
                                resolution,    subd,  adjustRig, registers,
                                acceptMissing, save,  exportObj, pictures,
                                report,        author};
            return Convert(source, target, content.value_or(std::vector<fs::path>()),
                           ToDictionary(dials, "dials"), wishes, progress);
        },
        py::arg("source"), py::arg("target"), py::kw_only(), py::arg("content") = py::none(),
        py::arg("dials") = py::none(), py::arg("jobs") = py::none(), py::arg("name") = py::none(),
        py::arg("path") = GNT_DEFAULT_MORPH_PATH, py::arg("base") = py::none(),
        py::arg("resolution") = "base", py::arg("subd") = py::none(), py::arg("adjust_rig") = false,
        py::arg("register") = false, py::arg("accept_missing") = false, py::arg("save") = py::none(),
        py::arg("author") = py::none(), py::arg("export_obj") = py::none(), py::arg("pictures") = py::none(),
        py::arg("report") = py::none(), py::arg("progress") = py::none(),
        "Turns the shape of a Genesis 3, 8 or 8.1 figure into morphs on a Genesis 9 figure.\n\n"
        "source and target are two files, or two figures of a library: these are converted as they are "
        "dialed, "
        "and the target wears the new morphs then. content and dials are for files: the content folders "
        "(without "
        "any, the one that holds the source) and dials of the source to set first.\n\n"
        "The others mean what the options of the command line mean. jobs are of \"full\", \"head\" and "
        "\"body\"; "
        "base has dials of the target (\"clone\", \"feminine\", \"masculine\", \"height\") with their "
        "values, the "
        "height also \"auto\"; resolution is \"base\" or \"subd\", subd the level. Without save, a Save "
        "object, "
        "no morph is saved; author is whom saved morphs name, the vendor without it. progress is called with "
        "the name of each stage; what it raises ends the "
        "conversion, "
        "as Ctrl+C does, and nothing is half saved.\n\n"
        "Raises UsageError, FileError, BusyError or Error. Where warnings are turned into exceptions, the "
        "Warning "
        "has as its result the Conversion, of which all is in place.");
}

} // namespace python
