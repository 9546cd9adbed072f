// Names that no file can have everywhere.
// SPDX-License-Identifier: MIT

#include "base/device_name.h"

#include "base/ascii.h"

#include <algorithm>

namespace base {

namespace {

bool IsAnyOf(const std::string& text, std::initializer_list<const char*> all)
{
    return std::find(all.begin(), all.end(), text) != all.end();
}

} // namespace

bool IsDeviceName(const std::string& name)
{
    std::string stem = name.substr(0, name.find('.'));
    stem.erase(stem.find_last_not_of(' ') + 1); // blanks before the full stop are dropped there
    std::transform(stem.begin(), stem.end(), stem.begin(), ToLowerAscii);
    if (IsAnyOf(stem, {"con", "prn", "aux", "nul"}))
        return true;
    const std::string number = stem.size() > 3 ? stem.substr(3) : std::string();
    const bool isNumber = (number.size() == 1 && number[0] >= '0' && number[0] <= '9') ||
                          IsAnyOf(number, {"\u00B9", "\u00B2", "\u00B3"}); // raised digits count, too
    return isNumber && IsAnyOf(stem.substr(0, 3), {"com", "lpt"});
}

} // namespace base
