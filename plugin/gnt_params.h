// The figures and choices of one conversion.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_flag-set.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>

class DzFigure;
class DzFloatProperty;
class DzProperty;

namespace kst {
class FloatPropertySetting;
}

/// Which of the target's clone shapes corresponds to the source's generation. Genesis 8.1 uses Genesis 8's.
enum class GntCloneShape : int { Genesis3Female, Genesis3Male, Genesis8Female, Genesis8Male };

/// The target's float property of a clone shape; empty for a value outside the enumeration.
std::string_view GntClonePropertyName(GntCloneShape cloneShape);
/// Genesis 8 stands with its legs further apart than Genesis 9, so the target's thighs are turned for it.
bool GntNeedsThighPose(GntCloneShape cloneShape);
constexpr float GNT_THIGH_DEGREES = 6.5f;
/// Of the target's left thigh about Z while morphs of such a source are built; the right one's is negative.
float GntThighDegrees(GntCloneShape cloneShape);
/// A bone that is turned so, and which way.
struct GntThigh {
    const char* bone;
    float sign;
};
constexpr std::array<GntThigh, 2> GNT_THIGHS{{{"l_thigh", 1.0f}, {"r_thigh", -1.0f}}};
constexpr const char* GNT_THIGH_PROPERTY = "ZRotate";
/// @throws kst::Exception  the figure lacks such a thigh
void GntSetThighs_X(DzFigure& target, float leftDegrees);

/// By these the target is placed and turned like the source while its morphs are built.
constexpr std::array<const char*, 5> GNT_PLACING_PROPERTIES{
    {"XTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"}};
/// At zero meanwhile: the target stands on the floor.
constexpr const char* GNT_LIFTING_PROPERTY = "YTranslate";

enum class GntResolution : int { Base, Subd };

enum class GntJobFlag : int { Full = 1, Head = 2, Body = 4 };
typedef kst::FlagSet<GntJobFlag> GntJobs;

/// Index into lists that hold one value a job.
enum GntJobIndex : int { GntFull = 0, GntHead = 1, GntBody = 2 };

/// What tells the jobs apart.
struct GntJob {
    GntJobIndex index;
    GntJobFlag flag;
    const char* keyword;
    float weightMapSign; ///< 1 keeps the head split's part of the figure, -1 its complement; 0 keeps all
};
/// In GntJobIndex's order, which is also that of the creation.
constexpr std::array<GntJob, 3> GNT_JOBS{{{GntFull, GntJobFlag::Full, "full", 0.0f},
                                          {GntHead, GntJobFlag::Head, "head", 1.0f},
                                          {GntBody, GntJobFlag::Body, "body", -1.0f}}};

/// One morph that a conversion made.
struct GntCreatedMorph {
    int kind;                  ///< a GntJobIndex
    std::string name;          ///< as the user chose it
    DzFloatProperty* property; ///< on the target; borrowed
    std::string path = {};     ///< where its dial is filed
};

/// Shared by the converter and the dialogs. Figures and properties are the scene's and are borrowed.
class GntParams {
public:
    /// Finds the four base dials on the target.
    /// @throws kst::Exception  the target lacks one of them
    GntParams(DzFigure& source, int subdLevelSource, GntCloneShape clone, DzFigure& target,
              DzFloatProperty& targetHeight);
    GntParams(const GntParams&) = delete;
    GntParams& operator=(const GntParams&) = delete;

    /// Looks on the node, then its modifiers, then its shape.
    /// @return never null
    /// @throws kst::Exception  there is none, or it is no float property
    DzFloatProperty* findPropertyInTarget(std::string_view name) const;
    /// While a dialog waits for the user, a script or a timer of the host may take them away.
    bool areFiguresInScene() const;
    /// Moves the target's height dial until it is as tall as the source.
    /// @return false when the dial did not get so far
    bool matchHeight() const;

    DzFigure& figSource;
    const int iSubdLevelSource; ///< at the moment of selection
    const GntCloneShape cloneShape;
    DzFigure& figTarget;
    DzFloatProperty& propTargetHeight;
    const std::shared_ptr<kst::FloatPropertySetting> settingCloneShape;
    const std::shared_ptr<kst::FloatPropertySetting> settingBaseFeminine;
    const std::shared_ptr<kst::FloatPropertySetting> settingBaseMasculine;
    const std::shared_ptr<kst::FloatPropertySetting> settingProportionHeight;
};
