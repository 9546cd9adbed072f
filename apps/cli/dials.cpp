// The dials of a figure: listing them, finding one by what the user calls it, setting it.
// SPDX-License-Identifier: MIT

#include "dials.h"

#include "base/spelling.h"
#include "command.h"
#include "dzbone.h"
#include "dzmodifier.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "openhost/idle_aliases.h"
#include "option_words.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include <fmt/format.h>

namespace cli {

namespace {

void AppendDials(std::vector<Dial>& dials, const DzElement& element, DzModifier* modifier, const DzNode& node)
{
    // A morph has one dial, and users know it by the morph's name.
    const bool isMorph = qobject_cast<const DzMorph*>(modifier) != nullptr;
    for (DzPropertyListIterator properties = element.propertyListIterator(); properties.hasNext();) {
        auto* const property = qobject_cast<DzNumericProperty*>(properties.next());
        if (property)
            dials.push_back({property, modifier, &node,
                             (isMorph ? modifier->getName() : property->getName()).toStdString(),
                             property->getLabel().toStdString()});
    }
}

/// Names have prefixes and suffixes that nobody types, so the best part counts; the rest decides between
/// equals.
using Unlikeness = std::pair<std::size_t, std::size_t>;

Unlikeness CompareNames(const std::string& wanted, const std::string& candidate)
{
    const std::string folded = Folded(candidate);
    return {base::EditDistance(wanted, folded, true), base::EditDistance(wanted, folded, false)};
}

std::string ClosestNames(const std::vector<Dial>& dials, const std::string& name)
{
    constexpr std::size_t shown = 3;
    const std::string wanted = Folded(name);
    std::vector<std::pair<Unlikeness, std::string>> ranked;
    for (const Dial& dial : dials)
        ranked.emplace_back(std::min(CompareNames(wanted, dial.name), CompareNames(wanted, dial.label)),
                            dial.name);
    std::sort(ranked.begin(), ranked.end());
    ranked.erase(std::unique(ranked.begin(), ranked.end()), ranked.end());
    std::string text;
    for (std::size_t i = 0; i < std::min(shown, ranked.size()); ++i)
        text += fmt::format("{}\"{}\"", i == 0 ? "" : ", ", ranked[i].second);
    return text;
}

template <class Match>
std::vector<const Dial*> Matching(const std::vector<Dial>& dials, Match match)
{
    std::vector<const Dial*> found;
    for (const Dial& dial : dials)
        if (match(dial))
            found.push_back(&dial);
    return found;
}

/// An alias mostly has the label of what it stands for, which is no other dial.
std::vector<const Dial*> WithoutAliases(const std::vector<const Dial*>& dials)
{
    std::vector<const Dial*> others;
    std::copy_if(dials.begin(), dials.end(), std::back_inserter(others),
                 [](const Dial* dial) { return !IsAlias(*dial); });
    return others.empty() ? dials : others;
}

/// In the order of the ways of naming a dial; names come before labels, exact spelling before any other.
const Dial* TryFindDial(const std::vector<Dial>& dials, const std::string& name)
{
    const std::string folded = Folded(name);
    for (const bool ignoresCase : {false, true}) {
        const auto equals = [&](const std::string& text) {
            return ignoresCase ? Folded(text) == folded : text == name;
        };
        for (const bool ofModifier : {true, false}) {
            const auto byName = Matching(dials, [&](const Dial& dial) {
                return (dial.modifier != nullptr) == ofModifier && equals(dial.name);
            });
            if (!byName.empty())
                return WithoutAliases(byName).front();
        }
        const auto byLabel =
            WithoutAliases(Matching(dials, [&](const Dial& dial) { return equals(dial.label); }));
        const auto isAnother = [&](const Dial* dial) { return &TargetOf(*dial) != &TargetOf(*byLabel[0]); };
        const auto another = std::find_if(byLabel.begin(), byLabel.end(), isAnother);
        if (another != byLabel.end())
            throw std::runtime_error(fmt::format("several dials are labelled \"{}\": \"{}\" and \"{}\"", name,
                                                 byLabel[0]->name, (*another)->name));
        if (!byLabel.empty())
            return byLabel.front();
    }
    return nullptr;
}

} // namespace

std::string Folded(const std::string& text)
{
    return QString::fromStdString(text).toCaseFolded().toStdString();
}

std::vector<Dial> DialsOf(const DzNode& node)
{
    std::vector<Dial> dials;
    if (const DzObject* const object = node.getObject())
        for (DzModifierIterator modifiers = object->modifierIterator(); modifiers.hasNext();) {
            DzModifier* const modifier = modifiers.next();
            AppendDials(dials, *modifier, modifier, node);
        }
    AppendDials(dials, node, nullptr, node);
    return dials;
}

std::vector<Dial> BoneDials(const DzNode& node)
{
    std::vector<Dial> dials;
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node))
        for (const DzBone* const bone : skeleton->bones())
            AppendDials(dials, *bone, nullptr, *bone);
    dials.erase(std::remove_if(dials.begin(), dials.end(),
                               [](const Dial& dial) { return !dial.property->isUserProperty(); }),
                dials.end());
    return dials;
}

std::vector<Dial> OwnDials(const DzNode& node)
{
    const DzNode plain;
    std::vector<Dial> dials = DialsOf(node);
    dials.erase(std::remove_if(dials.begin(), dials.end(),
                               [&](const Dial& dial) {
                                   return dial.property->isHidden() ||
                                          (!dial.modifier && plain.findProperty(dial.property->getName()));
                               }),
                dials.end());
    return dials;
}

bool IsAtDefault(const Dial& dial)
{
    return dial.property->getDoubleValue() == TargetOf(dial).getDoubleDefaultValue();
}

DzNumericProperty& TargetOf(const Dial& dial)
{
    DzNumericProperty* end = dial.property;
    while (auto* const target = qobject_cast<DzNumericProperty*>(end->getAliasTarget()))
        end = target;
    return *end;
}

bool IsAlias(const Dial& dial)
{
    return dial.property->getAliasTarget() != nullptr;
}

std::string NameOf(const DzNumericProperty& property)
{
    const DzElement* const owner = property.getOwner();
    if (const auto* const morph = qobject_cast<const DzMorph*>(owner))
        return morph->getName().toStdString();
    const std::string name = property.getName().toStdString();
    return qobject_cast<const DzBone*>(owner) ? fmt::format("{} of {}", name, owner->getName().toStdString())
                                              : name;
}

Dial FindDial(const std::vector<const DzNode*>& nodes, const std::string& name)
{
    std::vector<Dial> all;
    std::string labels;
    for (const DzNode* const node : nodes) {
        for (const std::vector<Dial>& dials : {DialsOf(*node), BoneDials(*node)}) {
            if (const Dial* const dial = TryFindDial(dials, name))
                return *dial;
            all.insert(all.end(), dials.begin(), dials.end());
        }
        labels += fmt::format("{}\"{}\"", labels.empty() ? "" : ", ", node->getLabel().toStdString());
    }
    if (all.empty())
        throw UnknownDial(fmt::format("no dial \"{}\": nothing loaded has dials", name));
    throw UnknownDial(
        fmt::format("{} has no dial \"{}\"; the closest are {}", labels, name, ClosestNames(all, name)));
}

Dial FindDial(const DzNode& node, const std::string& name)
{
    return FindDial(std::vector<const DzNode*>{&node}, name);
}

void TurnDial(const Dial& dial, const NameValue& wanted, base::Diagnostics& diagnostics)
{
    const std::string argument = fmt::format("{} {}={}", OptionWord("--dial"), wanted.name, wanted.value);
    const DzNumericProperty& target = TargetOf(dial);
    if (const std::string why = openhost::WhyIdle(target); !why.empty())
        throw std::runtime_error(fmt::format("{} turns nothing: \"{}\" {}", argument, NameOf(target), why));
    dial.property->setDoubleValue(wanted.value);
    const auto tell = [&](const std::string& what) {
        diagnostics.push_back({base::Severity::Warning, {}, {}, argument + ' ' + what});
    };
    if (IsAlias(dial))
        tell(fmt::format("turns \"{}\", of which \"{}\" is an alias", NameOf(target), dial.name));
    // Limits are of single precision, where 0.7 is a little less.
    const auto value = static_cast<float>(wanted.value);
    const auto least = static_cast<float>(target.getDoubleMin()),
               most = static_cast<float>(target.getDoubleMax());
    if (target.isClamped() && (value < least || value > most))
        tell(fmt::format("is beyond the limits of \"{}\", {} to {}, and is held within them", NameOf(target),
                         least, most));
}

namespace {

std::string_view Trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == text.npos ? std::string_view()
                              : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

/// A sign in front may be a plus.
bool ParseNumber(std::string_view text, double& number)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(number);
}

std::string WhyNoNumber(std::string_view text)
{
    std::string withPoint(text);
    std::replace(withPoint.begin(), withPoint.end(), ',', '.');
    double number = 0.0;
    return withPoint != text && ParseNumber(withPoint, number)
               ? fmt::format("has a comma in its number, which takes a point: {}", withPoint)
               : "has no number behind the equals sign";
}

} // namespace

NameValue ParseNameValue(const std::string& text)
{
    const std::size_t equals = text.rfind('=');
    if (equals == text.npos || equals == 0)
        throw UsageError(fmt::format("\"{}\" is not of the form NAME=VALUE", text));
    NameValue parsed;
    parsed.name = text.substr(0, equals);
    std::string_view number = Trimmed(std::string_view(text).substr(equals + 1));
    const bool isPercentage = !number.empty() && number.back() == '%';
    if (isPercentage)
        number = Trimmed(number.substr(0, number.size() - 1));
    if (!ParseNumber(number, parsed.value))
        throw UsageError(fmt::format("\"{}\" {}", text, WhyNoNumber(number)));
    if (isPercentage)
        parsed.value /= 100.0; // divided, so that 150 % is as 1.5
    return parsed;
}

} // namespace cli
