// Where the dials of a conversion's figures stood.
// SPDX-License-Identifier: MIT

#include "conversions/dials_used.h"

#include "dznumericproperty.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace cli {

namespace {

/// Values are of single precision.
double Shown(double value)
{
    constexpr int decimals = 6;
    return Rounded(value, decimals);
}

DialUsed DescribeDial(const Dial& dial)
{
    return {dial.name, dial.label, Shown(dial.property->getDoubleValue()), std::nullopt};
}

} // namespace

DialsUsed FindDialsUsed(const DzNode& figure, const std::vector<NameValue>& wanted)
{
    DialsUsed used;
    std::vector<const DzNumericProperty*> properties;
    for (const Dial& dial : OwnDials(figure))
        if (!IsAtDefault(dial)) {
            used.push_back(DescribeDial(dial));
            properties.push_back(dial.property);
        }
    for (const NameValue& one : wanted)
        try {
            const Dial dial = FindDial(figure, one.name);
            const auto known = std::find(properties.begin(), properties.end(), dial.property);
            const auto at = static_cast<std::size_t>(known - properties.begin());
            if (known == properties.end()) {
                used.push_back(DescribeDial(dial));
                properties.push_back(dial.property);
            }
            used[at].wanted = one.value;
        } catch (const UnknownDial&) {
            continue; // of a shape that is missing, which is told
        }
    return used;
}

Json Describe(const DialsUsed& dials)
{
    Json list = Json::array();
    for (const DialUsed& dial : dials) {
        const bool isClamped = dial.wanted && Shown(*dial.wanted) != dial.value;
        list.push_back({{"name", dial.name},
                        {"label", dial.label},
                        {"value", dial.value},
                        {"wanted", dial.wanted ? Json(*dial.wanted) : Json()},
                        {"clamped", isClamped}});
    }
    return list;
}

} // namespace cli
