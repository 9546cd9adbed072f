// The driver of a conversion: selection, the sequence of steps, and the restoring of the figures.
// SPDX-License-Identifier: MIT

#include "gnt_convert-impl.h"
#include "gnt_steps.h"

#include "ks_app-setting.h"
#include "ks_assert.h"
#include "ks_daz-managers.h"
#include "ks_exception.h"
#include "ks_help.h"
#include "ks_product.h"
#include "ks_progress.h"
#include "ks_string.h"
#include "ks_wait-cursor.h"

#include <QDir>

#include <dzaction.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzintproperty.h>
#include <dzscene.h>

namespace {

using kst::str::MakeRandomString;

const char* const tempMorphName = "Temporary high-res morph";

struct SourceKind {
    kst::daz::BaseFigure figure;
    GntCloneShape cloneShape;
};

const SourceKind sourceKinds[] = {
    {kst::daz::BaseFigure::Genesis3Female, GntCloneShape::Genesis3Female},
    {kst::daz::BaseFigure::Genesis8Female, GntCloneShape::Genesis8Female},
    {kst::daz::BaseFigure::Genesis8_1Female, GntCloneShape::Genesis8Female},
    {kst::daz::BaseFigure::Genesis3Male, GntCloneShape::Genesis3Male},
    {kst::daz::BaseFigure::Genesis8Male, GntCloneShape::Genesis8Male},
    {kst::daz::BaseFigure::Genesis8_1Male, GntCloneShape::Genesis8Male},
};

const SourceKind* SourceKindOf(kst::daz::BaseFigure figure)
{
    for (const SourceKind& kind : sourceKinds)
        if (kind.figure == figure)
            return &kind;
    return nullptr;
}

kst::daz::BaseFigure BaseFigureOf(const DzNode& node)
{
    return kst::daz::GetBaseFigure(kst::daz::GetNodeAssetUri(node));
}

void DeleteSelection_X()
{
    kst::daz::FindActionOrThrow("DzDeleteAction", true)->trigger();
}

std::string RandomStem(const char* prefix)
{
    return prefix + MakeRandomString(8);
}

} // namespace

bool GntConverter::IsSource(const DzNode& node)
{
    return SourceKindOf(BaseFigureOf(node)) != nullptr;
}

bool GntConverter::IsTarget(const DzNode& node)
{
    return BaseFigureOf(node) == kst::daz::BaseFigure::Genesis9;
}

GntLoadedLabels GntConverter::LoadedLabels(const DzNode& source)
{
    const SourceKind* const kind = SourceKindOf(BaseFigureOf(source));
    assert(kind);
    const auto labelOf = [](GntLoadFigure figure) {
        return GNT_FIGURE_FILES[static_cast<std::size_t>(figure) - 1].label;
    };
    return {labelOf(GntStockFigureOf(kind->cloneShape)), labelOf(GntLoadFigure::Genesis9DeveloperLoad)};
}

std::shared_ptr<GntParams> GntConverter::FindSourceAndTargetInSceneSelected_X()
{
    std::vector<DzNode*> sources, targets;
    GntCloneShape cloneShape = GntCloneShape::Genesis3Female;
    for (DzNode* const selected : kst::daz::GetSceneSelection()) {
        DzNode* const node = kst::daz::ResolveBone(selected); // null for a bone that has lost its figure
        const kst::daz::BaseFigure figure = node ? BaseFigureOf(*node) : kst::daz::BaseFigure::None;
        if (figure == kst::daz::BaseFigure::None)
            throw kst::Exception("selected figure {} is not a Genesis 3, 8, 8.1, or 9 figure",
                                 kst::str::Quote((node ? node : selected)->getLabel()));
        if (figure == kst::daz::BaseFigure::Genesis9)
            targets.push_back(node);
        if (const SourceKind* const kind = SourceKindOf(figure)) {
            sources.push_back(node);
            cloneShape = kind->cloneShape;
        }
    }
    // The text speaks of Genesis 8 only, although Genesis 3 is accepted; users and support know it so.
    if (sources.size() != 1 || targets.size() != 1)
        throw kst::Exception(kst::daz::FormatHelp("you must select two figures (a ``source'' Genesis 8 or "
                                                  "8.1 and a ``target'' Genesis 9) in the scene"));
    DzFigure& source = kst::daz::ResolveToFigure_X(*sources.front());
    const int subdLevel = kst::daz::FindSubdivisionLevelIntProperty(source, true)->getValue();
    DzFigure& target = kst::daz::ResolveToFigure_X(*targets.front());
    DzFloatProperty& height = Impl::FindMorphProperty_X(target, "body_bs_ProportionHeight");
    return std::make_shared<GntParams>(source, subdLevel, cloneShape, target, height);
}

GntConverter::GntConverter(std::shared_ptr<GntParams> params) : _pImpl(new Impl(std::move(params))) {}
GntConverter::~GntConverter() = default;

std::size_t GntConverter::getActiveMorphCount() const
{
    return _pImpl->activeMorphs.size();
}

std::string GntConverter::makeConvertedLabel() const
{
    return GntConvertedLabel(kst::str::ToStd(_pImpl->pParams->figSource.getLabel()));
}

GntRequest GntConverter::complete(const GntRequest& request) const
{
    const GntParams& params = *_pImpl->pParams;
    // The figures would not match: it is the selected source's level that all of them get.
    assert(!request.subdLevel || *request.subdLevel == params.iSubdLevelSource);
    GntRequest whole = request;
    whole.subdLevel = params.iSubdLevelSource;
    if (whole.targetLabel.empty())
        whole.targetLabel = makeConvertedLabel();
    if (whole.names.empty())
        whole.names = GntProposedNames(whole.targetLabel);
    if (whole.paths.empty())
        whole.paths.assign(GNT_JOBS.size(), GNT_DEFAULT_MORPH_PATH);
    if (!whole.thighDegrees)
        whole.thighDegrees = GntThighDegrees(params.cloneShape);
    return whole;
}

GntOutcome GntConverter::run_X(const GntRequest& request)
{
    Impl& impl = *_pImpl;
    GntOutcome outcome;
    outcome.params = impl.pParams;
    outcome.request = complete(request);
    outcome.activeMorphCount = impl.activeMorphs.size();
    const kst::WaitCursor waitCursor;
    outcome.isHeightMatched = GntSetBases_X(*impl.pParams, request);
    impl.runSteps_X(outcome);
    return outcome;
}

std::vector<GntCreatedMorph> GntConverter::run_X(GntResolution resolution, std::string_view targetLabel,
                                                 const std::vector<std::string>& morphPaths,
                                                 const std::vector<std::string>& morphNames, GntJobs jobs,
                                                 GntMissingMorphs& missing)
{
    GntRequest request;
    request.jobs = jobs;
    request.names = morphNames;
    request.paths = morphPaths;
    request.targetLabel = std::string(targetLabel);
    request.resolution = resolution;
    GntOutcome outcome = run_X(request);
    missing.insert(outcome.missing.begin(), outcome.missing.end());
    return outcome.created;
}

GntConverter::Impl::Impl(std::shared_ptr<GntParams> params)
    : settings(QString::fromUtf8(kst::product::TITLE)), contentManager(kst::daz::GetContentMgr_X()),
      pParams(std::move(params)), tempFolder(kst::str::ToStd(QDir::tempPath()))
{
    if (kst::BoolAppSetting(settings, "use-own-temp-folder", false).get()) {
        ownTempFolder.reset(new GntTempFolder);
        tempFolder = ownTempFolder->getPath();
    }
    for (std::size_t i = 0; i < figureFiles.size(); ++i)
        figureFiles[i] = getAbsolutePath_X(GNT_FIGURE_FILES[i].relativePath);
    activeMorphs = kst::MorphList(pParams->figSource).getActiveProperties();
    if (activeMorphs.empty())
        throw kst::Exception("source figure {} has no morphs dialed in; nothing to do",
                             kst::str::Quote(pParams->figSource.getLabel()));
    sourceResolution = kst::daz::GetNodeResolution(pParams->figSource);
    thighDegrees = GntThighDegrees(pParams->cloneShape);
}

void GntConverter::Impl::runSteps_X(GntOutcome& outcome)
{
    const GntRequest& request = outcome.request;
    const GntResolution resolution = request.resolution;
    thighDegrees = *request.thighDegrees;
    if (!request.tempFolder.empty())
        tempFolder = request.tempFolder;
    GntStepper stepper(GntStepsOf(request.jobs), prepareSteps(resolution, request.jobs), request.debugSteps);

    S1_MoveTargetG9ToWorldOrigin();
    DzNode& morphedStock = makeMorphedStockMesh_X(stepper, resolution);
    DzNode& fitSuit = makeFitSuit_X(stepper, resolution);
    const std::string obj = transferToFitSuit_X(stepper, morphedStock, fitSuit, outcome.missing);
    adjustTargetForMorphCreation_X(stepper, resolution, request.targetLabel);
    createMorphs_X(stepper, obj, outcome);
    removeHeadSplitNodes();
    if (thighDegrees != 0.0f)
        GntSetThighs_X(pParams->figTarget, 0.0f);
    stepper.done();
    restoreSourceAndTargetParams();
}

GntConverter::Impl::~Impl()
{
    restoreSourceAndTargetParams();
}

std::vector<std::string> GntConverter::Impl::prepareSteps(GntResolution, GntJobs jobs) const
{
    std::vector<std::string> texts;
    for (const GntStep step : GntStepsOf(jobs))
        texts.push_back(GntStepText(step));
    return texts;
}

void GntConverter::Impl::restoreSourceAndTargetParams()
{
    for (const auto& saved : savedValues)
        saved.first->setValue(saved.second);
    savedValues.clear();
    if (sourceLabelSaved) {
        pParams->figSource.setLabel(savedSourceLabel);
        sourceLabelSaved = false;
    }
    if (sourceResolutionChanged)
        kst::daz::SetNodeResolution(pParams->figSource, sourceResolution, false);
}

DzNode& GntConverter::Impl::makeMorphedStockMesh_X(GntStepper& stepper, GntResolution resolution)
{
    DzFigure& source = pParams->figSource;
    if (resolution == GntResolution::Base) {
        kst::daz::SetNodeResolution(source, kst::daz::NodeResolution::BaseResolution, true);
        sourceResolutionChanged = true;
    }

    stepper.begin_X(GntStep::ExportSource);
    // Only the second file is used; the host brings its geometry up to date with the first.
    kst::daz::SetSceneSelection(source);
    exportSelectedAsObj_X(RandomStem("tempg8-src1-"));
    kst::daz::SetSceneSelection(source);
    const std::string sourceObj = exportSelectedAsObj_X(RandomStem("tempg8-src2-"));

    stepper.begin_X(GntStep::LoadStockFigure);
    DzFigure& stock =
        loadGenesis_X(GntStockFigureOf(pParams->cloneShape), resolution, pParams->iSubdLevelSource);

    stepper.begin_X(GntStep::ExportStockFigure);
    const std::string stockObj = exportSelectedAsObj_X(RandomStem("tempg8-tgt-"));

    stepper.begin_X(GntStep::RemoveStockFigure);
    kst::daz::SetSceneSelection(stock);
    DeleteSelection_X();

    stepper.begin_X(GntStep::ImportStockMesh);
    DzNode& mesh = importObj_X(stockObj);

    stepper.begin_X(GntStep::CreateConvertedMorph);
    kst::daz::SetSceneSelection(mesh);
    const std::string report =
        kst::MorphLoaderBatch::Exec_X(&mesh, MakeMorphLoad_X(sourceObj, tempMorphName, "test morphs"));
    DzFloatProperty& morph = findNewMorphProperty_X(mesh, tempMorphName, report);

    stepper.begin_X(GntStep::DialConvertedMorph);
    morph.setValue(1.0f);
    return mesh;
}

DzNode& GntConverter::Impl::makeFitSuit_X(GntStepper& stepper, GntResolution resolution)
{
    stepper.begin_X(GntStep::LoadTempG9);
    DzFigure& target = pParams->figTarget;
    target.setLabel(kst::str::ToQ(
        fmt::format("Target {} ({})", MakeRandomString(8), kst::str::ToStd(target.getLabel()))));

    DzFigure& temporary = S3_LoadTempG9ForFitSuit_X(resolution);
    temporary.setLabel(QLatin1String("Genesis 9 temp for fit suit"));

    stepper.begin_X(GntStep::ExportTempG9);
    const std::string fitSuitObj = exportSelectedAsObj_X(RandomStem("tempg9-"));

    stepper.begin_X(GntStep::RemoveTempG9);
    kst::daz::SetSceneSelection(temporary);
    DeleteSelection_X();

    stepper.begin_X(GntStep::ImportFitSuit);
    nodeList.snapshot();
    return importObj_X(fitSuitObj);
}

std::string GntConverter::Impl::transferToFitSuit_X(GntStepper& stepper, DzNode& morphedStock,
                                                    DzNode& fitSuit, GntMissingMorphs& missing)
{
    stepper.begin_X(GntStep::RunTransferUtility);
    const MorphValues morphs{{tempMorphName, 1.0f}};
    DzNode* figure = nullptr;
    {
        const KsLogEnteringLeaving scope("Running Transfer Utility");
        figure = &S7_RunTransferUtilityOnFitSuitToCreateMorphs_X(morphedStock, fitSuit, morphs,
                                                                 kst::str::ToStd(fitSuit.getLabel()));
    }
    kst::daz::SetNodeResolution(*figure, kst::daz::NodeResolution::BaseResolution, true);
    kst::daz::SetSceneSelection(morphedStock);
    DeleteSelection_X();

    stepper.begin_X(GntStep::DialFitSuitMorphs);
    S8_DialUpMorphsInFitSuitWithTransfers_X(*figure, morphs, missing);

    stepper.begin_X(GntStep::ExportFitSuit);
    kst::daz::SetSceneSelection(*figure);
    const std::string obj = exportSelectedAsObj_X(RandomStem("rigged-for-mlp-"));
    dzScene->removeNode(figure);
    return obj;
}

void GntConverter::Impl::adjustTargetForMorphCreation_X(GntStepper& stepper, GntResolution resolution,
                                                        std::string_view targetLabel)
{
    stepper.begin_X(GntStep::AdjustTarget);
    DzFigure& target = pParams->figTarget;
    SetResolution_X(target, resolution, pParams->iSubdLevelSource);
    if (thighDegrees != 0.0f)
        GntSetThighs_X(target, thighDegrees);
    target.setLabel(kst::str::ToQ(targetLabel));
}

void GntConverter::Impl::createMorphs_X(GntStepper& stepper, const std::string& objPath, GntOutcome& outcome)
{
    const GntRequest& request = outcome.request;
    const GntResolution resolution = request.resolution;
    const int level = pParams->iSubdLevelSource;
    for (const GntJob& job : GNT_JOBS) {
        if (!request.jobs.test(job.flag))
            continue;
        const std::string& name = request.names.at(job.index);
        const std::string& path = request.paths.at(job.index);
        DzFloatProperty& property =
            job.index == GntFull
                ? createMorph_X(stepper, pParams->figTarget, objPath, resolution, level, name, path,
                                std::string(), job.weightMapSign)
                : createHeadOrBodyMorph_X(stepper, resolution, objPath, name, path, level, job.weightMapSign);
        outcome.created.push_back({job.index, name, &property, path});
    }
}

void GntConverter::Impl::removeHeadSplitNodes()
{
    for (DzNode* const node : headSplitNodes)
        if (dzScene->findNodeIndex(node) >= 0)
            dzScene->removeNode(node);
    headSplitNodes.clear();
}
