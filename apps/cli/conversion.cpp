// One conversion from files to files, as the command line runs it.
// SPDX-License-Identifier: MIT

#include "conversion.h"

#include "command.h"
#include "conversion_checks.h"
#include "conversion_results.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "gnt_convert-figure.h"
#include "host_session.h"
#include "ks_daz-helpers.h"
#include "ks_figure-height.h"
#include "ks_filtered-save.h"
#include "ks_property-setting.h"
#include "openhost/operations.h"
#include "progress.h"

#include <algorithm>

#include <fmt/format.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

/// Shows the steps of the conversion, which it tells the host, as stages of our own progress.
class HostStepsAsStages : public openhost::OperationListener {
public:
    explicit HostStepsAsStages(Progress& progress) : _progress(progress)
    {
        openhost::SetOperationListener(this);
    }
    ~HostStepsAsStages() override { openhost::SetOperationListener(nullptr); }
    HostStepsAsStages(const HostStepsAsStages&) = delete;
    HostStepsAsStages& operator=(const HostStepsAsStages&) = delete;

    bool allow(const QString& operation, const QString& detail) override
    {
        if (operation == QLatin1String("progress"))
            _progress.stage(detail.toStdString());
        return true;
    }

private:
    Progress& _progress;
};

void SetBase(const char* name, const std::shared_ptr<kst::FloatPropertySetting>& setting,
             const std::optional<double>& value)
{
    if (!value)
        return;
    DzFloatProperty& dial = setting->getProperty();
    CheckBaseValue(name, dial, *value);
    dial.setValue(static_cast<float>(*value));
}

void SetBases(const GntParams& params, const BaseDials& bases, std::vector<std::string>& warnings)
{
    SetBase("clone", params.settingCloneShape, bases.clone);
    SetBase("feminine", params.settingBaseFeminine, bases.feminine);
    SetBase("masculine", params.settingBaseMasculine, bases.masculine);
    SetBase("height", params.settingProportionHeight, bases.height);
    if (bases.matchHeight &&
        kst::daz::AdjustFigureHeight(params.figTarget, params.propTargetHeight, params.figSource) == -1.0f)
        warnings.emplace_back(
            "--base height=auto: the height dial cannot make the target as tall as the source");
}

GntJobs JobsOf(const ConversionRequest& request)
{
    GntJobs jobs;
    if (request.full)
        jobs.set(GntJobFlag::Full);
    if (request.head)
        jobs.set(GntJobFlag::Head);
    if (request.body)
        jobs.set(GntJobFlag::Body);
    return jobs;
}

/// The names that the product's dialog proposes.
std::vector<std::string> MorphNames(const std::string& name)
{
    return {name, name + " Head", name + " Body"};
}

/// High resolution, and the wanted level, as a user would set them before a conversion.
void Subdivide(DzNode& source, const std::optional<int>& level)
{
    DzFigure& figure = kst::daz::ResolveToFigure_X(source);
    kst::daz::SetNodeResolution(figure, kst::daz::NodeResolution::HighResolution, true);
    if (!level)
        return;
    DzIntProperty& control = *kst::daz::FindSubdivisionLevelIntProperty(figure, true);
    control.setMax(std::max(control.getMax(), *level));
    control.setValue(*level);
}

void SelectBoth(DzNode& source, DzNode& target)
{
    dzScene->selectAllNodes(false);
    source.select(true);
    target.select(true);
}

/// The host saves into libraries that are there only.
fs::path MakeLibrary(const fs::path& folder)
{
    const fs::path library = fs::absolute(folder);
    std::error_code error;
    fs::create_directories(library, error);
    if (!fs::is_directory(library))
        throw std::runtime_error(
            fmt::format("cannot create folder {}: {}", FileText(library), error.message()));
    return library;
}

void Save(const SaveRequest& save, DzNode& target, const std::vector<GntCreatedMorph>& created,
          HostSession& session)
{
    std::vector<std::string> names;
    for (const GntCreatedMorph& morph : created)
        names.push_back(morph.name);
    const fs::path library = MakeLibrary(save.contentDirectory);
    try {
        kst::FilteredSave::SaveMorphSupportAsset_X(target, FileText(library), save.vendor, save.product,
                                                   names, save.compress, false);
    } catch (const std::exception&) {
        // The host's code says only that it failed; its log says why.
        const std::vector<std::string> warnings = session.warnings();
        if (warnings.empty())
            throw;
        throw std::runtime_error("cannot save the morphs: " + warnings.back());
    }
}

/// What is wanted besides the morphs. These are safe by then, and a failure says so.
void WriteExtras(const ConversionRequest& request, const GntParams& params, GntResolution resolution,
                 Progress& progress, ConversionReport& report)
{
    try {
        if (!request.exportObj.empty()) {
            progress.stage("Writing the OBJ file");
            ExportFigure(params.figTarget, request.exportObj, resolution);
            report.files.push_back(request.exportObj);
        }
        if (!request.pictures.empty()) {
            progress.stage("Drawing the pictures");
            const std::vector<fs::path> pictures = DrawPictures(params, request.pictures, resolution);
            report.files.insert(report.files.end(), pictures.begin(), pictures.end());
        }
    } catch (const std::exception& error) {
        if (!request.save)
            throw;
        throw std::runtime_error(std::string(error.what()) + "; the morphs are saved");
    }
}

ConversionReport ConvertIn(HostSession& session, const ConversionRequest& request, Progress& progress)
{
    ConversionReport report;
    DzNode* const source = session.open(request.source);
    for (const NameValue& dial : request.dials)
        FindDial(*source, dial.name).setDoubleValue(dial.value);
    CheckIsSource(*source, request.source);
    if (const DzObject* const object = source->getObject())
        object->getCachedGeom(); // reads the shapes that are dialed in
    CheckShapesAreWhole(request.source, session.warnings());
    DzNode* const target = session.open(request.target);
    CheckIsTarget(*target, request.target);
    if (request.isSubdivided)
        Subdivide(*source, request.subdLevel);
    SelectBoth(*source, *target);
    const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    GntConverter converter(params);
    report.activeMorphs = converter.getActiveMorphCount();
    report.source = DescribeFigure(params->figSource);
    report.target = DescribeFigure(params->figTarget);
    const GntResolution resolution = request.isSubdivided ? GntResolution::Subd : GntResolution::Base;
    if (request.isSubdivided)
        report.subdLevel = params->iSubdLevelSource;
    report.cloneShape = std::string(GntClonePropertyName(params->cloneShape));
    SetBases(*params, request.bases, report.warnings);

    const GntJobs jobs = JobsOf(request);
    report.jobs = JobNames(jobs);
    const std::string label = converter.makeConvertedLabel();
    const std::vector<std::string> names = MorphNames(request.name.empty() ? label : request.name);
    const std::vector<std::string> paths(3, request.path);
    GntMissingMorphs missing;
    std::vector<GntCreatedMorph> created;
    {
        const HostStepsAsStages steps(progress);
        created = converter.run_X(resolution, label, paths, names, jobs, missing);
    }
    for (const auto& morph : missing)
        report.missing.emplace_back(morph.first, morph.second);

    progress.stage("Measuring the result");
    for (const GntCreatedMorph& morph : created)
        report.created.push_back(DescribeMorph(params->figTarget, morph));
    if (request.save) {
        progress.stage("Saving the morphs");
        Save(*request.save, params->figTarget, created, session);
        AddSavedFiles(params->figTarget, request.save->contentDirectory, report);
        progress.stage("Measuring the result");
    }
    WearMorphs(created);
    if (MakesWholeFigure(jobs))
        report.distance = MeasureDistance(*params, resolution);
    WriteExtras(request, *params, resolution, progress, report);
    progress.finish();
    const std::vector<std::string> warnings = session.warnings();
    report.warnings.insert(report.warnings.end(), warnings.begin(), warnings.end());
    return report;
}

} // namespace

ConversionReport Convert(const ConversionRequest& request, Progress& progress)
{
    CheckPlaces(request);
    progress.stage("Loading the figures");
    HostSession session(request.contentDirectories, request.verbose);
    const std::string folder = FileText(session.temporaryFolder());
    // Temporary files of the run go with the session, unless they are to be kept.
    qputenv("TMPDIR", QByteArray::fromStdString(folder));
    if (!request.keepTemporary)
        return ConvertIn(session, request, progress);
    session.keepTemporaryFolder();
    try {
        ConversionReport report = ConvertIn(session, request, progress);
        report.temporaryFolder = folder;
        return report;
    } catch (const UsageError&) {
        throw;
    } catch (const std::exception& error) {
        throw std::runtime_error(std::string(error.what()) + "; the temporary files are in " + folder);
    }
}

} // namespace cli
