// Which of a figure's morphs are meant.
// SPDX-License-Identifier: MIT

#include "morphs/morph_choice.h"

#include "base/counted.h"
#include "base/errors.h"
#include "base/limits.h"
#include "dials.h"
#include "dson/file_text.h"
#include "dson/reader.h"
#include "dzcontroller.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "morph_files.h"
#include "openhost/missing_shapes.h"
#include "standard_streams.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include <QString>

#include <fmt/format.h>

namespace cli {

namespace {

bool IsHidden(const ShapeDial& dial)
{
    return dial.dial->isHidden();
}

bool HasWildcard(const std::string& pattern)
{
    return pattern.find_first_of("*?") != pattern.npos;
}

bool Fits(const ShapeDial& dial, const std::string& pattern)
{
    return FitsPattern(dial.name, pattern) || FitsPattern(dial.label, pattern);
}

struct ListedName {
    std::size_t line;
    std::string name;
};

std::string Trimmed(const std::string& text)
{
    const char* const blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == text.npos ? std::string() : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::vector<ListedName> ReadList(const std::filesystem::path& file)
{
    std::string text = IsStandardStream(file) ? ReadStandardInput(base::longestTable) : dson::ReadBytes(file);
    const std::string byteOrderMark = "\xEF\xBB\xBF";
    if (text.compare(0, byteOrderMark.size(), byteOrderMark) == 0)
        text.erase(0, byteOrderMark.size());
    std::vector<ListedName> names;
    std::size_t line = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string name = Trimmed(text.substr(at, end - at));
        at = end + 1;
        ++line;
        if (name.empty() || name.front() == '#')
            continue;
        if (QString::fromStdString(name).toStdString() != name)
            throw base::FormatError("{}:{}: the name is not UTF-8", InputText(file), line);
        names.push_back({line, name});
    }
    if (names.empty())
        throw base::FormatError("{}: names no morphs", InputText(file));
    return names;
}

/// Dials by what users call them: names come before labels, exact spelling before any other.
class DialsByName {
public:
    explicit DialsByName(const std::vector<ShapeDial>& all)
    {
        // The first of several counts.
        for (const auto text : {&ShapeDial::name, &ShapeDial::label})
            for (const ShapeDial& dial : all) {
                _exact.emplace(dial.*text, &dial);
                _folded.emplace(Folded(dial.*text), &dial);
            }
    }

    /// Null for none.
    const ShapeDial* find(const std::string& name) const
    {
        if (const auto found = _exact.find(name); found != _exact.end())
            return found->second;
        const auto found = _folded.find(Folded(name));
        return found == _folded.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<std::string, const ShapeDial*> _exact, _folded;
};

/// Why a figure lacks what somebody thinks it has.
class Absences {
public:
    Absences(const DzNode& figure, const base::Diagnostics& diagnostics) : _figure(figure)
    {
        for (const base::Diagnostic& one : diagnostics)
            if (one.severity != base::Severity::Note && one.asset.empty())
                _lostFiles.emplace(Folded(std::filesystem::path(one.file).stem().string()), &one);
    }

    std::string why(const std::string& name) const
    {
        if (const auto lost = openhost::WhyShapeIsMissing(_figure, QString::fromStdString(name)))
            return base::ToLine(*lost);
        // What a damaged file defines is not known; most are called as their morph is.
        if (const auto file = _lostFiles.find(Folded(name)); file != _lostFiles.end())
            return base::ToLine(*file->second);
        return "the figure has no morph of this name";
    }

private:
    const DzNode& _figure;
    std::unordered_map<std::string, const base::Diagnostic*> _lostFiles; ///< by name
};

struct Fit {
    std::set<const ShapeDial*> dials;
    std::vector<MissingMorph> missing;
};

std::string Quoted(const DzNode& figure)
{
    return fmt::format("\"{}\"", figure.getLabel().toStdString());
}

Fit NamedIn(const std::filesystem::path& file, const std::vector<ShapeDial>& all, const DzNode& figure,
            const Absences& absences)
{
    Fit fit;
    std::vector<ListedName> unknown;
    const DialsByName dials(all);
    for (const ListedName& listed : ReadList(file)) {
        if (const ShapeDial* const dial = dials.find(listed.name))
            fit.dials.insert(dial);
        else
            unknown.push_back(listed);
    }
    if (!fit.dials.empty()) {
        for (const ListedName& listed : unknown)
            fit.missing.push_back({listed.name, fmt::format("{}:{}: {}", InputText(file), listed.line,
                                                            absences.why(listed.name))});
        return fit;
    }
    const std::string others =
        unknown.size() == 1 ? std::string()
                            : fmt::format("; the same of {} behind it",
                                          base::Counted(unknown.size() - 1, "further line", "further lines"));
    throw base::FormatError("{}:{}: {} has no morph \"{}\"{}", InputText(file), unknown.front().line,
                            Quoted(figure), unknown.front().name, others);
}

Fit Fitting(const MorphChoice& choice, const std::vector<ShapeDial>& all, const DzNode& figure,
            const Absences& absences)
{
    Fit fit;
    for (const std::string& pattern : choice.patterns) {
        const bool takesHidden = choice.takesHidden || !HasWildcard(pattern);
        bool isUsed = false;
        for (const ShapeDial& dial : all) {
            if (!Fits(dial, pattern) || (IsHidden(dial) && !takesHidden))
                continue;
            fit.dials.insert(&dial);
            isUsed = true;
        }
        if (!isUsed)
            fit.missing.push_back({pattern, HasWildcard(pattern) ? "the pattern fits no morph of the figure"
                                                                 : absences.why(pattern)});
    }
    if (fit.dials.empty())
        throw std::runtime_error(
            fmt::format("--morphs \"{}\" fits no morph of {}", fit.missing.front().name, Quoted(figure)));
    return fit;
}

void CollectDriven(const DzNumericProperty& dial, std::set<const DzProperty*>& seen,
                   std::vector<DzMorph*>& morphs)
{
    for (DzControllerListIterator links = dial.slaveControllerListIterator(); links.hasNext();) {
        const auto* const driven = qobject_cast<DzNumericProperty*>(links.next()->getOwner());
        if (!driven || !seen.insert(driven).second)
            continue; // dials may drive each other in a circle
        if (auto* const morph = qobject_cast<DzMorph*>(driven->getOwner()))
            morphs.push_back(morph);
        CollectDriven(*driven, seen, morphs);
    }
}

} // namespace

std::vector<DzMorph*> DrivenMorphs(const DzNumericProperty& dial)
{
    std::set<const DzProperty*> seen{&dial};
    std::vector<DzMorph*> morphs;
    CollectDriven(dial, seen, morphs);
    return morphs;
}

std::vector<ShapeDial> ShapeDialsOf(const DzNode& figure)
{
    const DzNode plain;
    std::vector<ShapeDial> dials;
    for (const Dial& dial : DialsOf(figure)) {
        auto* const morph = qobject_cast<DzMorph*>(dial.modifier);
        const bool isControl = !dial.modifier && !IsAlias(dial) &&
                               !plain.findProperty(dial.property->getName()) &&
                               !DrivenMorphs(*dial.property).empty();
        if (morph || isControl)
            dials.push_back({dial.property, morph, dial.name, dial.label});
    }
    return dials;
}

ChosenMorphs ChooseMorphs(const DzNode& figure, const MorphChoice& choice,
                          const base::Diagnostics& diagnostics)
{
    const std::vector<ShapeDial> all = ShapeDialsOf(figure);
    const Absences absences(figure, diagnostics);
    Fit fit = choice.list.empty() ? Fitting(choice, all, figure, absences)
                                  : NamedIn(choice.list, all, figure, absences);
    ChosenMorphs chosen;
    for (const ShapeDial& dial : all)
        if (fit.dials.count(&dial))
            chosen.dials.push_back(dial);
    chosen.missing = std::move(fit.missing);
    return chosen;
}

} // namespace cli
