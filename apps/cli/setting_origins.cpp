// Which values come from settings rather than from whoever gave the command.
// SPDX-License-Identifier: MIT

#include "setting_origins.h"

#include <map>

namespace cli {

namespace {

std::map<std::string, std::string>& Origins()
{
    static std::map<std::string, std::string> origins;
    return origins;
}

} // namespace

void NoteOrigin(const std::string& value, const std::string& origin)
{
    Origins()[value] = origin;
}

std::string OriginOf(const std::string& value)
{
    const auto origin = Origins().find(value);
    return origin == Origins().end() ? std::string() : " (" + origin->second + ")";
}

} // namespace cli
