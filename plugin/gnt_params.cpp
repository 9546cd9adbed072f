// The figures and choices of one conversion.
// SPDX-License-Identifier: MIT

#include "gnt_params.h"

#include "ks_daz-helpers.h"
#include "ks_figure-height.h"
#include "ks_property-setting.h"

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzscene.h>

std::string_view GntClonePropertyName(GntCloneShape cloneShape)
{
    switch (cloneShape) {
    case GntCloneShape::Genesis3Female:
        return "CloneGenesis3Female";
    case GntCloneShape::Genesis3Male:
        return "CloneGenesis3Male";
    case GntCloneShape::Genesis8Female:
        return "CloneGenesis8Female";
    case GntCloneShape::Genesis8Male:
        return "CloneGenesis8Male";
    }
    return {};
}

bool GntNeedsThighPose(GntCloneShape cloneShape)
{
    return cloneShape == GntCloneShape::Genesis8Female || cloneShape == GntCloneShape::Genesis8Male;
}

float GntThighDegrees(GntCloneShape cloneShape)
{
    return GntNeedsThighPose(cloneShape) ? GNT_THIGH_DEGREES : 0.0f;
}

void GntSetThighs_X(DzFigure& target, float leftDegrees)
{
    for (const GntThigh& thigh : GNT_THIGHS)
        // Adding zero leaves no negative one.
        kst::daz::SetBoneValueOrThrow(target, thigh.bone, GNT_THIGH_PROPERTY,
                                      thigh.sign * leftDegrees + 0.0f);
}

GntParams::GntParams(DzFigure& source, int subdLevelSource, GntCloneShape clone, DzFigure& target,
                     DzFloatProperty& targetHeight)
    : figSource(source), iSubdLevelSource(subdLevelSource), cloneShape(clone), figTarget(target),
      propTargetHeight(targetHeight), settingCloneShape(std::make_shared<kst::FloatPropertySetting>(
                                          *findPropertyInTarget(GntClonePropertyName(clone)))),
      settingBaseFeminine(std::make_shared<kst::FloatPropertySetting>(
          *findPropertyInTarget("BaseFeminine_figure_ctrl_Character"))),
      settingBaseMasculine(std::make_shared<kst::FloatPropertySetting>(
          *findPropertyInTarget("BaseMasculine_figure_ctrl_Character"))),
      settingProportionHeight(
          std::make_shared<kst::FloatPropertySetting>(*findPropertyInTarget("body_bs_ProportionHeight")))
{
}

DzFloatProperty* GntParams::findPropertyInTarget(std::string_view name) const
{
    return kst::daz::FindFloatProperty(figTarget, kst::daz::PropertyLocation::Any, name, true);
}

bool GntParams::areFiguresInScene() const
{
    // The scene compares addresses only, so that figures that are deleted may be asked about.
    return dzScene->findNodeIndex(&figSource) >= 0 && dzScene->findNodeIndex(&figTarget) >= 0;
}

bool GntParams::matchHeight() const
{
    return kst::daz::AdjustFigureHeight(figTarget, settingProportionHeight->getProperty(), figSource) !=
           -1.0f;
}
