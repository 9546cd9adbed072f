// The table of limits against the constants in the headers.
// SPDX-License-Identifier: MIT

#include "base/limits.h"
#include "dson/limits.h"
#include "geometry/limits.h"
#include "host/script/script_limits.h"
#include "scene/scene_limits.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <sstream>

namespace {

std::string TextOf(const char* file)
{
    const std::ifstream stream(std::string(GANTREL_SOURCE_DIR "/") + file);
    std::ostringstream text;
    text << stream.rdbuf();
    EXPECT_FALSE(text.str().empty()) << file;
    return text.str();
}

/// By the first part of what the expression finds, the second if it has one.
std::map<std::string, std::string> Found(const std::string& text, const std::regex& expression)
{
    std::map<std::string, std::string> found;
    for (std::sregex_iterator next(text.begin(), text.end(), expression), end; next != end; ++next)
        found[(*next)[1]] = next->size() > 2 ? (*next)[2].str() : std::string();
    return found;
}

} // namespace

TEST(Limits, in_the_table_are_those_of_the_code)
{
    const std::map<std::string, double> constants{
        {"mostLinks", base::mostLinks},
        {"longestName", base::longestName},
        {"longestJournal", base::longestJournal},
        {"longestTable", base::longestTable},
        {"farthestPosition", geometry::farthestPosition},
        {"largestPicture", geometry::largestPicture},
        {"mostCorners", geometry::mostCorners},
        {"mostCutCorners", geometry::mostCutCorners},
        {"mostObjVertices", geometry::mostObjVertices},
        {"maxTextSize", dson::maxTextSize},
        {"memoryShare", dson::memoryShare},
        {"freelyExpanded", dson::freelyExpanded},
        {"mostExpansion", dson::mostExpansion},
        {"deepestNesting", dson::deepestNesting},
        {"deepestDetailLevel", dson::deepestDetailLevel},
        {"mostDetailFaces", dson::mostDetailFaces},
        {"mostNestedScripts", openhost::mostNestedScripts},
        {"mostIncludedScripts", openhost::mostIncludedScripts},
        {"longestScriptArray", openhost::longestScriptArray},
        {"deepestScriptResult", openhost::deepestScriptResult},
        {"deepestSettings", openhost::deepestSettings},
        {"deepestGroups", openhost::deepestGroups},
    };
    std::map<std::string, double> inTable;
    // The name first, as in all other places.
    const std::string named =
        std::regex_replace(TextOf("docs/limits.md"), std::regex("\\| (\\d+) \\| `(\\w+)` \\|"), "<$2 $1>");
    for (const auto& [name, number] : Found(named, std::regex("<(\\w+) (\\d+)>")))
        inTable[name] = std::stod(number);
    EXPECT_EQ(inTable, constants);
}

TEST(Limits, of_every_header_stand_in_the_table)
{
    const std::string table = TextOf("docs/limits.md");
    for (const char* const header :
         {"base/include/base/limits.h", "geometry/include/geometry/limits.h", "dson/include/dson/limits.h",
          "host/scene/include/scene/scene_limits.h", "host/script/script_limits.h"}) {
        const auto names = Found(TextOf(header), std::regex("constexpr [\\w:]+ (\\w+) ="));
        EXPECT_FALSE(names.empty()) << header;
        for (const auto& [name, nothing] : names)
            EXPECT_NE(table.find("| `" + name + "` |"), table.npos) << header << ": " << name;
    }
}
