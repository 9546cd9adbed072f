// Single morphs of a figure as morphs of the Genesis 9 figure, from files to files.
// SPDX-License-Identifier: MIT

#include "morphs/morph_conversion.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "base/folders.h"
#include "command.h"
#include "conversions/conversion_figures.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "gnt_convert-figure.h"
#include "gnt_figure-files.h"
#include "host_session.h"
#include "interrupt.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "memory_need.h"
#include "morphs/morph_carrier.h"
#include "morphs/morph_links.h"
#include "morphs/morph_page.h"
#include "morphs/morph_plan.h"
#include "morphs/morph_presentation.h"
#include "morphs/source_shapes.h"
#include "openhost/diagnostics.h"
#include "openhost/shapes.h"
#include "output_name.h"
#include "page/page_writer.h"
#include "progress.h"
#include "report.h"
#include "save_options.h"
#include "shaper_warnings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include <fmt/format.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

/// The first in the file that a conversion loads on its way.
DzFigure& LoadFigure(HostSession& session, GntLoadFigure which)
{
    const char* const relative = GNT_FIGURE_FILES[static_cast<std::size_t>(which) - 1].relativePath;
    const QString path = dzApp->getContentMgr()->getAbsolutePath(QLatin1String(relative), true);
    if (path.isEmpty())
        throw std::runtime_error(fmt::format("no content directory has {}", relative));
    return kst::daz::ResolveToFigure_X(*session.open(path.toStdString()).front());
}

/// @param level  0 for the cage
void ShowAtLevel(DzFigure& figure, int level)
{
    using kst::daz::NodeResolution;
    kst::daz::SetNodeResolution(
        figure, level > 0 ? NodeResolution::HighResolution : NodeResolution::BaseResolution, true);
    if (level == 0)
        return;
    DzIntProperty& control = *kst::daz::FindSubdivisionLevelIntProperty(figure, true);
    control.setMax(std::max(control.getMax(), level));
    control.setValue(level);
}

MorphCarrier MakeCarrier(HostSession& session, const DzFigure& source, GntCloneShape clone, int level,
                         base::Diagnostics& diagnostics)
{
    DzFigure& stock = LoadFigure(session, GntStockFigureOf(clone));
    ShowAtLevel(stock, level);
    if (openhost::CageVertexCount(stock) != openhost::CageVertexCount(source))
        throw std::runtime_error(
            fmt::format("{} has {} vertices but the stock figure {} has {}", source.getLabel().toStdString(),
                        openhost::CageVertexCount(source), stock.getLabel().toStdString(),
                        openhost::CageVertexCount(stock)));
    DzFigure& suit = LoadFigure(session, GntLoadFigure::Genesis9DeveloperLoad);
    ShowAtLevel(suit, level);
    kst::daz::FindFloatProperty(suit, kst::daz::PropertyLocation::Any, GntClonePropertyName(clone), true)
        ->setValue(1.0f);
    GntSetThighs_X(suit, GntThighDegrees(clone));
    return MorphCarrier(stock, suit, level, diagnostics);
}

/// With as many shapes at a time as stay small beside the two figures.
std::size_t ChunkSize(std::size_t vertexCount)
{
    constexpr std::size_t wanted = std::size_t{64} << 20; // bytes of displacements
    return std::clamp(wanted / (vertexCount * sizeof(geometry::Vec3f)), std::size_t{1}, std::size_t{64});
}

class MorphConversion {
public:
    MorphConversion(const MorphConversionRequest& request, Progress& progress, DzFigure& source,
                    DzFigure& target, const MorphCarrier& carrier, MorphLinks& links,
                    MorphConversionReport& report, std::unique_ptr<MorphGallery>& gallery)
        : _request(request), _progress(progress), _target(target), _carrier(carrier), _links(links),
          _report(report), _shapes(source, FileText(request.source), report.diagnostics)
    {
        if (!request.page.empty())
            gallery = std::make_unique<MorphGallery>(source, target);
        _gallery = gallery.get();
    }

    void run(const std::vector<PlannedMorph>& planned)
    {
        _total = planned.size();
        tellFiles(planned);
        const std::size_t size = ChunkSize(_carrier.sourceVertexCount());
        for (std::size_t at = 0; at < planned.size(); at += size)
            runChunk({planned.begin() + static_cast<std::ptrdiff_t>(at),
                      planned.begin() + static_cast<std::ptrdiff_t>(std::min(at + size, planned.size()))});
        tellHeld();
        tellLostIcons();
        _links.tellOfLost(_report.diagnostics);
    }

private:
    /// On the target, and not yet saved.
    struct Made {
        DzMorph* morph;
        ConvertedMorph told;
        bool isDriver;
    };

    void tellFiles(const std::vector<PlannedMorph>& planned) const
    {
        if (!_request.beforeSaving)
            return;
        std::vector<std::string> files;
        for (const PlannedMorph& morph : planned)
            files.push_back(morph.file);
        _request.beforeSaving(files);
    }

    void runChunk(std::vector<PlannedMorph> chunk)
    {
        std::vector<std::vector<geometry::Vec3f>> displacements = measure(chunk);
        std::vector<geometry::SubdividedMorph> shapes = _carrier.carry(displacements);
        std::vector<Made> made;
        for (std::size_t i = 0; i < chunk.size(); ++i) {
            const bool isShapeless = shapes[i].deltas.empty() && shapes[i].detail.empty();
            if (isShapeless && !_links.isDriver(chunk[i].source))
                _report.skipped.push_back({chunk[i].source.name, whyStill(chunk[i].source), false});
            else
                made.push_back(put(chunk[i], displacements[i], std::move(shapes[i])));
        }
        save(made);
        for (const Made& one : made)
            letGo(one);
    }

    std::string whyStill(const ShapeDial& source) const
    {
        if (!_leftAtNothing.count(source.name))
            return "moves nothing by more than 0.01 mm";
        const bool isNegative = source.dial->getDoubleMin() < 0.0;
        return std::string("its limits leave it at 0") +
               (isNegative && _request.value > 0.0 ? "; a negative --value turns it" : "");
    }

    /// The files of what a driver drives are to name it, and nobody needs its shape any more.
    void letGo(const Made& saved)
    {
        if (saved.isDriver)
            saved.morph->setDeltas(new DzMorphDeltas);
        else
            _target.getObject()->removeModifier(saved.morph);
    }

    /// Leaves out of the chunk what cannot be had.
    std::vector<std::vector<geometry::Vec3f>> measure(std::vector<PlannedMorph>& chunk)
    {
        std::vector<std::vector<geometry::Vec3f>> displacements;
        std::vector<PlannedMorph> usable;
        for (const PlannedMorph& planned : chunk) {
            showProgress();
            ++_begun;
            const bool hasOwnRest = _links.prepareFor(planned.source);
            SourceShapes::Shape shape = _shapes.measure(planned.source, _request.value, hasOwnRest);
            if (!shape.problem.empty()) {
                _report.skipped.push_back({planned.source.name, shape.problem});
                continue;
            }
            if (shape.isHeld)
                (shape.value == 0.0 ? _leftAtNothing : _held).insert(planned.source.name);
            displacements.push_back(std::move(shape.displacements));
            usable.push_back(planned);
        }
        _shapes.unload();
        chunk = std::move(usable);
        return displacements;
    }

    Made put(const PlannedMorph& planned, const std::vector<geometry::Vec3f>& displacements,
             geometry::SubdividedMorph shape)
    {
        ConvertedMorph told;
        told.name = planned.name;
        told.label = planned.source.label;
        told.source = planned.source.name;
        told.region = planned.source.dial->getRegion().toStdString();
        told.verticesMoved = shape.deltas.size();
        for (const auto& level : shape.detail.levels)
            told.detailVerticesMoved += level.size();
        told.largestDisplacementMm = millimetresPerCentimetre * geometry::LargestLength(shape.deltas);
        if (_gallery)
            _gallery->add(told, displacements, shape.deltas);
        DzMorph& morph = openhost::AddMorph(_target, QString::fromStdString(planned.name), std::move(shape));
        const DzNumericProperty& from = *planned.source.dial;
        told.path = GroupFor(from.getPath().toStdString(), _request.pathPrefix);
        DzFloatProperty& dial = *morph.getValueControl();
        dial.setLabel(from.getLabel());
        dial.setPath(QString::fromStdString(told.path));
        dial.setRegion(from.getRegion());
        dial.setDoubleMinMax(from.getDoubleMin(), from.getDoubleMax());
        dial.setIsClamped(from.isClamped());
        dial.setDisplayAsPercent(from.getDisplayAsPercent());
        dial.setHidden(from.isHidden());
        dial.setCanAutoFollow(true);
        if (const auto* const number = qobject_cast<const DzFloatProperty*>(&from))
            dial.setSensitivity(number->getSensitivity());
        if (const auto presentation = ReadPresentation(planned.source)) {
            openhost::SetPresentation(morph, QString::fromStdString(presentation->type), presentation->json);
            if (!presentation->isIconThere) {
                _lostIcons.push_back(presentation->icon);
                told.notes.push_back("without its icon, which no content directory has");
            }
        }
        if (!_held.empty() && _held.find(planned.source.name) != _held.end())
            told.notes.push_back("taken at the limit of its dial");
        told.drivers = _links.connect(planned.source, dial);
        return {&morph, std::move(told), _links.isDriver(planned.source)};
    }

    void save(std::vector<Made>& made)
    {
        if (made.empty())
            return;
        std::vector<GntCreatedMorph> created;
        for (const Made& one : made)
            created.push_back({GntFull, one.told.name, one.morph->getValueControl(), one.told.path});
        const openhost::DiagnosticsCollector met(dzApp->diagnostics());
        try {
            GntSaveMorphs_X(_target, created, _request.save);
        } catch (const kst::Exception&) {
            // The host's code says only that it failed.
            const base::Diagnostic* const reason = base::FirstError(met.all());
            throw std::runtime_error(fmt::format("cannot save the morphs: {}; {}",
                                                 reason ? base::ToLine(*reason) : "the host gives no reason",
                                                 savedSoFar()));
        }
        for (Made& one : made) {
            const std::string uri = one.morph->getAssetUri().toString().toStdString();
            one.told.file = _request.save.contentDirectory + dson::ParseUri(uri).path;
            _folder = FileText(fs::path(one.told.file).parent_path());
            _report.created.push_back(std::move(one.told));
        }
        NoteAllWritten(savedSoFar());
    }

    std::string savedSoFar() const
    {
        if (_report.created.empty())
            return "nothing was saved";
        return fmt::format("{} saved in {}", base::Counted(_report.created.size(), "morph is", "morphs are"),
                           _folder);
    }

    void showProgress()
    {
        base::ThrowIfCancelled();
        _progress.count({_begun, _total, _begun},
                        fmt::format("Converting the morphs: {} of {}", _begun, _total));
    }

    void tellHeld()
    {
        if (!_held.empty())
            _report.diagnostics.push_back(
                {base::Severity::Warning,
                 FileText(_request.source),
                 {},
                 fmt::format(
                     "--value {:g} is beyond the limits of {}, which are taken at their limits: \"{}\"{}",
                     _request.value, base::Counted(_held.size(), "dial", "dials"), *_held.begin(),
                     _held.size() > 1 ? ", and so on" : "")});
    }

    void tellLostIcons()
    {
        if (!_lostIcons.empty())
            _report.diagnostics.push_back(
                {base::Severity::Warning,
                 FileText(_request.source),
                 {},
                 fmt::format("{} in no content directory and left out: {}{}",
                             base::Counted(_lostIcons.size(), "icon is", "icons are"), _lostIcons.front(),
                             _lostIcons.size() > 1 ? ", and so on" : "")});
    }

    const MorphConversionRequest& _request;
    Progress& _progress;
    DzFigure& _target;
    const MorphCarrier& _carrier;
    MorphLinks& _links;
    MorphConversionReport& _report;
    SourceShapes _shapes;
    MorphGallery* _gallery = nullptr; ///< null where nobody asks for one
    std::set<std::string> _held;      ///< dials whose limits kept them from the value
    std::set<std::string> _leftAtNothing;
    std::vector<std::string> _lostIcons;
    std::string _folder;
    std::size_t _total = 0, _begun = 0;
};

void TellOfShapers(const DzFigure& source, const fs::path& file, base::Diagnostics& diagnostics)
{
    for (const base::Diagnostic& one :
         app::ShaperWarnings(app::ConvertedFigure::Source, FileText(file), source.getLabel().toStdString(),
                             openhost::MeshShapers(source)))
        diagnostics.push_back(one);
}

void TellFilesUsed(const std::vector<ShapeDial>& chosen, const DzNode& source, const DzNode& target,
                   FilesUsed& files)
{
    AddFilesOf(source, files);
    AddFilesOf(target, files);
    for (const ShapeDial& dial : chosen)
        AddFilesOf(dial, files);
}

/// Some of the morphs may turn out to move nothing, and some to have no detail.
void PlanFiles(const std::vector<PlannedMorph>& morphs, int level, const MorphConversionRequest& request,
               MorphConversionReport& report)
{
    for (const PlannedMorph& morph : morphs) {
        fs::path file = fs::u8path(morph.file);
        PlanFileWithFolders(report.planned, file);
        if (level > 0)
            PlanFileWithFolders(report.planned, file.replace_extension(".dhdm"));
    }
    if (!request.page.empty())
        PlanFile(report.planned, request.page);
}

/// @param gallery  made when anything is converted and a page is to show it
void ConvertIn(HostSession& session, const MorphConversionRequest& request, Progress& progress,
               MorphConversionReport& report, std::unique_ptr<MorphGallery>& gallery)
{
    DzNode& sourceNode =
        ChooseSource(session.open(request.source), false, request.source, report.diagnostics);
    const ChosenMorphs chosen = ChooseMorphs(sourceNode, request.choice, session.diagnostics());
    for (const MissingMorph& missing : chosen.missing)
        report.skipped.push_back({missing.name, missing.reason});
    DzNode& targetNode = ChooseTarget(session.open(request.target), request.target, report.diagnostics);
    StandAlone(sourceNode, request.source, report.diagnostics);
    StandAlone(targetNode, request.target, report.diagnostics);
    const std::shared_ptr<GntParams> params = ParamsOf(sourceNode, targetNode);
    DzFigure &source = params->figSource, &target = params->figTarget;
    report.source = source.getLabel().toStdString();
    report.target = target.getLabel().toStdString();
    TellOfShapers(source, request.source, report.diagnostics);
    if (request.tellsFilesUsed)
        TellFilesUsed(chosen.dials, source, target, report.filesUsed);
    std::vector<PlannedMorph> planned =
        PlanMorphs(chosen.dials, target, request, report.skipped, report.diagnostics);
    const int level = request.resolution == GntResolution::Subd ? params->iSubdLevelSource : 0;
    if (level > 0)
        CheckMemory(openhost::CageVertexCount(source) + openhost::CageVertexCount(target), level);
    MorphLinks links(planned, request, report.skipped);
    if (request.isDryRun)
        return PlanFiles(planned, level, request, report);
    if (planned.empty())
        return;

    progress.stage("Matching the figures");
    ShowAtLevel(source, level);
    const MorphCarrier carrier = MakeCarrier(session, source, params->cloneShape, level, report.diagnostics);
    progress.stage("Converting the morphs");
    MorphConversion(request, progress, source, target, carrier, links, report, gallery).run(planned);
}

void WritePageOf(const MorphConversionRequest& request, const MorphGallery* gallery, Progress& progress,
                 MorphConversionReport& report)
{
    report.page = request.page;
    try {
        progress.stage("Drawing the report");
        Json shown = ShowMorphs(gallery, report, progress);
        progress.finish();
        WriteMorphPage(request, report, std::move(shown), progress);
    } catch (const std::exception& error) {
        throw std::runtime_error(fmt::format("{}; {} saved", error.what(),
                                             base::Counted(report.created.size(), "morph is", "morphs are")));
    }
}

} // namespace

MorphConversionReport ConvertMorphs(const MorphConversionRequest& request, Progress& progress)
{
    if (!request.page.empty())
        CheckPageFile(request.page, {request.source, request.target, request.choice.list});
    CheckSaveLibrary(request.save.contentDirectory);
    if (!request.isDryRun)
        ExpectFiles();
    base::MadeFolders made; // go again where nothing is saved
    progress.stage("Loading the figures");
    HostSession session(request.contentDirectories, request.verbose);
    session.setAuthor(request.author);
    const ReplaceableFiles replaceable(request);
    session.allowReplacing([&replaceable](const fs::path& file) { return replaceable.has(file); });
    MorphConversionRequest own = request;
    MorphConversionReport report;
    report.wasDryRun = request.isDryRun;
    std::unique_ptr<MorphGallery> gallery;
    const KeptForError kept(report.diagnostics);
    try {
        own.save = WithWholeFolder(request.save);
        if (!request.isDryRun)
            made.make(own.save.contentDirectory);
        ConvertIn(session, own, progress, report, gallery);
    } catch (const kst::Exception& error) {
        throw std::runtime_error(error.what());
    }
    progress.finish();
    for (const base::Diagnostic& one : session.diagnostics())
        report.diagnostics.push_back(one);
    if (!request.page.empty() && !request.isDryRun)
        WritePageOf(request, gallery.get(), progress, report);
    return report;
}

} // namespace cli
