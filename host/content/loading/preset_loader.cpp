// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#include "preset_loader.h"

#include "app/current_attendant.h"
#include "app/operations.h"
#include "app/texts.h"
#include "base/counted.h"
#include "base/errors.h"
#include "dson/uri.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "load_report.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "preset_dform.h"
#include "preset_target.h"
#include "scene/changes_together.h"
#include "selection_effects.h"

#include <algorithm>
#include <vector>

#include <QPointer>
#include <QStringList>

#include <fmt/format.h>

namespace openhost {

namespace {

base::Diagnostic Warning(const dson::Document& preset, std::string what)
{
    return {base::Severity::Warning, preset.file.string(), {}, std::move(what)};
}

/// One value on its way to its dial; the dial may be gone after a question.
struct PresetValue {
    QPointer<DzNumericProperty> property;
    double value;

    /// Presets hold what the dials themselves are set to; what drives them comes on top, whatever the order.
    void apply() const
    {
        DzNumericProperty& dial = *property;
        const QString detail = dial.getName() + QLatin1Char('=') + QString::number(value);
        if (dial.isLocked() || !Allows(Operation::SetValue, detail))
            return;
        const bool isHeld = dial.isClamped();
        dial.setDoubleRawValue(isHeld ? std::clamp(value, dial.getDoubleMin(), dial.getDoubleMax()) : value);
        emit Events().sceneEdited(SceneEdit::Value, dial.getOwner());
    }

    bool isBeyondLimits() const
    {
        return property->isClamped() &&
               (value < property->getDoubleMin() || value > property->getDoubleMax());
    }
};

std::vector<PresetValue> FindValues(const dson::Document& preset, const PresetTarget& target)
{
    std::vector<PresetValue> values;
    std::vector<std::string> missing;
    const auto enter = [&](DzNumericProperty* property, double value, const std::string& url) {
        if (property)
            values.push_back({&AliasEnd(*property), value});
        else
            missing.push_back(url);
    };
    for (const dson::AnimatedValue& entry : preset.animations) {
        const dson::Uri uri = dson::ParseUri(entry.url);
        if (!IsOfMaterial(uri))
            enter(target.find(uri), entry.value, entry.url);
    }
    for (const dson::ModifierInstance& instance : preset.modifierInstances) {
        const std::string parent = dson::ParseUri(instance.parent).node;
        const bool isPart = FindByPath(target.node(), parent) != nullptr;
        if (instance.value && !IsEffect(preset, instance))
            enter(target.findDial(isPart ? parent : std::string(), dson::ParseUri(instance.url).id),
                  *instance.value, instance.url);
    }
    const auto tellSpellings = [&](const std::set<std::string>& names, const char* one, const char* many) {
        if (!names.empty())
            Report(Warning(
                preset,
                fmt::format("{} from those of {} in letter case alone and {} taken for them{}",
                            base::Counted(names.size(), one, many), target.node().getLabel().toStdString(),
                            names.size() == 1 ? "is" : "are", Examples({names.begin(), names.end()}))));
    };
    tellSpellings(target.otherSpellings(), "name of a node differs", "names of nodes differ");
    tellSpellings(target.otherDialSpellings(), "name of a dial differs", "names of dials differ");
    if (!missing.empty() && !values.empty())
        Report(Warning(preset,
                       fmt::format("{} of {} values {} nothing that {} has, such as {}", missing.size(),
                                   missing.size() + values.size(), missing.size() == 1 ? "names" : "name",
                                   target.node().getLabel().toStdString(), missing.front())));
    return values;
}

void SettleLimits(const dson::Document& preset, const std::vector<PresetValue>& values)
{
    QStringList labels;
    std::vector<QPointer<DzNumericProperty>> exceeded;
    for (const PresetValue& value : values) {
        if (!value.isBeyondLimits())
            continue;
        exceeded.push_back(value.property);
        labels.append(value.property->getLabel());
    }
    if (exceeded.empty())
        return;
    const bool isUnlimited = CurrentAttendant().mayExceedLimits(labels);
    for (const QPointer<DzNumericProperty>& property : exceeded)
        if (property && isUnlimited)
            property->setIsClamped(false);
    const QString outcome = isUnlimited ? QStringLiteral("limits are switched off for values beyond them: ")
                                        : QStringLiteral("values beyond the limits stop at them: ");
    Report(Warning(preset, (outcome + labels.join(QLatin1String(", "))).toStdString()));
}

/// There is a value for something else than a material.
bool HoldsValues(const dson::Document& preset)
{
    return std::any_of(
               preset.animations.begin(), preset.animations.end(),
               [](const dson::AnimatedValue& entry) { return !IsOfMaterial(dson::ParseUri(entry.url)); }) ||
           std::any_of(preset.modifierInstances.begin(), preset.modifierInstances.end(),
                       [&preset](const dson::ModifierInstance& instance) {
                           return instance.value || IsEffect(preset, instance);
                       });
}

/// What of a preset has no bearing on shapes and poses, such as "3 materials".
std::vector<std::string> LeftOutOf(const dson::Document& preset)
{
    std::vector<std::string> parts = preset.leftOut;
    const auto count = std::count_if(
        preset.animations.begin(), preset.animations.end(),
        [](const dson::AnimatedValue& entry) { return IsOfMaterial(dson::ParseUri(entry.url)); });
    if (count > 0)
        parts.push_back(base::Counted(std::size_t(count), "value of materials", "values of materials"));
    return parts;
}

DzNode& SelectedNode(const dson::Document& document)
{
    DzNode* const selected = dzScene->getPrimarySelection();
    if (!selected)
        throw base::Error(document.file.string() + ": nothing is selected to apply the preset to");
    return *selected;
}

/// False when it was cancelled.
bool ApplyDFormPreset(const dson::Document& document)
{
    DFormLoadOptions options = ProposedDFormOptions(document);
    if (!CurrentAttendant().chooseDFormOptions(options))
        return false;
    ApplyDForm(document, FigureOf(SelectedNode(document)), options);
    return true;
}

/// Returns how many there are.
int ApplyValues(const dson::Document& preset, DzNode& node)
{
    const PresetTarget target(FigureOf(node));
    if (const std::vector<std::string> others = LeftOutOf(preset); !others.empty())
        Report(Warning(preset, fmt::format("left out: {}", fmt::join(others, ", "))));
    const std::vector<PresetValue> values = FindValues(preset, target);
    SettleLimits(preset, values);
    const ChangesTogether together;
    for (const PresetValue& value : values)
        if (value.property)
            value.apply();
    return static_cast<int>(values.size());
}

/// Returns how many there are.
int ApplyEffects(const dson::Document& preset, DzNode& node)
{
    int count = 0;
    for (const dson::ModifierInstance& instance : preset.modifierInstances)
        if (IsEffect(preset, instance))
            count += ApplyEffectTo(FigureOf(node), preset, instance);
    return count;
}

bool ApplyPreset(const dson::Document& document)
{
    const QString label = SelectedNode(document).getLabel();
    if (HoldsDForm(document) && !ApplyDFormPreset(document))
        return false;
    const int applied =
        ApplyValues(document, SelectedNode(document)) + ApplyEffects(document, SelectedNode(document));
    if (!HoldsDForm(document) && applied == 0)
        throw base::Error(
            fmt::format("{}: names nothing that {} has", document.file.string(), label.toStdString()));
    return true;
}

void RefuseEmptyPreset(const dson::Document& document)
{
    if (HoldsDForm(document) || HoldsValues(document))
        return;
    const std::vector<std::string> others = LeftOutOf(document);
    throw base::FormatError(
        "{}: holds nothing to load into a scene{}", document.file.string(),
        others.empty() ? std::string() : fmt::format(" but what is left out: {}", fmt::join(others, ", ")));
}

} // namespace

bool IsPreset(const dson::Document& document)
{
    const bool hasValues = HoldsDForm(document) || !document.animations.empty();
    return document.nodeInstances.empty() || (hasValues && document.info.type.compare(0, 7, "preset_") == 0);
}

bool LoadPreset(const dson::Document& document)
{
    RefuseEmptyPreset(document);
    return ApplyPreset(document);
}

} // namespace openhost
