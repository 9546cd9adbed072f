// What a conversion is asked for, whoever asks: the dialog, a command line, a script.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"
#include "ks_exception.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class DzFloatProperty;

/// The dials of the target against which the morphs are built, in the order in which they are set.
enum class GntBase : int { Clone, Feminine, Masculine, Height };

/// Where a morph's dial is filed unless the user says otherwise.
constexpr const char* GNT_DEFAULT_MORPH_PATH = "/Gantrel";
GntJobs GntDefaultJobs();
/// What a converted figure is called unless the user says otherwise.
std::string GntConvertedLabel(std::string_view sourceLabel);
/// One name per job, by GntJobIndex, made of the full figure's.
std::vector<std::string> GntProposedNames(std::string_view fullName);

/// Members without a value leave it to the product. Texts are UTF-8; lists hold one value a job, by
/// GntJobIndex, and those of other jobs are ignored.
struct GntRequest {
    GntJobs jobs = GntDefaultJobs();
    std::vector<std::string> names; ///< empty: proposed from the target's new label
    std::vector<std::string> paths; ///< empty: GNT_DEFAULT_MORPH_PATH
    std::string targetLabel;        ///< the target's label from now on; empty: "{} converted to G9"

    std::map<GntBase, double> bases; ///< others stay as they are
    bool matchHeight = false;        ///< makes the target as tall as the source, after the bases are set

    GntResolution resolution = GntResolution::Base;
    /// The source's level for a subdivided conversion; without one, the source's own. Only where the request
    /// names its figures: a source that was selected has its level.
    std::optional<int> subdLevel;
    /// Turns the target's left thigh about Z while the morphs are built, and the right one to the other side;
    /// without a value as the source's generation stands.
    std::optional<float> thighDegrees;

    bool debugSteps = false; ///< the user confirms each step
    std::string tempFolder;  ///< absolute, for the conversion's files; empty: the system's
};

/// A base was to be set to what its dial cannot hold.
class GntBaseRangeError : public kst::Exception {
public:
    GntBaseRangeError(GntBase which, double wanted, const DzFloatProperty& ofBase);

    const GntBase base;
    const double value;
    const DzFloatProperty& dial; ///< the scene's; borrowed
};

/// Sets the bases that the request has; changes nothing when one of them does not fit.
/// @return false when the target cannot be made as tall as wanted; its height dial stays where it got to
/// @throws GntBaseRangeError  a value is outside of its dial's limits, to which the host would move it
bool GntSetBases_X(GntParams& params, const GntRequest& request);
