// Values that a file sets, of dials and of aliases.
// SPDX-License-Identifier: MIT

#include "alias_values.h"

#include "base/counted.h"
#include "dson/reader.h"
#include "dznumericproperty.h"
#include "load_report.h"
#include "loading/channel_properties.h"

namespace openhost {

void AliasValues::set(DzNumericProperty& property, double value)
{
    property.setDoubleRawValue(value);
    _set[&property] = value;
}

void AliasValues::setAlias(DzNumericProperty& alias, double value)
{
    if (value != 0.0)
        _waiting.push_back({&alias, value});
}

void AliasValues::apply(LoadReport& report)
{
    std::vector<std::string> blind, overruled;
    for (const Waiting& waiting : _waiting) {
        DzNumericProperty& target = AliasEnd(*waiting.alias);
        const auto own = _set.find(&target);
        if (!waiting.alias->getAliasTarget())
            blind.push_back(waiting.alias->getName().toStdString());
        else if (own == _set.end())
            set(target, waiting.value);
        else if (own->second != waiting.value)
            overruled.push_back(waiting.alias->getName().toStdString());
    }
    _waiting.clear();
    if (!blind.empty())
        report.warnLeftOut(base::Counted(blind.size(), "value is set on an alias that stands for nothing",
                                         "values are set on aliases that stand for nothing") +
                           Examples(blind));
    if (!overruled.empty())
        report.warn(base::Counted(overruled.size(),
                                  "alias is set otherwise than what it stands for, which counts",
                                  "aliases are set otherwise than what they stand for, which counts") +
                    Examples(overruled));
}

} // namespace openhost
