// The single operations of a conversion.
// SPDX-License-Identifier: MIT

#include "gnt_convert-impl.h"
#include "gnt_steps.h"

#include "ks_assert.h"
#include "ks_clickaway.h"
#include "ks_exception.h"
#include "ks_obj-settings.h"
#include "ks_string.h"
#include "ks_transfer-utility.h"
#include "ks_wait-cursor.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QStringList>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzintproperty.h>
#include <dzscene.h>

using kst::str::Quote;
using kst::str::ToQ;
using kst::str::ToStd;

namespace {

DzFloatProperty& OwnFloatProperty_X(const DzNode& node, const char* name)
{
    return *kst::daz::FindFloatProperty(node, kst::daz::PropertyLocation::Node, name, true);
}

/// The sign tells whose part of the figure a morph is.
GntStep CreationStepOf(float sign)
{
    const auto job = std::find_if(GNT_JOBS.begin(), GNT_JOBS.end(),
                                  [sign](const GntJob& each) { return each.weightMapSign == sign; });
    assert(job != GNT_JOBS.end());
    return GntCreationStep(job->index);
}

} // namespace

void GntConverter::Impl::SetResolution_X(DzFigure& figure, GntResolution resolution, int subdLevel)
{
    if (resolution == GntResolution::Base) {
        kst::daz::SetNodeResolution(figure, kst::daz::NodeResolution::BaseResolution, true);
        return;
    }
    Subdivide_X(figure, subdLevel);
}

void GntConverter::Impl::Subdivide_X(DzFigure& figure, const std::optional<int>& level)
{
    kst::daz::SetNodeResolution(figure, kst::daz::NodeResolution::HighResolution, true);
    if (!level)
        return;
    DzIntProperty& control = *kst::daz::FindSubdivisionLevelIntProperty(figure, true);
    control.setMax(std::max(control.getMax(), *level));
    control.setValue(*level);
}

void GntConverter::Impl::S1_MoveTargetG9ToWorldOrigin()
{
    DzFigure& source = pParams->figSource;
    DzFigure& target = pParams->figTarget;
    for (const char* const name : GNT_PLACING_PROPERTIES) {
        const float wanted = OwnFloatProperty_X(source, name).getValue();
        DzFloatProperty& property = OwnFloatProperty_X(target, name);
        const float present = property.getValue();
        if (std::abs(wanted - present) > std::numeric_limits<float>::epsilon()) {
            savedValues[&property] = present;
            property.setValue(wanted);
        }
    }
    DzFloatProperty& height = OwnFloatProperty_X(target, GNT_LIFTING_PROPERTY);
    savedValues[&height] = height.getValue();
    height.setValue(0.0f);

    // A label of its own keeps look-ups by label from finding another node.
    savedSourceLabel = source.getLabel();
    sourceLabelSaved = true;
    source.setLabel(ToQ(fmt::format("{}-{}", ToStd(savedSourceLabel), kst::str::MakeRandomString(8))));
}

std::string GntConverter::Impl::getAbsolutePath_X(const char* relativePath)
{
    const std::string path = ToStd(contentManager.getAbsolutePath(QLatin1String(relativePath), true));
    if (path.empty())
        throw kst::Exception(
            "cannot find {} in any content library; please make sure Genesis 9 is installed correctly",
            Quote(relativePath));
    return path;
}

std::string GntConverter::Impl::exportSelectedAsObj_X(const std::string& stem)
{
    const std::string path = kst::str::MakePath(tempFolder, fmt::format("{}.obj", stem));
    kst::ObjExportSettings objSettings;
    objSettings.loadBlenderDefaults();
    objSettings.setSelectedRootsOnly(true);
    objSettings.setScale(1.0f);
    kst::daz::ExportOneObj_X(objSettings.getDzFileIOSettings(), path);
    return path;
}

DzNode& GntConverter::Impl::importObj_X(const std::string& path)
{
    kst::ObjImportSettings objSettings;
    objSettings.loadBlenderDefaults();
    objSettings.setScale(1.0f);
    kst::daz::ImportOneObj_X(objSettings.getDzFileIOSettings(), path);
    const std::size_t nameAt = path.rfind('/') + 1;
    const std::string name = path.substr(nameAt);
    return findSceneNode_X(name.substr(0, name.rfind('.')));
}

DzNode& GntConverter::Impl::findSceneNode_X(const std::string& label)
{
    DzNode* const node = dzScene->findNodeByLabel(ToQ(label));
    if (!node)
        throw kst::Exception("unable to find a node labeled {} in the scene after OBJ import", Quote(label));
    return *node;
}

DzFigure& GntConverter::Impl::loadGenesis_X(GntLoadFigure which, GntResolution resolution, int subdLevel)
{
    nodeList.snapshot();
    const kst::WaitCursor waitCursor;
    dzScene->selectAllNodes(false);
    const std::size_t index = static_cast<std::size_t>(which) - 1;
    if (index >= figureFiles.size())
        throw kst::Exception("invalid load figure value");
    const std::string& file = figureFiles[index];
    const char* const label = GNT_FIGURE_FILES[index].label;
    if (!contentManager.openFile(ToQ(file), true))
        throw kst::Exception("failed to load Genesis figure from file {}", Quote(file));
    DzNode* const node = nodeList.findNewByLabel(label);
    if (!node)
        throw kst::Exception("failed to find a figure named {} in the scene after loading {}", Quote(label),
                             Quote(file));
    DzFigure& figure = kst::daz::ResolveToFigure_X(*node);
    SetResolution_X(figure, resolution, subdLevel);
    // Hiding and showing makes the host rebuild its display at the new resolution.
    figure.setVisible(false);
    figure.setVisible(true);
    return figure;
}

DzFloatProperty& GntConverter::Impl::FindMorphProperty_X(DzNode& node, std::string_view name)
{
    const std::shared_ptr<kst::MorphInfo> info = kst::MorphList(node).findMorphByName(name);
    return info ? *info->property : kst::MorphList::FindMorphProperty_X(node, name); // tells what is wrong
}

DzFigure& GntConverter::Impl::S3_LoadTempG9ForFitSuit_X(GntResolution resolution)
{
    DzFigure* const pfigTempG9ForFitSuit =
        &loadGenesis_X(GntLoadFigure::Genesis9DeveloperLoad, resolution, pParams->iSubdLevelSource);
    const std::string_view cloneName = GntClonePropertyName(pParams->cloneShape);
    if (!cloneName.empty())
        FindMorphProperty_X(*pfigTempG9ForFitSuit, cloneName).setValue(1.0f);
    if (thighDegrees != 0.0f)
        GntSetThighs_X(*pfigTempG9ForFitSuit, thighDegrees);
    if (resolution == GntResolution::Subd) {
        int iSubdLevelTemp = 0;
        assert(kst::daz::GetNodeResolution(*pfigTempG9ForFitSuit) ==
               kst::daz::NodeResolution::HighResolution);
        assert(kst::daz::GetSubdivisionLevel(*pfigTempG9ForFitSuit, &iSubdLevelTemp) &&
               (iSubdLevelTemp == pParams->iSubdLevelSource));
        Q_UNUSED(iSubdLevelTemp);
    } else {
        assert(kst::daz::GetNodeResolution(*pfigTempG9ForFitSuit) ==
               kst::daz::NodeResolution::BaseResolution);
    }
    return *pfigTempG9ForFitSuit;
}

void GntConverter::Impl::runTransferUtility(DzNode& source, DzNode& target, const MorphValues& morphs)
{
    using kst::daz::TransferUtility;
    const std::shared_ptr<TransferUtility> utility = TransferUtility::Create();
    utility->setSource(&source);
    utility->setTarget(&target);
    utility->setParentToFigure(false);
    utility->setTransferBinding(true);
    utility->setTransferSelectionMap(true);
    utility->setTransferFaceGroups(true);
    utility->setTransferRegionGroups(true);
    utility->setTransferMorphs(true);
    if (morphs.empty()) {
        utility->setTransferSourceMorphs(TransferUtility::SourceMorphTransferType::AllMorphs);
    } else {
        QStringList names;
        for (const kst::MorphList::ActiveMorph& morph : morphs)
            names << ToQ(morph.first);
        utility->setTransferSourceMorphs(TransferUtility::SourceMorphTransferType::NameList);
        utility->setMorphTransferList(names);
    }
    utility->setOverrideExistingMorphs(true);
    utility->setTargetReplacesSource(false);
    if (!utility->doTransfer())
        throw kst::Exception("Transfer Utility failed");
}

DzNode& GntConverter::Impl::S7_RunTransferUtilityOnFitSuitToCreateMorphs_X(DzNode& source, DzNode& fitSuit,
                                                                           const MorphValues& morphs,
                                                                           const std::string& fitSuitLabel)
{
    runTransferUtility(source, fitSuit, morphs);
    // The utility replaces the mesh by a figure of the same label, so it is looked for anew.
    DzNode* const figure = nodeList.findNewByLabel(fitSuitLabel);
    if (!figure)
        throw kst::Exception("unable to find figure labeled {} after running Transfer Utility",
                             Quote(fitSuitLabel));
    return *figure;
}

void GntConverter::Impl::S8_DialUpMorphsInFitSuitWithTransfers_X(DzNode& figure, const MorphValues& morphs,
                                                                 GntMissingMorphs& missing)
{
    const kst::MorphList list(figure);
    for (const kst::MorphList::ActiveMorph& morph : morphs) {
        if (const std::shared_ptr<kst::MorphInfo> info = list.findMorphByName(morph.first))
            info->property->setValue(morph.second);
        else
            missing.insert(morph);
    }
}

DzFloatProperty& GntConverter::Impl::findNewMorphProperty_X(DzNode& node, const std::string& morphName,
                                                            const std::string& report)
{
    const std::shared_ptr<kst::MorphInfo> info = kst::MorphList(node).findMorphByName(morphName);
    if (!info)
        throw kst::Exception(
            "failed to find new morph {} in node {} figure after conversion; Morph Loader Pro returned: {}",
            Quote(morphName), Quote(node.getLabel()), report);
    return *info->property;
}

kst::MorphLoad GntConverter::Impl::MakeMorphLoad_X(const std::string& objPath, const std::string& morphName,
                                                   const std::string& morphPath)
{
    kst::ObjImportSettings objSettings;
    objSettings.loadBlenderDefaults();
    objSettings.setScale(1.0f);
    kst::MorphLoad load;
    load.objFile = objPath;
    load.morphName = morphName;
    load.importSettingsJson = objSettings.toJsonStringOrThrowQ();
    load.propertyGroupPath = morphPath;
    return load;
}

DzFloatProperty& GntConverter::Impl::createMorph_X(GntStepper& stepper, DzFigure& target,
                                                   const std::string& objPath, GntResolution resolution,
                                                   int subdLevel, const std::string& morphName,
                                                   const std::string& morphPath,
                                                   const std::string& weightMapPath, float sign)
{
    stepper.begin_X(CreationStepOf(sign));
    kst::daz::SetSceneSelection(target);
    kst::MorphLoad load = MakeMorphLoad_X(objPath, morphName, morphPath);
    load.subdivide = resolution == GntResolution::Subd;
    load.builtResolution = subdLevel;
    load.reverseDeformations = true; // the thighs are posed and base dials may be set
    load.attenuateMapPath = weightMapPath;
    load.attenuateStrength = sign;
    const std::string report = kst::MorphLoaderBatch::Exec_X(&target, load);
    return findNewMorphProperty_X(target, morphName, report);
}

DzFloatProperty& GntConverter::Impl::createHeadOrBodyMorph_X(GntStepper& stepper, GntResolution resolution,
                                                             const std::string& objPath,
                                                             const std::string& morphName,
                                                             const std::string& morphPath, int subdLevel,
                                                             float sign)
{
    loadHeadSplitDFormerOnce_X();
    DzFigure& target = pParams->figTarget;
    const std::string weightMapPath =
        fmt::format("D-Former_1::weightmap::{}/Influence Weights", ToStd(target.getLabel()));
    return createMorph_X(stepper, target, objPath, resolution, subdLevel, morphName, morphPath, weightMapPath,
                         sign);
}

void GntConverter::Impl::loadHeadSplitDFormerOnce_X()
{
    if (headSplitLoaded)
        return;
    nodeList.snapshot();
    kst::daz::SetSceneSelection(pParams->figTarget);
    const std::string path = getAbsolutePath_X(GNT_HEAD_SPLIT_FILE);
    bool isLoaded = false;
    {
        const kst::Clickaway dismisser(false);
        isLoaded = contentManager.openFile(ToQ(path), true);
    }
    if (!isLoaded)
        throw kst::Exception("failed to load head split D-former from file {}", Quote(path));
    const std::set<DzNode*> added = nodeList.getNew();
    headSplitNodes.assign(added.begin(), added.end());
    headSplitLoaded = true;
}
