// What all properties have in common.
// SPDX-License-Identifier: MIT

#include "dzproperty.h"

#include "app/operations.h"
#include "dzcontroller.h"
#include "dzelement.h"
#include "dzpresentation.h"
#include "dzpropertygrouptree.h"
#include "dzstringproperty.h"
#include "openhost/diagnostics.h"
#include "openhost/events.h"
#include "scene/group_paths.h"
#include "scene/scene_limits.h"

#include <QPointer>

#include <vector>

#include <fmt/format.h>

struct DzProperty::Impl {
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
    _impl->locked = onOff;
    emit lockStateChanged();
}

bool DzProperty::isFavorite() const
{
    return _impl->favorite;
}
void DzProperty::setIsFavorite(bool onOff)
{
    _impl->favorite = onOff;
}
bool DzProperty::isUserProperty() const
{
    return _impl->userProperty;
}
void DzProperty::setIsUserProperty(bool onOff)
{
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
    _impl->canAnimate = onOff;
}
bool DzProperty::canAutoFollow() const
{
    return _impl->canAutoFollow;
}
void DzProperty::setCanAutoFollow(bool onOff)
{
    _impl->canAutoFollow = onOff;
}
bool DzProperty::isManipulator() const
{
    return _impl->manipulator;
}
void DzProperty::setIsManipulator(bool onOff)
{
    _impl->manipulator = onOff;
}

void DzProperty::beginEdit() {}
void DzProperty::finishEdit() {}
void DzProperty::cancelEdit() {}

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
    if (_impl->aliasTarget)
        _impl->aliasTarget->_impl->aliases.removeOne(this);
    _impl->aliasTarget = target;
    if (target)
        target->_impl->aliases.append(this);
    inputsChanged();
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

void DzProperty::insertControllerAt(DzController* controller, int index)
{
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
    _value = value;
    announceChange();
    emit openhost::Events().sceneEdited(openhost::SceneEdit::Value, getOwner());
    return true;
}

QString DzStringProperty::getDefaultValue() const
{
    return _default;
}
void DzStringProperty::setDefaultValue(const QString& value)
{
    _default = value;
}
