// Values that a file sets, of dials and of aliases.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

class DzNumericProperty;

namespace openhost {

class LoadReport;

/// What an alias stands for is known only when everything is there, so its value waits until then.
class AliasValues {
public:
    void set(DzNumericProperty& property, double value);
    /// 0 says nothing: other programs write that of every alias, whatever it shows.
    void setAlias(DzNumericProperty& alias, double value);

    /// Gives the aliases' values to what they stand for. Where the file sets that itself, that counts.
    void apply(LoadReport& report);

private:
    struct Waiting {
        DzNumericProperty* alias;
        double value;
    };

    std::unordered_map<const DzNumericProperty*, double> _set;
    std::vector<Waiting> _waiting;
};

} // namespace openhost
