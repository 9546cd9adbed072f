// Numeric properties: raw values, links, caching.
// SPDX-License-Identifier: MIT

#include "dznumericproperty.h"

#include "app/operations.h"
#include "dzelement.h"
#include "dznumericcontroller.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "scene/changes_together.h"
#include "scene/undo_recording.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

using Properties = std::vector<QPointer<DzNumericProperty>>;
using RawExchange = openhost::Exchange<DzNumericProperty, double, void (*)(DzNumericProperty&, double&)>;

bool IsSameToTheBit(double a, double b)
{
    return a == b && std::signbit(a) == std::signbit(b);
}

/// What has changed and is yet to be told.
struct Untold {
    int brackets = 0; ///< of ChangesTogether, in each other
    Properties changed;
    void (*tell)(const Properties& changed) = nullptr; ///< once there is something
};

Untold g_untold;

} // namespace

struct DzNumericProperty::Impl {
    double raw = 0.0;
    double defaultValue = 0.0;
    double min = 0.0;
    double max = 1.0;
    double sensitivity = 0.01;
    bool clamped = false;
    bool modulo = false;
    bool percent = false;

    double cached = 0.0;
    bool dirty = true;
    bool busy = false; ///< being evaluated
    bool cycleReported = false;
    bool untold = false; ///< is among those that have changed together
    unsigned visit = 0;  ///< the last change that reached this property

    class RawChange;

    template <class Visit>
    static void forEachDependant(const DzNumericProperty& property, const Visit& visit);
    static void mark(DzNumericProperty& changed);
    static void tell(const Properties& changed);
};

namespace {

unsigned g_lastVisit = 0;

QString FullName(const DzNumericProperty& property)
{
    const DzElement* const owner = property.getOwner();
    return owner ? owner->getName() + QLatin1Char('.') + property.getName() : property.getName();
}

/// Folded into [min, max), the maximum itself kept.
double Wrapped(double value, double min, double max)
{
    if (max <= min || (value >= min && value <= max))
        return value;
    const double width = max - min;
    return value - width * std::floor((value - min) / width);
}

} // namespace

DzNumericProperty::DzNumericProperty(const QString& name, bool canAnimate, bool isUserProperty,
                                     double defaultValue)
    : DzProperty(name, canAnimate, isUserProperty), _impl(new Impl)
{
    _impl->raw = defaultValue;
    _impl->defaultValue = defaultValue;
}

DzNumericProperty::~DzNumericProperty()
{
    dropDependants();
}

double DzNumericProperty::getDoubleValue() const
{
    return evaluate();
}
double DzNumericProperty::getDoubleValue(const DzTime&) const
{
    return evaluate();
}
double DzNumericProperty::getDoubleDefaultValue() const
{
    return _impl->defaultValue;
}
void DzNumericProperty::setDoubleDefaultValue(double value)
{
    if (value == _impl->defaultValue)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->defaultValue,
        [](DzNumericProperty& property, auto& other) {
            const auto former = property._impl->defaultValue;
            property.setDoubleDefaultValue(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->defaultValue = value;
}
double DzNumericProperty::getDoubleRawValue() const
{
    return _impl->raw;
}

class DzNumericProperty::Impl::RawChange : public RawExchange {
public:
    explicit RawChange(DzNumericProperty& property)
        : RawExchange(property, property._impl->raw, &swap, openhost::ChangeRank::Value,
                      openhost::captions::set)
    {
    }
    bool isVain() const override { return !object() || IsSameToTheBit(object()->_impl->raw, other()); }

private:
    static void swap(DzNumericProperty& property, double& other)
    {
        std::swap(property._impl->raw, other);
        property.changed();
        emit openhost::Events().sceneEdited(openhost::SceneEdit::Value, property.getOwner());
    }
};

void DzNumericProperty::setDoubleRawValue(double value)
{
    static const char kind = 0;
    if (!std::isfinite(value) || value == _impl->raw)
        return;
    if (openhost::IsRecording(getOwner()) && openhost::IsFirstOf(this, &kind))
        openhost::Record(std::make_unique<Impl::RawChange>(*this));
    _impl->raw = value;
    changed();
}

void DzNumericProperty::setDoubleValue(double value)
{
    if (isLocked() || !std::isfinite(value))
        return;
    if (openhost::IsWatched() &&
        !openhost::Allows(openhost::Operation::SetValue,
                          FullName(*this) + QLatin1Char('=') + QString::number(value)))
        return;
    if (auto* const target = qobject_cast<DzNumericProperty*>(getAliasTarget())) {
        target->setDoubleValue(value);
        return;
    }
    double raw = toKind(limited(value));
    if (!isOverridingControllers()) {
        const QList<DzController*>& list = controllers();
        evaluate(); // with all inputs, which the inverses read
        for (int i = list.size() - 1; i >= 0; --i) {
            const auto* const controller = static_cast<const DzNumericController*>(list.at(i));
            if (controller->isActive())
                raw = controller->applyInverse(raw, DzTime(0), false);
        }
    }
    const double before = _impl->raw;
    setDoubleRawValue(raw);
    if (_impl->raw != before)
        emit openhost::Events().sceneEdited(openhost::SceneEdit::Value, getOwner());
}

double DzNumericProperty::getDoubleMin() const
{
    return _impl->min;
}
double DzNumericProperty::getDoubleMax() const
{
    return _impl->max;
}

void DzNumericProperty::setDoubleMinMax(double min, double max)
{
    if (min > max)
        std::swap(min, max);
    if (min == _impl->min && max == _impl->max)
        return;
    openhost::RecordValue(
        getOwner(), *this, std::make_pair(_impl->min, _impl->max),
        [](DzNumericProperty& property, std::pair<double, double>& other) {
            const std::pair<double, double> former(property._impl->min, property._impl->max);
            property.setDoubleMinMax(other.first, other.second);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->min = min;
    _impl->max = max;
    emit minMaxChanged();
    if (_impl->clamped)
        changed();
}

bool DzNumericProperty::isClamped() const
{
    return _impl->clamped;
}

void DzNumericProperty::setIsClamped(bool onOff)
{
    if (onOff == _impl->clamped)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->clamped,
        [](DzNumericProperty& property, auto& other) {
            const auto former = property._impl->clamped;
            property.setIsClamped(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->clamped = onOff;
    changed();
}

bool DzNumericProperty::isModulo() const
{
    return _impl->modulo;
}

void DzNumericProperty::setIsModulo(bool onOff)
{
    if (onOff == _impl->modulo)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->modulo,
        [](DzNumericProperty& property, auto& other) {
            const auto former = property._impl->modulo;
            property.setIsModulo(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->modulo = onOff;
    changed();
}

bool DzNumericProperty::getDisplayAsPercent() const
{
    return _impl->percent;
}
void DzNumericProperty::setDisplayAsPercent(bool onOff)
{
    if (onOff == _impl->percent)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->percent,
        [](DzNumericProperty& property, auto& other) {
            const auto former = property._impl->percent;
            property.setDisplayAsPercent(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->percent = onOff;
}
double DzNumericProperty::sensitivity() const
{
    return _impl->sensitivity;
}
void DzNumericProperty::setDoubleSensitivity(double value)
{
    if (value == _impl->sensitivity)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->sensitivity,
        [](DzNumericProperty& property, auto& other) {
            const auto former = property._impl->sensitivity;
            property.setDoubleSensitivity(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->sensitivity = value;
}

bool DzNumericProperty::insertController(DzNumericController* controller, int index)
{
    if (!controller || controller->getOwner())
        return false;
    const QList<DzController*>& list = controllers();
    int position = index;
    if (index < 0 || index > list.size()) {
        position = list.size();
        while (!controller->isMultiplying() && position > 0 &&
               static_cast<DzNumericController*>(list.at(position - 1))->isMultiplying())
            --position;
    }
    insertControllerAt(controller, position);
    return true;
}

bool DzNumericProperty::deleteController(DzNumericController* controller)
{
    if (!controller || controller->getOwner() != this)
        return false;
    openhost::DropLink(*controller);
    return true;
}

void DzNumericProperty::inputsChanged()
{
    // Controllers and aliases are let go of while the property is being destroyed.
    if (_impl)
        changed();
}

double DzNumericProperty::toKind(double value) const
{
    return value;
}

double DzNumericProperty::limited(double value) const
{
    if (_impl->modulo)
        return Wrapped(value, _impl->min, _impl->max);
    return _impl->clamped ? std::min(std::max(value, _impl->min), _impl->max) : value;
}

double DzNumericProperty::controlled(double raw) const
{
    double value = raw;
    if (isOverridingControllers())
        return value;
    for (const DzController* controller : controllers()) {
        if (controller->isActive())
            value = static_cast<const DzNumericController*>(controller)->apply(value, DzTime(0), false);
    }
    return value;
}

void DzNumericProperty::evaluateFromInputs() const
{
    // While it is read by its own inputs, as one that is linked to itself is, the raw value counts.
    _impl->busy = true;
    double value;
    if (const auto* const target = qobject_cast<const DzNumericProperty*>(getAliasTarget()))
        value = target->_impl->dirty ? target->_impl->raw : target->_impl->cached;
    else
        value = limited(controlled(_impl->raw));
    _impl->cached = toKind(std::isfinite(value) ? value : _impl->raw);
    _impl->dirty = false;
    _impl->busy = false;
}

double DzNumericProperty::evaluate() const
{
    if (_impl->dirty && !_impl->busy && (hasControllers() || getAliasTarget()))
        collectInputs();
    if (_impl->dirty && !_impl->busy)
        evaluateFromInputs();
    return _impl->dirty ? _impl->raw : _impl->cached;
}

// A stack of its own instead of recursion: files may chain any number of properties.
void DzNumericProperty::collectInputs() const
{
    struct Frame {
        const DzNumericProperty* property;
        std::vector<const DzNumericProperty*> inputs;
        std::size_t next = 0;
    };
    const auto inputsOf = [](const DzNumericProperty* property) {
        std::vector<const DzNumericProperty*> inputs;
        if (const auto* const target = qobject_cast<const DzNumericProperty*>(property->getAliasTarget()))
            inputs.push_back(target);
        for (const DzController* controller : property->controllers()) {
            const auto* const numeric = static_cast<const DzNumericController*>(controller);
            for (int i = 0; i < numeric->getNumInputs(); ++i)
                inputs.push_back(numeric->getInput(i));
        }
        return inputs;
    };
    std::vector<Frame> stack;
    stack.push_back({this, inputsOf(this)});
    _impl->busy = true;
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next == frame.inputs.size()) {
            frame.property->_impl->busy = false;
            if (stack.size() > 1)
                frame.property->evaluateFromInputs();
            stack.pop_back();
            continue;
        }
        const DzNumericProperty* const input = frame.inputs[frame.next++];
        if (input->_impl->busy) {
            if (!input->_impl->cycleReported)
                openhost::Report(
                    {base::Severity::Warning,
                     {},
                     {},
                     QStringLiteral("links form a cycle through %1; it counts with its raw value there")
                         .arg(FullName(*input))
                         .toStdString()});
            input->_impl->cycleReported = true;
            // The other members of the cycle would report it again when they are asked first.
            for (auto member = stack.rbegin(); member != stack.rend() && member->property != input; ++member)
                member->property->_impl->cycleReported = true;
        } else if (input->_impl->dirty) {
            input->_impl->busy = true;
            stack.push_back({input, inputsOf(input)});
        }
    }
}

template <class Visit>
void DzNumericProperty::Impl::forEachDependant(const DzNumericProperty& property, const Visit& visit)
{
    const auto visitNumeric = [&visit](DzProperty* dependant) {
        if (auto* const numeric = qobject_cast<DzNumericProperty*>(dependant))
            visit(*numeric);
    };
    for (const DzController* slave : property.slaveControllers())
        visitNumeric(slave->getOwner());
    for (DzProperty* alias : property.aliases())
        visitNumeric(alias);
}

// What depends on a property that is out of date is so, too: all inputs are evaluated before it.
void DzNumericProperty::Impl::mark(DzNumericProperty& changed)
{
    std::vector<DzNumericProperty*> outdated{&changed};
    while (!outdated.empty()) {
        DzNumericProperty& property = *outdated.back();
        outdated.pop_back();
        if (!std::exchange(property._impl->dirty, true))
            forEachDependant(property, [&](DzNumericProperty& dependant) { outdated.push_back(&dependant); });
    }
}

// First all are marked, then told, so that whoever listens reads new values only.
void DzNumericProperty::Impl::tell(const Properties& changed)
{
    const unsigned visit = ++g_lastVisit;
    std::vector<DzNumericProperty*> reached;
    const auto reach = [&](DzNumericProperty& property) {
        if (std::exchange(property._impl->visit, visit) != visit)
            reached.push_back(&property);
    };
    for (const QPointer<DzNumericProperty>& property : changed)
        if (property)
            reach(*property);
    for (std::size_t i = 0; i < reached.size(); ++i) {
        reached[i]->_impl->dirty = true;
        reached[i]->_impl->untold = false;
        forEachDependant(*reached[i], reach);
    }
    if (reached.size() == 1) {
        reached.front()->announceChange();
        return;
    }
    // Listeners may delete properties.
    const Properties told(reached.begin(), reached.end());
    for (const QPointer<DzNumericProperty>& property : told)
        if (property)
            property->announceChange();
}

void DzNumericProperty::changed()
{
    if (g_untold.brackets == 0) {
        Impl::tell({this});
        return;
    }
    Impl::mark(*this);
    g_untold.tell = &Impl::tell;
    if (!std::exchange(_impl->untold, true))
        g_untold.changed.emplace_back(this);
}

namespace openhost {

ChangesTogether::ChangesTogether()
{
    ++g_untold.brackets;
}

ChangesTogether::~ChangesTogether()
{
    if (--g_untold.brackets > 0 || g_untold.changed.empty())
        return;
    g_untold.tell(std::exchange(g_untold.changed, {}));
}

} // namespace openhost
