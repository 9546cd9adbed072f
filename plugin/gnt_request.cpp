// What a conversion is asked for, whoever asks: the dialog, a command line, a script.
// SPDX-License-Identifier: MIT

#include "gnt_request.h"

#include "ks_daz-adaptation.h"
#include "ks_property-setting.h"
#include "ks_string.h"

#include <dzfloatproperty.h>

namespace {

DzFloatProperty& DialOf(const GntParams& params, GntBase base)
{
    switch (base) {
    case GntBase::Clone:
        return params.settingCloneShape->getProperty();
    case GntBase::Feminine:
        return params.settingBaseFeminine->getProperty();
    case GntBase::Masculine:
        return params.settingBaseMasculine->getProperty();
    case GntBase::Height:
        break;
    }
    return params.settingProportionHeight->getProperty();
}

} // namespace

GntJobs GntDefaultJobs()
{
    return GntJobs(GntJobFlag::Head) | GntJobFlag::Body;
}

std::string GntConvertedLabel(std::string_view sourceLabel)
{
    return fmt::format("{} converted to G9", sourceLabel);
}

std::vector<std::string> GntProposedNames(std::string_view fullName)
{
    return {std::string(fullName), fmt::format("{} Head", fullName), fmt::format("{} Body", fullName)};
}

GntBaseRangeError::GntBaseRangeError(GntBase which, double wanted, const DzFloatProperty& ofBase)
    : kst::Exception("base {} cannot be {}; it goes from {} to {}", kst::str::Quote(ofBase.getLabel()),
                     wanted, ofBase.getMin(), ofBase.getMax()),
      base(which), value(wanted), dial(ofBase)
{
}

bool GntSetBases_X(GntParams& params, const GntRequest& request)
{
    for (const auto& base : request.bases) {
        const DzFloatProperty& dial = DialOf(params, base.first);
        if (KsHelpersDaz::IsClamped(dial) && !(base.second >= dial.getMin() && base.second <= dial.getMax()))
            throw GntBaseRangeError(base.first, base.second, dial);
    }
    for (const auto& base : request.bases)
        DialOf(params, base.first).setValue(static_cast<float>(base.second));
    return !request.matchHeight || params.matchHeight();
}
