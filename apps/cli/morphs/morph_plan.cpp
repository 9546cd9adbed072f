// What single morphs of a figure are to be called on another.
// SPDX-License-Identifier: MIT

#include "morphs/morph_plan.h"

#include "base/counted.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "openhost/morph_names.h"

#include <set>

#include <fmt/format.h>

#include <QString>

namespace cli {

namespace {

QString ToQ(const std::string& text)
{
    return QString::fromStdString(text);
}

/// Why the morph cannot have the name; empty when it can.
/// @param replaced  receives the target's morph that is to go
std::string WhyNotFree(const openhost::NameConflict& conflict, const ReplaceableFiles& replaceable,
                       std::vector<DzMorph*>& replaced)
{
    if (!conflict.isOwnFile)
        return conflict.text() + "; --suffix gives another name";
    if (!replaceable.has(conflict.file.toStdString()))
        return conflict.text() + "; --overwrite replaces it";
    if (conflict.morph && conflict.morph->getValueControl()->getValue() != 0.0f)
        return conflict.text() + ", and the target wears it; --suffix gives another name";
    if (conflict.morph)
        replaced.push_back(conflict.morph);
    return std::string();
}

std::set<QString> LabelsOf(const DzNode& figure)
{
    std::set<QString> labels;
    for (const Dial& dial : DialsOf(figure))
        labels.insert(ToQ(dial.label));
    return labels;
}

void TellOfSameLabels(const std::vector<PlannedMorph>& planned, const DzNode& target,
                      const MorphConversionRequest& request, base::Diagnostics& diagnostics)
{
    const std::set<QString> labels = LabelsOf(target);
    std::vector<std::string> taken;
    for (const PlannedMorph& morph : planned)
        if (labels.count(ToQ(morph.source.label)))
            taken.push_back(morph.source.label);
    if (!taken.empty())
        diagnostics.push_back({base::Severity::Warning, FileText(request.target),
                               target.getLabel().toStdString(),
                               fmt::format("{} the label of another dial of the figure: \"{}\"{}",
                                           base::Counted(taken.size(), "new morph has", "new morphs have"),
                                           taken.front(), taken.size() > 1 ? ", and so on" : "")});
}

} // namespace

namespace {

/// Names of one file are spelled in several ways.
std::string Place(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path place = std::filesystem::weakly_canonical(path, error);
    return FileText(error ? path : place);
}

} // namespace

ReplaceableFiles::ReplaceableFiles(const MorphConversionRequest& request) : _areAll(request.mayOverwrite)
{
    for (const std::filesystem::path& file : request.ownFiles)
        _own.insert(Place(file));
}

bool ReplaceableFiles::has(const std::filesystem::path& file) const
{
    return _areAll || (!_own.empty() && _own.count(Place(file)) > 0);
}

std::string GroupFor(const std::string& sourceGroup, const std::string& prefix)
{
    std::string group = prefix + (prefix.empty() ? "" : "/") + sourceGroup;
    std::string clean = "/";
    for (const char c : group)
        if (c != '/' || clean.back() != '/')
            clean += c;
    if (clean.size() > 1 && clean.back() == '/')
        clean.pop_back();
    return clean;
}

std::vector<PlannedMorph> PlanMorphs(const std::vector<ShapeDial>& chosen, DzNode& target,
                                     const MorphConversionRequest& request,
                                     std::vector<SkippedMorph>& skipped, base::Diagnostics& diagnostics)
{
    const openhost::MorphFolder folder{ToQ(request.save.contentDirectory), ToQ(request.save.vendor),
                                       ToQ(request.save.product)};
    const openhost::TakenNames taken(target);
    std::vector<PlannedMorph> planned;
    std::vector<DzMorph*> replaced;
    const ReplaceableFiles replaceable(request);
    std::set<std::string> names;
    for (const ShapeDial& source : chosen) {
        const std::string name = source.name + request.suffix;
        std::string reason;
        if (openhost::IsBlankName(ToQ(name)))
            reason = "its name is blank; --suffix gives it one";
        else if (!names.insert(openhost::MorphNameKey(ToQ(name))).second)
            reason = fmt::format("another one of the morphs is to be called \"{}\" too", name);
        else if (const auto conflict = taken.findConflict(ToQ(name), &folder))
            reason = WhyNotFree(*conflict, replaceable, replaced);
        if (reason.empty())
            planned.push_back({source, name, taken.fileFor(ToQ(name), folder).toStdString()});
        else
            skipped.push_back({source.name, reason});
    }
    for (DzMorph* const morph : replaced)
        target.getObject()->removeModifier(morph);
    TellOfSameLabels(planned, target, request, diagnostics);
    return planned;
}

} // namespace cli
