// What all properties have in common.
// SPDX-License-Identifier: MIT

#include "dzproperty.h"

#include "app/operations.h"
#include "dzelement.h"
#include "dznumericcontroller.h"
#include "dznumericproperty.h"
#include "dzpresentation.h"
#include "dzpropertygrouptree.h"
#include "dzstringproperty.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "scene/changes_together.h"
#include "scene/group_paths.h"
#include "scene/scene_limits.h"
#include "scene/undo_recording.h"

#include <QPointer>
#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace {

/// Whose second dial a property is, and which of them.
struct AliasPlace {
    QPointer<DzProperty> target;
    int index = 0;
};

} // namespace

struct DzProperty::Impl {
    class Link;

    static AliasPlace placeAsAlias(DzProperty& alias)
    {
        DzProperty* const target = alias._impl->aliasTarget;
        return {target, target ? target->_impl->aliases.indexOf(&alias) : 0};
    }
    static void setPlaceAsAlias(DzProperty& alias, const AliasPlace& place)
    {
        if (DzProperty* const former = alias._impl->aliasTarget)
            former->_impl->aliases.removeOne(&alias);
        alias._impl->aliasTarget = place.target;
        if (place.target)
            openhost::PutBackAt(place.target->_impl->aliases, place.index, &alias);
        alias.inputsChanged();
    }

    DzElement* owner = nullptr;
    QString label;
    QString path = QStringLiteral("/General");
    QString region;
    bool isPrivate = false;
    bool hidden = false;
    bool locked = false;
    bool favorite = false;
    bool userProperty = false;
    bool canAnimate = false;
    bool canAutoFollow = false;
    bool manipulator = false;
    bool overridesControllers = false;
    QList<DzController*> controllers;
    QList<DzController*> slaves;
    QList<DzProperty*> aliases;
    DzProperty* aliasTarget = nullptr;
    std::unique_ptr<DzPresentation> presentation;
};

DzProperty::DzProperty(const QString& name, bool canAnimate, bool isUserProperty) : _impl(new Impl)
{
    _impl->canAnimate = canAnimate;
    _impl->userProperty = isUserProperty;
    setName(name);
}

DzProperty::~DzProperty()
{
    dropDependants();
    emit propertyDeleted(this);
}

void DzProperty::dropDependants()
{
    setAliasTarget(nullptr);
    for (DzProperty* alias : QList<DzProperty*>(_impl->aliases))
        alias->setAliasTarget(nullptr);
    // Whoever hears that one goes may delete others.
    for (const QPointer<DzController>& slave :
         std::vector<QPointer<DzController>>(_impl->slaves.cbegin(), _impl->slaves.cend()))
        if (slave)
            slave->inputDeleted(this);
    _impl->slaves.clear();
    const QList<DzController*> own = _impl->controllers;
    _impl->controllers.clear();
    for (DzController* controller : own) {
        controller->_owner = nullptr;
        delete controller;
    }
}

QString DzProperty::getLabel() const
{
    return _impl->label.isEmpty() ? getName() : _impl->label;
}

void DzProperty::setLabel(const QString& label)
{
    if (label == _impl->label)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->label,
        [](DzProperty& property, QString& other) {
            const QString former = property._impl->label;
            property.setLabel(other);
            other = former;
        },
        openhost::ChangeRank::Look, openhost::captions::rename);
    _impl->label = label;
    emit labelChanged(getLabel());
}

DzElement* DzProperty::getOwner() const
{
    return _impl->owner;
}

void DzProperty::setOwner(DzElement* owner, bool isPrivate)
{
    _impl->owner = owner;
    _impl->isPrivate = isPrivate;
}

void DzProperty::renamed(const QString& oldName)
{
    openhost::RecordValue(
        getOwner(), *this, oldName,
        [](DzProperty& property, QString& other) { openhost::SwapName(property, other); },
        openhost::ChangeRank::Look, openhost::captions::rename);
    if (_impl->owner)
        _impl->owner->propertyRenamed(this, oldName);
}

QString DzProperty::getPath() const
{
    return _impl->path;
}

void DzProperty::setPath(const QString& path)
{
    const QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (names.size() > openhost::deepestGroups)
        openhost::Report({base::Severity::Warning,
                          {},
                          getName().toStdString(),
                          fmt::format("lies deeper than {} groups in each other; those beyond are left out",
                                      openhost::deepestGroups)});
    const QString normal = QLatin1Char('/') + names.mid(0, openhost::deepestGroups).join(QLatin1Char('/'));
    if (normal == _impl->path)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->path,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->path;
            property.setPath(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->path = normal;
    if (_impl->owner)
        _impl->owner->propertyPathChanged();
    emit pathChanged(normal);
}

void openhost::GroupPaths::set(DzProperty& property, const QString& path)
{
    const QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (names.size() > deepestGroups)
        _cutNames.push_back(property.getName().toStdString());
    property.setPath(names.mid(0, deepestGroups).join(QLatin1Char('/')));
}

QString DzProperty::getGroupOnlyPath() const
{
    return _impl->path;
}
QString DzProperty::getRegion() const
{
    return _impl->region;
}
void DzProperty::setRegion(const QString& region)
{
    if (region == _impl->region)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->region,
        [](DzProperty& property, QString& other) { property._impl->region.swap(other); },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->region = region;
}

DzPropertyGroup* DzProperty::getGroup() const
{
    if (!_impl->owner)
        return nullptr;
    const DzElement* top = _impl->owner;
    while (top->getElementParent())
        top = top->getElementParent();
    const DzPropertyGroupTree* const tree =
        isPrivate() ? top->getPrivatePropertyGroups() : top->getPropertyGroups();
    return tree->findChild(_impl->path);
}

bool DzProperty::isHidden() const
{
    return _impl->hidden;
}

void DzProperty::setHidden(bool onOff)
{
    if (onOff == _impl->hidden)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->hidden,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->hidden;
            property.setHidden(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->hidden = onOff;
    emit hiddenChanged(onOff);
}

bool DzProperty::isLocked() const
{
    return _impl->locked;
}

void DzProperty::lock(bool onOff)
{
    if (onOff == _impl->locked)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->locked,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->locked;
            property.lock(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->locked = onOff;
    emit lockStateChanged();
}

bool DzProperty::isFavorite() const
{
    return _impl->favorite;
}
void DzProperty::setIsFavorite(bool onOff)
{
    if (onOff == _impl->favorite)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->favorite,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->favorite;
            property.setIsFavorite(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->favorite = onOff;
}
bool DzProperty::isUserProperty() const
{
    return _impl->userProperty;
}
void DzProperty::setIsUserProperty(bool onOff)
{
    if (onOff == _impl->userProperty)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->userProperty,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->userProperty;
            property.setIsUserProperty(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->userProperty = onOff;
}
bool DzProperty::isPrivate() const
{
    return _impl->isPrivate;
}
bool DzProperty::canAnimate() const
{
    return _impl->canAnimate;
}
void DzProperty::setCanAnimate(bool onOff)
{
    if (onOff == _impl->canAnimate)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->canAnimate,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->canAnimate;
            property.setCanAnimate(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->canAnimate = onOff;
}
bool DzProperty::canAutoFollow() const
{
    return _impl->canAutoFollow;
}
void DzProperty::setCanAutoFollow(bool onOff)
{
    if (onOff == _impl->canAutoFollow)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->canAutoFollow,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->canAutoFollow;
            property.setCanAutoFollow(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->canAutoFollow = onOff;
}
bool DzProperty::isManipulator() const
{
    return _impl->manipulator;
}
void DzProperty::setIsManipulator(bool onOff)
{
    if (onOff == _impl->manipulator)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->manipulator,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->manipulator;
            property.setIsManipulator(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->manipulator = onOff;
}

void DzProperty::beginEdit()
{
    openhost::BeginEdit(*this);
}
void DzProperty::finishEdit()
{
    openhost::FinishEdit(*this);
}
void DzProperty::cancelEdit()
{
    openhost::CancelEdit(*this);
}

int DzProperty::getNumControllers() const
{
    return _impl->controllers.size();
}

DzController* DzProperty::getController(int index) const
{
    return index >= 0 && index < _impl->controllers.size() ? _impl->controllers.at(index) : nullptr;
}

bool DzProperty::hasControllers() const
{
    return !_impl->controllers.isEmpty();
}

DzControllerListIterator DzProperty::controllerListIterator() const
{
    return DzControllerListIterator(_impl->controllers);
}

int DzProperty::getNumSlaveControllers() const
{
    return _impl->slaves.size();
}

bool DzProperty::hasSlaveControllers() const
{
    return !_impl->slaves.isEmpty();
}

DzControllerListIterator DzProperty::slaveControllerListIterator() const
{
    return DzControllerListIterator(_impl->slaves);
}

void DzProperty::setOverrideControllers(bool onOff)
{
    if (onOff == _impl->overridesControllers)
        return;
    openhost::RecordValue(
        getOwner(), *this, _impl->overridesControllers,
        [](DzProperty& property, auto& other) {
            const auto former = property._impl->overridesControllers;
            property.setOverrideControllers(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _impl->overridesControllers = onOff;
    inputsChanged();
}

bool DzProperty::isOverridingControllers() const
{
    return _impl->overridesControllers;
}

int DzProperty::getNumAliases() const
{
    return _impl->aliases.size();
}

DzProperty* DzProperty::getAlias(int index) const
{
    return index >= 0 && index < _impl->aliases.size() ? _impl->aliases.at(index) : nullptr;
}

DzProperty* DzProperty::getAliasTarget() const
{
    return _impl->aliasTarget;
}

bool DzProperty::setAliasTarget(DzProperty* target)
{
    for (const DzProperty* next = target; next; next = next->_impl->aliasTarget) {
        if (next == this)
            return false;
    }
    if (target == _impl->aliasTarget)
        return true;
    openhost::RecordValue(
        getOwner(), *this, Impl::placeAsAlias(*this),
        [](DzProperty& property, AliasPlace& other) {
            const AliasPlace former = Impl::placeAsAlias(property);
            Impl::setPlaceAsAlias(property, other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    Impl::setPlaceAsAlias(*this, {target, target ? target->_impl->aliases.size() : 0});
    return true;
}

DzPresentation* DzProperty::getPresentation() const
{
    return _impl->presentation.get();
}
void DzProperty::setPresentation(DzPresentation* presentation)
{
    _impl->presentation.reset(presentation);
}

void DzProperty::inputsChanged() {}

void DzProperty::announceChange()
{
    if (_impl->owner)
        _impl->owner->propertyValueChanged(this);
    emit currentValueChanged();
}

const QList<DzController*>& DzProperty::controllers() const
{
    return _impl->controllers;
}
const QList<DzController*>& DzProperty::slaveControllers() const
{
    return _impl->slaves;
}
const QList<DzProperty*>& DzProperty::aliases() const
{
    return _impl->aliases;
}

/// That a controller drives the property.
class DzProperty::Impl::Link : public openhost::Change {
public:
    Link(DzProperty& driven, DzController& link, bool isEntry)
        : _driven(&driven), _link(&link), _isEntry(isEntry)
    {
        if (!isEntry)
            takeOut();
    }
    ~Link() override
    {
        if (!_isOut || !_link)
            return;
        openhost::SetHeldByUndo(*_link, false);
        if (!_link->getOwner()) // somebody may have put it back by hand
            delete _link;
    }
    void undo() override { _isEntry ? takeOut() : putBack(); }
    void redo() override { _isEntry ? putBack() : takeOut(); }
    openhost::ChangeRank rank() const override { return openhost::ChangeRank::Detail; }
    QString caption() const override
    {
        return openhost::Captioned(_isEntry ? openhost::captions::link : openhost::captions::unlink,
                                   _driven ? _driven->getLabel() : QString());
    }

private:
    /// A property that drives, and which of what it drives the link is.
    struct Input {
        QPointer<DzNumericProperty> property;
        int place;
    };

    static QList<DzController*>& drivenBy(DzProperty& property) { return property._impl->slaves; }

    void takeOut()
    {
        // One that lost what drives it did not come back.
        if (!_driven || !_link || _link->getOwner() != _driven)
            return;
        _place = _driven->_impl->controllers.indexOf(_link);
        _inputs.clear();
        if (auto* const numeric = qobject_cast<DzNumericController*>(_link.data())) {
            for (int i = 0; i < numeric->getNumInputs(); ++i)
                _inputs.push_back({numeric->getInput(i), drivenBy(*numeric->getInput(i)).indexOf(_link)});
            numeric->setInputs({});
        }
        _isOut = true;
        openhost::SetHeldByUndo(*_link, true);
        _driven->removeController(_link);
    }
    void putBack()
    {
        std::vector<DzNumericProperty*> inputs;
        for (const Input& input : _inputs)
            inputs.push_back(input.property);
        const bool isComplete = std::find(inputs.begin(), inputs.end(), nullptr) == inputs.end();
        if (!_isOut || !_driven || !_link || !isComplete)
            return;
        if (auto* const numeric = qobject_cast<DzNumericController*>(_link.data())) {
            numeric->setInputs(inputs);
            for (const Input& input : _inputs) {
                QList<DzController*>& driven = drivenBy(*input.property);
                driven.removeAt(driven.lastIndexOf(_link));
                openhost::PutBackAt(driven, input.place, _link.data());
            }
        }
        _isOut = false;
        openhost::SetHeldByUndo(*_link, false);
        _driven->insertControllerAt(_link, std::min(_place, _driven->getNumControllers()));
    }

    QPointer<DzProperty> _driven;
    QPointer<DzController> _link;
    bool _isEntry, _isOut = false;
    int _place = 0;
    std::vector<Input> _inputs;
};

void DzProperty::drop(DzController& link)
{
    DzProperty* const driven = link._owner;
    if (driven && openhost::IsRecording(driven->getOwner()))
        openhost::Record(std::make_unique<Impl::Link>(*driven, link, false));
    else
        delete &link;
}

void DzProperty::cutOff(const QSet<DzProperty*>& leaving)
{
    for (DzProperty* alias : QList<DzProperty*>(_impl->aliases))
        if (!leaving.contains(alias))
            alias->setAliasTarget(nullptr);
    if (_impl->aliasTarget && !leaving.contains(_impl->aliasTarget))
        setAliasTarget(nullptr);
    std::vector<QPointer<DzController>> ending;
    for (DzController* const slave : std::as_const(_impl->slaves))
        if (!leaving.contains(slave->getOwner()))
            ending.emplace_back(slave);
    for (DzController* const own : std::as_const(_impl->controllers)) {
        const auto* const numeric = qobject_cast<const DzNumericController*>(own);
        for (int i = 0; numeric && i < numeric->getNumInputs(); ++i)
            if (!leaving.contains(numeric->getInput(i))) {
                ending.emplace_back(own);
                break;
            }
    }
    for (const QPointer<DzController>& link : ending)
        if (link)
            drop(*link);
}

void openhost::DropLink(DzController& link)
{
    DzProperty::drop(link);
}

void openhost::CutOff(const std::vector<DzProperty*>& leaving)
{
    const ChangesTogether together;
    QSet<DzProperty*> all;
    for (DzProperty* const property : leaving)
        all.insert(property);
    for (DzProperty* const property : leaving)
        property->cutOff(all);
}

void DzProperty::insertControllerAt(DzController* controller, int index)
{
    if (openhost::IsRecording(getOwner()))
        openhost::Record(std::make_unique<Impl::Link>(*this, *controller, true));
    _impl->controllers.insert(index, controller);
    controller->_owner = this;
    inputsChanged();
    emit controllerListChanged();
}

void DzProperty::addSlaveController(DzController* controller)
{
    _impl->slaves.append(controller);
}

// From the end, since what was linked last is mostly unlinked first.
void DzProperty::removeSlaveController(DzController* controller)
{
    const int index = _impl->slaves.lastIndexOf(controller);
    if (index >= 0)
        _impl->slaves.removeAt(index);
}

void DzProperty::removeController(DzController* controller)
{
    if (!_impl->controllers.removeOne(controller))
        return;
    controller->_owner = nullptr;
    inputsChanged();
    emit controllerListChanged();
}

DzStringProperty::DzStringProperty(const QString& name, bool canAnimate, bool isUserProperty,
                                   const QString& defaultValue)
    : DzProperty(name, canAnimate, isUserProperty), _value(defaultValue), _default(defaultValue)
{
}

DzStringProperty::~DzStringProperty() = default;

QString DzStringProperty::getValue() const
{
    return _value;
}

bool DzStringProperty::setValue(const QString& value)
{
    if (isLocked() || !openhost::Allows(openhost::Operation::SetValue, getName()))
        return false;
    if (value == _value)
        return true;
    openhost::RecordValue(
        getOwner(), *this, _value,
        [](DzStringProperty& property, QString& other) { property.swapValue(other); },
        openhost::ChangeRank::Value, openhost::captions::set);
    QString other = value;
    swapValue(other);
    return true;
}

void DzStringProperty::swapValue(QString& other)
{
    std::swap(_value, other);
    announceChange();
    emit openhost::Events().sceneEdited(openhost::SceneEdit::Value, getOwner());
}

QString DzStringProperty::getDefaultValue() const
{
    return _default;
}
void DzStringProperty::setDefaultValue(const QString& value)
{
    _default = value;
}
