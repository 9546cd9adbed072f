// Controllers and links between numeric properties.
// SPDX-License-Identifier: MIT

#include "dzcontroller.h"
#include "dzerclink.h"
#include "dznumericcontroller.h"

#include "dznumericproperty.h"
#include "scene/changes_together.h"
#include "scene/link_knots.h"
#include "scene/undo_recording.h"

#include <algorithm>
#include <utility>

namespace {

const DzElement* OwnerOf(const DzController& link)
{
    return link.getOwner() ? link.getOwner()->getOwner() : nullptr;
}

} // namespace

DzController::DzController()
    : _owner(nullptr), _active(true), _userLink(false), _autoOverride(false), _saveWithOutput(true)
{
}

DzController::~DzController()
{
    if (_owner)
        _owner->removeController(this);
}

void DzController::setActive(bool onOff)
{
    if (onOff == _active)
        return;
    openhost::RecordValue(
        OwnerOf(*this), *this, _active,
        [](DzController& link, bool& other) {
            const bool former = link.isActive();
            link.setActive(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _active = onOff;
    changed();
}

void DzController::changed()
{
    if (_owner)
        _owner->inputsChanged();
}

void DzController::inputDeleted(DzProperty*) {}

DzNumericController::DzNumericController() = default;

DzNumericController::~DzNumericController()
{
    setInputs({});
}

void DzNumericController::setInputs(const std::vector<DzNumericProperty*>& inputs)
{
    for (DzNumericProperty* input : _inputs)
        input->removeSlaveController(this);
    _inputs.clear();
    for (DzNumericProperty* input : inputs) {
        if (!input || std::find(_inputs.begin(), _inputs.end(), input) != _inputs.end())
            continue;
        _inputs.push_back(input);
        input->addSlaveController(this);
    }
}

double DzNumericController::inputValue(const DzNumericProperty& input) const
{
    return input.getDoubleValue();
}

// A link without what drives it means nothing any more.
void DzNumericController::inputDeleted(DzProperty*)
{
    delete this;
}

struct DzERCLink::Impl {
    ERCType type = ERCDeltaAdd;
    double scalar = 1.0;
    double addend = 0.0;
    ERCKeyInterpolation interpolation = LINEAR_INTERP;
    std::vector<openhost::SplineKnot> knots;

    /// To be called before one of these is set.
    static void record(DzERCLink& link)
    {
        openhost::RecordValue(
            OwnerOf(link), link, *link._impl,
            [](DzERCLink& changed, Impl& other) {
                std::swap(*changed._impl, other);
                changed.changed();
            },
            openhost::ChangeRank::Detail, openhost::captions::changeLink);
    }
};

DzERCLink::DzERCLink(ERCType type, DzNumericProperty* controller, double scalar, double addend)
    : _impl(new Impl)
{
    _impl->type = type;
    _impl->scalar = scalar;
    _impl->addend = addend;
    setInputs({controller});
}

DzERCLink::DzERCLink(DzNumericProperty* controller, double scalar, double addend)
    : DzERCLink(ERCDeltaAdd, controller, scalar, addend)
{
}

DzERCLink::~DzERCLink() = default;

int DzERCLink::getType() const
{
    return _impl->type;
}

void DzERCLink::setType(ERCType type)
{
    if (type == _impl->type)
        return;
    Impl::record(*this);
    _impl->type = type;
    changed();
}

double DzERCLink::getScalar() const
{
    return _impl->scalar;
}

void DzERCLink::setScalar(double scalar)
{
    if (scalar == _impl->scalar)
        return;
    Impl::record(*this);
    _impl->scalar = scalar;
    changed();
}

double DzERCLink::getAddend() const
{
    return _impl->addend;
}

void DzERCLink::setAddend(double addend)
{
    if (addend == _impl->addend)
        return;
    Impl::record(*this);
    _impl->addend = addend;
    changed();
}

DzNumericProperty* DzERCLink::getProperty() const
{
    return getNumInputs() > 0 ? getInput(0) : nullptr;
}

void DzERCLink::setProperty(DzNumericProperty* controller)
{
    if (controller == getProperty())
        return;
    auto* const driven = static_cast<DzNumericProperty*>(getOwner());
    if (!openhost::IsRecording(OwnerOf(*this))) {
        setInputs({controller});
        changed();
        return;
    }
    // As if it ended and came anew, so that a step brings it back among the others that its driver had.
    const openhost::ChangesTogether together;
    int place = 0;
    while (driven->getController(place) != this)
        ++place;
    driven->deleteController(this);
    setInputs({controller});
    driven->insertController(this, place);
}

DzNumericProperty* DzERCLink::getCurrentProperty() const
{
    return getProperty();
}

int DzERCLink::getKeyInterpolation() const
{
    return _impl->interpolation;
}

void DzERCLink::setKeyInterpolation(ERCKeyInterpolation interpolation)
{
    if (interpolation == _impl->interpolation)
        return;
    Impl::record(*this);
    _impl->interpolation = interpolation;
    changed();
}

int DzERCLink::getNumKeyValues() const
{
    return static_cast<int>(_impl->knots.size());
}
double DzERCLink::getKey(int index) const
{
    return _impl->knots.at(static_cast<std::size_t>(index)).in;
}
double DzERCLink::getKeyValue(int index) const
{
    return _impl->knots.at(static_cast<std::size_t>(index)).out;
}
int DzERCLink::addKeyValue(double key, double value)
{
    return addKeyValue(key, value, 0.0, 0.0, 0.0);
}

int DzERCLink::addKeyValue(double key, double value, double tension, double continuity, double bias)
{
    Impl::record(*this);
    const openhost::SplineKnot knot{key, value, tension, continuity, bias};
    const auto place = std::lower_bound(_impl->knots.begin(), _impl->knots.end(), key,
                                        [](const openhost::SplineKnot& k, double in) { return k.in < in; });
    const auto index = place - _impl->knots.begin();
    if (place != _impl->knots.end() && place->in == key)
        *place = knot;
    else
        _impl->knots.insert(place, knot);
    changed();
    return static_cast<int>(index);
}

const std::vector<openhost::SplineKnot>& openhost::LinkKnots::of(const DzERCLink& link)
{
    return link._impl->knots;
}

namespace {

openhost::SplineKind KindOf(DzERCLink::ERCKeyInterpolation interpolation)
{
    switch (interpolation) {
    case DzERCLink::CONSTANT_INTERP:
        return openhost::SplineKind::Constant;
    case DzERCLink::TCB_INTERP:
        return openhost::SplineKind::Tcb;
    default:
        return openhost::SplineKind::Linear;
    }
}

} // namespace

double DzERCLink::apply(double value, const DzTime&, bool) const
{
    const DzNumericProperty* const property = getProperty();
    if (!property)
        return value;
    const double c = inputValue(*property);
    switch (_impl->type) {
    case ERCDeltaAdd:
        return value + c * _impl->scalar + _impl->addend;
    case ERCDivideInto:
        return value == 0.0 ? value : c / value + _impl->addend;
    case ERCDivideBy:
        return c == 0.0 ? value : value / c + _impl->addend;
    case ERCMultiply:
        return c * value + _impl->addend;
    case ERCSubtract:
        return value - c + _impl->addend;
    case ERCAdd:
        return value + c + _impl->addend;
    case ERCKeyed:
        return value + openhost::Interpolate(_impl->knots, KindOf(_impl->interpolation), c);
    }
    return value;
}

double DzERCLink::applyInverse(double value, const DzTime&, bool) const
{
    const DzNumericProperty* const property = getProperty();
    if (!property)
        return value;
    const double c = inputValue(*property);
    switch (_impl->type) {
    case ERCDeltaAdd:
        return value - c * _impl->scalar - _impl->addend;
    case ERCDivideInto:
        return value == _impl->addend ? value : c / (value - _impl->addend);
    case ERCDivideBy:
        return c == 0.0 ? value : (value - _impl->addend) * c;
    case ERCMultiply:
        return c == 0.0 ? value : (value - _impl->addend) / c;
    case ERCSubtract:
        return value + c - _impl->addend;
    case ERCAdd:
        return value - c - _impl->addend;
    case ERCKeyed:
        return value - openhost::Interpolate(_impl->knots, KindOf(_impl->interpolation), c);
    }
    return value;
}

bool DzERCLink::isMultiplying() const
{
    return _impl->type == ERCMultiply || _impl->type == ERCDivideBy || _impl->type == ERCDivideInto;
}
