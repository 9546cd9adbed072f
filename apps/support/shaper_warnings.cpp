// What besides its shapes gets from a figure into converted morphs.
// SPDX-License-Identifier: MIT

#include "shaper_warnings.h"

namespace app {

base::Diagnostics ShaperWarnings(ConvertedFigure role, const std::string& file, const std::string& figure,
                                 const std::vector<std::string>& labels)
{
    const std::string effect = role == ConvertedFigure::Source
                                   ? "and the new morphs hold what it does"
                                   : "and the new morphs may hold some of what it does";
    base::Diagnostics told;
    for (const std::string& label : labels)
        told.push_back({base::Severity::Warning, file, figure,
                        "the modifier \"" + label + "\" moves the mesh, " + effect});
    return told;
}

} // namespace app
