// One conversion from files to files, as the command line runs it.
// SPDX-License-Identifier: MIT

#include "conversions/conversion.h"

#include "base/cancellation.h"
#include "command.h"
#include "conversions/conversion_checks.h"
#include "conversions/conversion_figures.h"
#include "conversions/conversion_page.h"
#include "conversions/conversion_plan.h"
#include "conversions/conversion_results.h"
#include "conversions/conversion_steps.h"
#include "conversions/new_names.h"
#include "conversions/target_before.h"
#include "conversions/thumbnail.h"
#include "dzapp.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "geometry/limits.h"
#include "gnt_convert-figure.h"
#include "host_session.h"
#include "interrupt.h"
#include "ks_daz-helpers.h"
#include "memory_need.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "openhost/missing_shapes.h"
#include "openhost/refined_ahead.h"
#include "openhost/registered_transfers.h"
#include "openhost/shapes.h"
#include "option_words.h"
#include "progress.h"
#include "report.h"
#include "save_options.h"
#include "scene_nodes.h"
#include "shaper_warnings.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

/// Shows the steps of the conversion, which it tells the host, as stages of our own progress.
class HostStepsAsStages {
public:
    explicit HostStepsAsStages(Progress& progress)
    {
        QObject::connect(&openhost::Events(), &openhost::HostEvents::progressTextShown, &_context,
                         [&progress](const QString& text) { progress.begin(text.toStdString()); });
    }

private:
    QObject _context;
};

/// What was said of a file that has the name of something in the sentence; null for nothing.
const base::Diagnostic* FindNamed(const std::string& sentence, const base::Diagnostics& met)
{
    for (const base::Diagnostic& one : met) {
        const std::string stem = fs::path(one.file).stem().u8string();
        if (!stem.empty() && (sentence.find("\u201c" + stem + "\u201d") != std::string::npos ||
                              sentence.find('"' + stem + '"') != std::string::npos))
            return &one;
    }
    return nullptr;
}

/// A folder that cannot be read may hold whatever is missing.
const base::Diagnostic* FindFolder(const base::Diagnostics& met)
{
    const auto isFolder = [](const base::Diagnostic& one) {
        std::error_code error;
        return one.severity == base::Severity::Error && fs::is_directory(one.file, error);
    };
    const auto found = std::find_if(met.begin(), met.end(), isFolder);
    return found == met.end() ? nullptr : &*found;
}

/// The host's tools often say only that they failed, or that something is not there, and the reason to
/// whoever listens.
/// @param loaded  said when the figures were loaded
std::string WithReason(std::string sentence, const base::Diagnostics& met, const base::Diagnostics& loaded)
{
    const base::Diagnostic* reason = base::FirstError(met);
    if (!reason)
        reason = FindNamed(sentence, loaded);
    if (!reason)
        reason = FindFolder(loaded);
    if (!reason || sentence.find(reason->what) != std::string::npos)
        return sentence;
    while (!sentence.empty() && sentence.back() == '.')
        sentence.pop_back();
    return sentence + ": " + base::ToLine(*reason);
}

/// A tool knows a mesh that reaches too far by the name of a figure of its own; what was said when the mesh
/// or its shape was read names the file.
std::string WithFarFile(const std::string& sentence, base::Diagnostics met, const base::Diagnostics& loaded)
{
    const std::string phrase = fmt::format("farther than {:g} cm", geometry::farthestPosition);
    if (sentence.find(phrase) == sentence.npos)
        return sentence;
    met.insert(met.end(), loaded.begin(), loaded.end());
    for (const base::Diagnostic& one : met)
        if (!one.file.empty() && one.what.find(phrase) != one.what.npos)
            return sentence + ": " + base::ToLine(one);
    return sentence;
}

/// @param work  with the product's own texts for errors
template <typename Work>
auto WithReasons(const base::Diagnostics& loaded, const Work& work)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    try {
        return work();
    } catch (const GntBaseRangeError& error) {
        const DzFloatProperty& dial = error.dial;
        throw UsageError(fmt::format("{} {}={} is outside of {} to {}, the range of \"{}\"",
                                     OptionWord("--base"), BaseName(error.base), error.value, dial.getMin(),
                                     dial.getMax(), dial.getLabel().toStdString()));
    } catch (const kst::Exception& error) {
        throw std::runtime_error(WithFarFile(WithReason(error.what(), met.all(), loaded), met.all(), loaded));
    }
}

/// @param level  0 for the base resolution
GntOutcome Run(DzNode& source, DzNode& target, const GntRequest& request, int level,
               const base::Diagnostics& loaded, Progress& progress)
{
    std::optional<openhost::RefinedAhead> refined;
    if (level > 0)
        refined.emplace(std::vector<const DzNode*>{&source, &target}, level);
    const HostStepsAsStages steps(progress);
    return WithReasons(loaded, [&] { return GntConverter::Convert_X(source, target, request); });
}

/// For a run that is interrupted later.
void NoteSaved(const GntOutcome& outcome, const fs::path& library)
{
    std::vector<std::string> files;
    for (const GntCreatedMorph& morph : outcome.created)
        if (const fs::path file = SavedFile(outcome.params->figTarget, morph.name, library); !file.empty())
            files.push_back(FileText(file));
    if (!files.empty())
        NoteWritten(fmt::format("the morphs are saved: {}", fmt::join(files, ", ")));
}

void Save(const GntSaveOptions& options, const GntOutcome& outcome)
{
    const GntSaveOptions save = PrepareToSave(options);
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    try {
        GntSaveMorphs_X(outcome.params->figTarget, outcome.created, save);
        NoteSaved(outcome, save.contentDirectory);
    } catch (const base::Cancelled&) {
        // It may have come when the files were in place already.
        NoteSaved(outcome, save.contentDirectory);
        throw;
    } catch (const std::exception&) {
        // The host's code says only that it failed.
        const base::Diagnostic* const reason = base::FirstError(met.all());
        if (!reason)
            throw;
        throw std::runtime_error("cannot save the morphs: " + base::ToLine(*reason));
    }
}

/// What is wanted besides the morphs. These are safe by then, and a failure says so.
template <typename Work>
void DoBesidesMorphs(const ConversionRequest& request, const Work& work)
{
    try {
        work();
    } catch (const std::exception& error) {
        if (!request.save)
            throw;
        throw std::runtime_error(std::string(error.what()) + "; the morphs are saved");
    }
}

/// @return what the page is to show, if there is to be one
Json WriteExtras(const ConversionRequest& request, const GntOutcome& outcome, Progress& progress,
                 ConversionReport& report)
{
    Json shown;
    DoBesidesMorphs(request, [&] {
        if (!request.exportObj.empty()) {
            progress.stage(steps::writingObj);
            ExportFigure(outcome.params->figTarget, request.exportObj, outcome.request.resolution);
            report.files.push_back(request.exportObj);
            NoteWritten(FileText(request.exportObj) + " is written");
        }
        if (!request.pictures.empty()) {
            progress.stage(steps::drawingPictures);
            const std::vector<fs::path> pictures = DrawPictures(outcome, request.pictures);
            report.files.insert(report.files.end(), pictures.begin(), pictures.end());
        }
        if (!request.page.empty()) {
            progress.stage(steps::drawingReport);
            shown = ShowConversion(outcome, report);
        }
    });
    return shown;
}

/// One that cannot be drawn is no reason to fail.
void AddThumbnail(const GntOutcome& outcome, ConversionReport& report)
{
    try {
        report.thumbnail = DrawThumbnail(outcome, report);
    } catch (const std::exception& error) {
        report.diagnostics.push_back(
            {base::Severity::Warning, {}, {}, std::string("there is no small picture: ") + error.what()});
    }
}

/// When all that it tells is known.
void WritePageOf(const ConversionRequest& request, Json shown, const Progress& progress,
                 ConversionReport& report)
{
    DoBesidesMorphs(request, [&] {
        report.page = request.page;
        report.files.push_back(request.page);
        WriteConversionPage(request, report, std::move(shown), progress);
        NoteWritten(FileText(request.page) + " is written");
    });
}

/// A shape that is missing is dialed too, so that it is missed.
/// @param loaded  said when the figure was loaded
void TurnDialOf(const DzNode& source, const NameValue& dial, const base::Diagnostics& loaded,
                base::Diagnostics& diagnostics)
{
    const auto isMissed = [&] {
        return openhost::DialMissingShape(source, QString::fromStdString(dial.name), dial.value);
    };
    try {
        TurnDial(FindDial(source, dial.name), dial, diagnostics);
    } catch (const UsageError&) {
        if (!isMissed())
            throw;
    } catch (const UnknownDial& error) {
        if (!isMissed())
            throw UnknownDial(WithReason(error.what(), {}, loaded));
    } catch (const std::runtime_error& error) {
        if (!isMissed())
            throw std::runtime_error(WithReason(error.what(), {}, loaded));
    }
}

void Append(base::Diagnostics& all, const base::Diagnostics& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

base::Diagnostics WarnOfShapers(app::ConvertedFigure role, const DzNode& figure, const fs::path& file)
{
    return app::ShaperWarnings(role, FileText(file), figure.getLabel().toStdString(),
                               openhost::MeshShapers(figure));
}

/// Adds what the host met, but for files of missing shapes: those are told with the shape's name already.
void AddMet(const base::Diagnostics& met, base::Diagnostics& told)
{
    const std::size_t known = told.size();
    for (const base::Diagnostic& one : met) {
        const bool isKnown =
            one.asset.empty() && std::any_of(told.begin(), told.begin() + known, [&](const auto& other) {
                return other.file == one.file && other.what == one.what;
            });
        if (!isKnown)
            told.push_back(one);
    }
}

/// At which the conversion subdivides.
int LevelOf(DzNode& source, const GntRequest& request)
{
    return request.subdLevel
               ? *request.subdLevel
               : kst::daz::FindSubdivisionLevelIntProperty(kst::daz::ResolveToFigure_X(source), true)
                     ->getValue();
}

DialsUsed OthersThan(const std::vector<GntCreatedMorph>& created, DialsUsed dials)
{
    const auto isNew = [&](const DialUsed& dial) {
        return std::any_of(created.begin(), created.end(),
                           [&](const GntCreatedMorph& morph) { return morph.name == dial.name; });
    };
    dials.erase(std::remove_if(dials.begin(), dials.end(), isNew), dials.end());
    return dials;
}

/// @param source, target  fit each other; the source's shape is whole
/// @param report          has what was met so far
void ConvertChosen(HostSession& session, DzNode& source, DzNode& target, const ConversionRequest& request,
                   Progress& progress, ConversionReport& report)
{
    Append(report.diagnostics, WarnOfShapers(app::ConvertedFigure::Source, source, request.source));
    Append(report.diagnostics, WarnOfShapers(app::ConvertedFigure::Target, target, request.target));
    report.source = DescribeFigure(kst::daz::ResolveToFigure_X(source));
    report.target = DescribeFigure(kst::daz::ResolveToFigure_X(target));
    report.sourceDials = FindDialsUsed(source, request.dials);
    CheckShapesAreReal(source);
    CheckShapesAreReal(target);
    const int level = request.morphs.resolution == GntResolution::Subd ? LevelOf(source, request.morphs) : 0;
    if (level > 0)
        CheckMemory(report.source.vertices + report.target.vertices, level);
    StandAlone(source, request.source, report.diagnostics);
    StandAlone(target, request.target, report.diagnostics);
    KeepLabelsFree(source, target, report.diagnostics);
    const std::vector<std::string> names = FreeMorphNames(source, target, request, report.diagnostics);
    if (request.tellsFilesUsed) {
        AddFilesOf(source, report.filesUsed);
        AddFilesOf(target, report.filesUsed);
    }
    if (request.isDryRun) {
        WithReasons(session.diagnostics(), [&] { PlanConversion(source, target, request, names, report); });
        return AddMet(session.diagnostics(), report.diagnostics);
    }
    std::optional<openhost::RegisteredTransfers> registered;
    if (request.registers)
        registered.emplace();
    progress.expect(StepsOf(request, level));
    const GntOutcome outcome = Run(source, target, request.morphs, level, session.diagnostics(), progress);
    DescribeOutcome(outcome, report);
    report.targetDials = OthersThan(outcome.created, FindDialsUsed(target, {}));

    progress.stage(steps::measuring);
    for (const GntCreatedMorph& morph : outcome.created)
        report.created.push_back(DescribeMorph(outcome.params->figTarget, morph));
    // Joints that follow a morph turn the posed legs about other places, which says nothing of the shape.
    if (GntMakesWholeFigure(outcome.request.jobs))
        MeasureDistance(outcome,
                        request.page.empty() && !request.drawsThumbnail ? Measuring::Sample : Measuring::All,
                        report);
    if (request.adjustsRig) {
        progress.stage(steps::adjustingRig);
        AdjustRig(outcome, report);
    }
    if (request.save) {
        if (request.beforeSaving)
            request.beforeSaving();
        progress.stage(steps::saving);
        Save(*request.save, outcome);
        AddSavedFiles(outcome.params->figTarget, request.save->contentDirectory, report);
    }
    GntWearMorphs(outcome.created);
    Json shown = WriteExtras(request, outcome, progress, report);
    if (request.drawsThumbnail) {
        progress.stage("Drawing a small picture");
        AddThumbnail(outcome, report);
    }
    progress.finish();
    AddMet(session.diagnostics(), report.diagnostics);
    if (!request.page.empty())
        WritePageOf(request, std::move(shown), progress, report);
}

ConversionReport ConvertIn(HostSession& session, const ConversionRequest& request, Progress& progress)
{
    ConversionReport report;
    report.wasDryRun = request.isDryRun;
    const KeptForError kept(report.diagnostics);
    DzNode& source =
        ChooseSource(session.open(request.source), request.dials.empty(), request.source, report.diagnostics);
    for (const NameValue& dial : request.dials)
        TurnDialOf(source, dial, session.diagnostics(), report.diagnostics);
    Append(report.diagnostics, CheckShapesAreWhole(source, request));
    DzNode& target = ChooseTarget(session.open(request.target), request.target, report.diagnostics);
    ConvertChosen(session, source, target, request, progress, report);
    return report;
}

} // namespace

std::vector<float> MeasuredDistances::all() const
{
    std::vector<float> distances;
    for (const auto* const figure : {&source, &target})
        for (const std::vector<float>& mesh : *figure)
            distances.insert(distances.end(), mesh.begin(), mesh.end());
    return distances;
}

const char* BaseName(GntBase base)
{
    switch (base) {
    case GntBase::Clone:
        return "clone";
    case GntBase::Feminine:
        return "feminine";
    case GntBase::Masculine:
        return "masculine";
    case GntBase::Height:
        break;
    }
    return "height";
}

ConversionReport ConvertFigures(HostSession& session, DzNode& source, DzNode& target,
                                const ConversionRequest& request, Progress& progress)
{
    CheckPlaces(request);
    ExpectFiles();
    session.allowOverwriting(request.mayOverwrite);
    session.setAuthor(request.author);
    ConversionRequest own = request;
    own.morphs.tempFolder = FileText(session.temporaryFolder());
    ConversionReport report;
    const KeptForError kept(report.diagnostics);
    ChooseSource({&source}, false, request.source, report.diagnostics);
    ChooseTarget({&target}, request.target, report.diagnostics);
    const std::set<const DzNode*> nodes = NodesInScene();
    const TargetBefore before(kst::daz::ResolveToFigure_X(target));
    try {
        Append(report.diagnostics, CheckShapesAreWhole(source, own));
        ConvertChosen(session, source, target, own, progress, report);
    } catch (...) {
        RemoveAllBut(nodes);
        before.putBack();
        throw;
    }
    RemoveAllBut(nodes);
    return report;
}

ConversionReport Convert(const ConversionRequest& request, Progress& progress)
{
    CheckPlaces(request);
    const bool keepsTemporary = request.keepTemporary && !request.isDryRun;
    if (!request.isDryRun)
        ExpectFiles();
    progress.stage(steps::loading);
    HostSession session(request.contentDirectories, request.verbose,
                        keepsTemporary ? TemporaryFolder::Lasting::Kept : TemporaryFolder::Lasting::ForRun);
    session.allowOverwriting(request.mayOverwrite);
    session.setAuthor(request.author);
    // Temporary files of the run go with the session, unless they are to be kept.
    ConversionRequest own = request;
    own.morphs.tempFolder = FileText(session.temporaryFolder());
    if (!keepsTemporary)
        return ConvertIn(session, own, progress);
    NoteForInterrupt("the temporary files are in " + own.morphs.tempFolder);
    try {
        ConversionReport report = ConvertIn(session, own, progress);
        report.temporaryFolder = own.morphs.tempFolder;
        return report;
    } catch (const UsageError&) {
        throw;
    } catch (const std::exception& error) {
        throw std::runtime_error(std::string(error.what()) + "; the temporary files are in " +
                                 own.morphs.tempFolder);
    }
}

} // namespace cli
