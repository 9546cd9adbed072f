// What a load meets, told when that is of use.
// SPDX-License-Identifier: MIT

#include "load_report.h"

#include "app/current_attendant.h"
#include "app/texts.h"
#include "base/counted.h"
#include "base/file_failure.h"
#include "dson/reader.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "scene/scene_limits.h"

#include <algorithm>

#include <QStringList>

#include <fmt/format.h>

namespace openhost {

namespace {

QStringList ToList(const std::set<std::string>& texts)
{
    QStringList list;
    for (const std::string& text : texts)
        list.append(ToQ(text));
    return list;
}

} // namespace

std::string Examples(const std::vector<std::string>& texts)
{
    constexpr std::size_t most = 3;
    std::vector<std::string> shown;
    for (const std::string& text : texts)
        if (shown.size() < most && !text.empty() &&
            std::find(shown.begin(), shown.end(), text) == shown.end())
            shown.push_back(text);
    if (shown.empty())
        return {};
    const std::string last = std::move(shown.back());
    shown.pop_back();
    return fmt::format(", such as {}{}{}", fmt::join(shown, ", "), shown.empty() ? "" : " and ", last);
}

std::string TellCutPaths(const std::vector<std::string>& names)
{
    return fmt::format("{} deeper than {} groups in each other and {} left in the last of them{}",
                       base::Counted(names.size(), "dial lies", "dials lie"), deepestGroups,
                       names.size() == 1 ? "is" : "are", Examples(names));
}

void LoadReport::warn(const std::string& what)
{
    _diagnostics.push_back({base::Severity::Warning, _file, {}, what});
}

void LoadReport::warnLeftOut(const std::string& what)
{
    warn(what);
    tellLeftOut(ToQ(what));
}

void LoadReport::tellLogged(const std::string& what) const
{
    tellLeftOut(ToQ(what));
}

void LoadReport::warnLeftOut(const base::Error& error, const std::filesystem::path& file)
{
    _diagnostics.push_back(base::FailureOfFile(base::Severity::Warning, file.string(), error.what()));
    tellLeftOut(QString::fromUtf8(error.what()));
}

void LoadReport::tellLeftOut(const QString& what) const
{
    emit Events().contentLeftOut(ToQ(_file), what);
}

void LoadReport::tell(const std::vector<std::string>& leftOut, bool isEmpty)
{
    sumUp(leftOut);
    handOver(isEmpty);
    if (!_missing.empty())
        CurrentAttendant().tellMissingFiles(ToList(_missing));
    if (!_duplicates.empty())
        CurrentAttendant().tellDuplicateFormulas(ToList(_duplicates));
}

void LoadReport::sumUp(const std::vector<std::string>& leftOut)
{
    if (_missing.size() == 1)
        warnLeftOut(fmt::format("{} is in no content library", *_missing.begin()));
    else if (!_missing.empty())
        warnLeftOut(fmt::format("{} files are in no content library, such as {}", _missing.size(),
                                *_missing.begin()));
    if (!_replaced.empty())
        warn(base::Counted(_replaced.size(),
                           "file is in no content library, and the dial of its name is turned",
                           "files are in no content library, and the dials of their names are turned") +
             ", such as for " + *_replaced.begin());
    if (!_homeless.empty())
        warnLeftOut(base::Counted(_homeless.size(),
                                  "shape or control is set on what is not there and is left out",
                                  "shapes and controls are set on what is not there and are left out") +
                    Examples(_homeless));
    for (const std::string& guess : _guessedParents)
        warn(fmt::format(
            "shapes and controls are set on what is not there: {}, the geometry of which is left out",
            guess));
    sumUpDials();
    sumUpNodes();
    sumUpUnshown();
    if (!leftOut.empty())
        warnLeftOut(fmt::format("left out: {}", fmt::join(leftOut, ", ")));
    if (!_duplicates.empty())
        warn(fmt::format("formulas drive {} in the same way more than once, such as {}",
                         base::Counted(_duplicates.size(), "property", "properties"), *_duplicates.begin()));
}

void LoadReport::sumUpDials()
{
    if (!_absent.empty())
        warnLeftOut(base::Counted(_absent.size(), "shape or control is not in its file and is left out",
                                  "shapes and controls are not in their files and are left out") +
                    Examples(_absent));
    if (!_withoutUrl.empty())
        warnLeftOut(base::Counted(_withoutUrl.size(),
                                  "modifier does not say what it is of and is kept for saving only",
                                  "modifiers do not say what they are of and are kept for saving only") +
                    Examples(_withoutUrl));
    if (!_repeatedDials.empty())
        warn(base::Counted(_repeatedDials.size(), "dial is set once more, and the last value counts",
                           "dials are set once more, and the last values count") +
             Examples(_repeatedDials));
}

void LoadReport::sumUpNodes()
{
    if (!_otherGeometries.empty())
        warnLeftOut(base::Counted(_otherGeometries.size(),
                                  "geometry is not its node's, which has that of its definition",
                                  "geometries are not their nodes', which have those of their definitions") +
                    Examples(_otherGeometries));
    if (!_loneBones.empty())
        warn(base::Counted(_loneBones.size(), "bone hangs on no figure and is a node by itself",
                           "bones hang on no figure and are nodes by themselves") +
             Examples(_loneBones));
    if (!_repeatedBones.empty())
        warnLeftOut(base::Counted(_repeatedBones.size(),
                                  "bone is listed once more and counts as it was first",
                                  "bones are listed once more and count as they were first") +
                    Examples(_repeatedBones));
    if (!_strayBones.empty())
        warn(base::Counted(_strayBones.size(),
                           "bone hangs on no figure and is given to the only one that lacks it",
                           "bones hang on no figure and are given to the only ones that lack them") +
             Examples(_strayBones));
    if (!_unknownBones.empty())
        warnLeftOut(base::Counted(_unknownBones.size(), "bone is none that its figure has and is left out",
                                  "bones are none that their figures have and are left out") +
                    Examples(_unknownBones));
    if (!_unlistedBones.empty())
        warn(base::Counted(_unlistedBones.size(), "bone is not listed and is taken from the figure",
                           "bones are not listed and are taken from the figures") +
             Examples({_unlistedBones.begin(), _unlistedBones.end()}));
    if (!_withoutParents.empty())
        warnLeftOut(base::Counted(_withoutParents.size(),
                                  "node hangs on nothing that is there and is at the root",
                                  "nodes hang on nothing that is there and are at the root") +
                    Examples(_withoutParents));
}

void LoadReport::sumUpUnshown()
{
    if (!_furtherGeometries.empty())
        warnLeftOut(
            base::Counted(_furtherGeometries.size(),
                          "geometry is not the first of its node and is kept for saving only",
                          "geometries are not the first of their nodes and are kept for saving only") +
            Examples(_furtherGeometries));
    if (!_withoutMesh.empty())
        warnLeftOut(
            base::Counted(_withoutMesh.size(),
                          "geometry is on a bone or on a node without a mesh and is kept for saving only",
                          "geometries are on bones or on nodes without meshes and are kept for saving only") +
            Examples(_withoutMesh));
    if (!_repeating.empty())
        warnLeftOut(base::Counted(_repeating.size(),
                                  "node repeats another, which is not drawn, and is kept for saving only",
                                  "nodes repeat others, which is not drawn, and are kept for saving only") +
                    Examples(_repeating));
}

void LoadReport::handOver(bool isEmpty)
{
    for (base::Diagnostic& diagnostic : _diagnostics) {
        if (isEmpty)
            diagnostic.severity = base::Severity::Error;
        Report(diagnostic);
    }
    _diagnostics.clear();
}

} // namespace openhost
