// The subcommand `render`.
// SPDX-License-Identifier: MIT

#include "command_render.h"

#include "apart_cache.h"
#include "base/counted.h"
#include "base/errors.h"
#include "command.h"
#include "dson/reader.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "geometry/limits.h"
#include "geometry/picture_box.h"
#include "geometry/picture_stage.h"
#include "host_session.h"
#include "interrupt.h"
#include "mesh_files.h"
#include "openhost/picture_file.h"
#include "openhost/scene_picture.h"
#include "options.h"
#include "output_name.h"
#include "planned_files.h"
#include "progress.h"
#include "report.h"
#include "standard_streams.h"

#include <charconv>
#include <memory>
#include <optional>

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

struct RenderArguments {
    std::string file, out, size;
    std::vector<std::string> content, dials, views;
    bool verbose = false, isDryRun = false;
};

struct PictureSize {
    int width = 0, height = 0;
};

/// @return false when the text is not of the form WxH or a number is out of range
bool ParseSize(const std::string& text, PictureSize& size)
{
    const char* const end = text.data() + text.size();
    const std::from_chars_result width = std::from_chars(text.data(), end, size.width);
    if (width.ec != std::errc() || width.ptr == end || *width.ptr != 'x')
        return false;
    const std::from_chars_result height = std::from_chars(width.ptr + 1, end, size.height);
    return height.ec == std::errc() && height.ptr == end && size.width >= 1 && size.height >= 1 &&
           size.width <= geometry::largestPicture && size.height <= geometry::largestPicture;
}

std::string CheckSize(const std::string& text)
{
    PictureSize size;
    return ParseSize(text, size) ? std::string()
                                 : fmt::format("\"{}\" is not of the form WxH with numbers from 1 to {}",
                                               text, geometry::largestPicture);
}

base::Diagnostic Warning(const RenderArguments& arguments, std::string what)
{
    return {base::Severity::Warning, InputText(arguments.file), {}, std::move(what)};
}

void TellFarOff(const std::vector<geometry::PictureItem>& items, const RenderArguments& arguments,
                base::Diagnostics& met)
{
    std::size_t farOff = 0;
    for (const geometry::PictureItem& item : items)
        geometry::BoxToShow(item.mesh, &farOff);
    if (farOff > 0)
        met.push_back(Warning(arguments, base::Counted(farOff, "vertex lies", "vertices lie") +
                                             " too far off to be in the picture"));
}

geometry::Picture RenderViews(const std::vector<geometry::PictureItem>& items,
                              const RenderArguments& arguments, Progress& progress, base::Diagnostics& met)
{
    geometry::PictureOptions options;
    PictureSize size;
    if (ParseSize(arguments.size, size)) {
        options.width = size.width;
        options.height = size.height;
    }
    const geometry::PictureStage stage(items);
    std::vector<geometry::Picture> pictures;
    for (const std::string& view : arguments.views) {
        progress.stage(view, "Rendering the view " + view);
        options.view = *geometry::ParseView(view);
        pictures.push_back(geometry::RenderStage(stage, options));
        if (pictures.back().isEmpty)
            met.push_back(Warning(arguments, fmt::format("nothing can be seen in the view {}", view)));
    }
    TellFarOff(items, arguments, met);
    return pictures.size() == 1 ? std::move(pictures.front()) : geometry::Join(pictures);
}

geometry::Picture RenderObj(const RenderArguments& arguments, Progress& progress, base::Diagnostics& met)
{
    if (!arguments.dials.empty())
        throw UsageError(fmt::format("{}: an OBJ file has no dials to set", InputText(arguments.file)));
    const geometry::ObjContent content = ReadSurfaceFile(arguments.file, met);
    geometry::PictureItem item;
    item.mesh = content.mesh.view();
    item.surfaceColors = openhost::SurfaceColors(*content.mesh.topology);
    return RenderViews({item}, arguments, progress, met);
}

void SetDials(const std::vector<NameValue>& dials, base::Diagnostics& diagnostics)
{
    std::vector<const DzNode*> figures;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (dzScene->getNode(i)->getObject())
            figures.push_back(dzScene->getNode(i));
    for (const NameValue& dial : dials)
        TurnDial(FindDial(figures, dial.name), dial, diagnostics);
}

/// @param met  receives what the host met
geometry::Picture RenderScene(const RenderArguments& arguments, Progress& progress, base::Diagnostics& met)
{
    HostSession session(ContentDirectoriesFor(arguments.file, ToPaths(arguments.content)), arguments.verbose);
    session.open(arguments.file);
    SetDials(ParseDials(arguments.dials), met);
    progress.stage("evaluate", "Shaping the figures");
    const std::vector<geometry::PictureItem> items = openhost::VisibleItems(*dzScene).items;
    met.insert(met.end(), session.diagnostics().begin(), session.diagnostics().end());
    if (items.empty())
        throw std::runtime_error(fmt::format("{}: nothing in it can be seen", arguments.file));
    return RenderViews(items, arguments, progress, met);
}

void CheckName(const std::filesystem::path& out)
{
    try {
        openhost::CheckPictureName(out);
    } catch (const base::FormatError& error) {
        throw UsageError(error.what());
    }
}

void CheckIsNoTerminal()
{
    if (isatty(STDOUT_FILENO) != 0)
        throw UsageError("--out - writes a picture, which a terminal cannot show");
}

void Render(const RenderArguments& arguments)
{
    const OutputFile out("--out", arguments.out, "picture.png", false);
    if (out.isStandardOutput())
        CheckIsNoTerminal();
    else
        CheckOutput(arguments.out, {arguments.file});
    CheckName(out.path());
    PlannedFiles planned;
    std::optional<ApartCache> apart;
    if (arguments.isDryRun) {
        if (out.isStandardOutput())
            PlanStandardOutput(planned);
        else
            PlanFile(planned, arguments.out);
        apart.emplace();
    } else {
        ExpectFiles();
    }
    Progress progress(true);
    progress.stage("read", "Reading " + InputText(arguments.file));
    base::Diagnostics met;
    const geometry::Picture picture = HasExtension(arguments.file, ".obj") || IsStandardStream(arguments.file)
                                          ? RenderObj(arguments, progress, met)
                                          : RenderScene(arguments, progress, met);
    if (arguments.isDryRun) {
        progress.finish();
        TellWarnings(met);
        return WriteReport(DescribePlan(planned, false), false);
    }
    progress.stage("write", "Writing " + arguments.out);
    openhost::WritePicture(out.path(), picture);
    progress.finish();
    out.send();
    TellWarnings(met);
    WriteSummary(fmt::format("{}: {} x {} pixels\n",
                             out.isStandardOutput() ? standardOutputText : arguments.out, picture.width,
                             picture.height));
}

} // namespace

void AddRenderCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<RenderArguments>();
    CLI::App* const command = program.add_subcommand("render", "Draw what a file shows into a picture");
    command->footer("Example:\n"
                    "  gantrel render Vera.duf --dial Smile=1 --out vera.png \\\n"
                    "      --view three-quarter --view face");
    command->add_option("FILE", arguments->file, "What to draw; - for an OBJ file's text on standard input")
        ->type_name("FILE.duf|FILE.obj")
        ->required();
    command
        ->add_option("--out", arguments->out,
                     "The picture to write, PNG or JPEG as its name ends; - for PNG on standard output")
        ->type_name("FILE.png|FILE.jpg")
        ->required();
    AddContentOption(*command, arguments->content);
    AddDialOption(*command, arguments->dials);
    CLI::Option* const view =
        command
            ->add_option("--view", arguments->views,
                         "Where it is seen from; again for further views beside it (front)")
            ->type_name("VIEW")
            ->allow_extra_args(false);
    AllowWords(*view, {"front", "side", "back", "three-quarter", "face"});
    command->add_option("--size", arguments->size, "Pixels of each view (900x1200)")
        ->type_name("WxH")
        ->check(CheckSize);
    AddDryRunOption(*command, arguments->isDryRun, "the picture is drawn all the same");
    command->callback([arguments, &context] {
        if (arguments->views.empty())
            arguments->views = {"front"};
        context.work = [arguments, &context] {
            arguments->verbose = context.verbose;
            Render(*arguments);
        };
    });
}

} // namespace cli
