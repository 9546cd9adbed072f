// Elements and the properties they own.
// SPDX-License-Identifier: MIT

#include "dzelement.h"

#include "app/guard.h"
#include "app/letting_go.h"
#include "dzproperty.h"
#include "dzpropertygrouptree.h"
#include "scene/changes_together.h"
#include "scene/own_property.h"

#include <QHash>

#include <unordered_set>

struct DzElement::Impl {
    QString label;
    int id = 0;
    QList<DzProperty*> properties;
    QList<DzProperty*> privateProperties;
    QHash<QString, DzProperty*> byName; ///< public and private: names are unique in both together
    std::unique_ptr<DzPropertyGroupTree> groups;
    std::unique_ptr<DzPropertyGroupTree> privateGroups;
};

namespace {

int g_lastElementID = 0;

/// Not a mark in the property that scripts could find and write. Forgotten before the property goes.
std::unordered_set<const DzProperty*>& KeptProperties()
{
    static auto& kept = *new std::unordered_set<const DzProperty*>;
    return kept;
}

template <class T>
T* ItemAt(const QList<T*>& list, int index)
{
    return index >= 0 && index < list.size() ? list.at(index) : nullptr;
}

} // namespace

DzElement::DzElement() : _impl(new Impl)
{
    _impl->id = ++g_lastElementID;
}

DzElement::~DzElement()
{
    const openhost::ChangesTogether together;
    const QList<DzProperty*> all = _impl->properties + _impl->privateProperties;
    _impl->properties.clear();
    _impl->privateProperties.clear();
    _impl->byName.clear();
    for (DzProperty* property : all) {
        property->setOwner(nullptr, property->isPrivate());
        emit property->removed();
        KeptProperties().erase(property);
        delete property;
    }
}

QString DzElement::getLabel() const
{
    return _impl->label.isEmpty() ? getName() : _impl->label;
}

DzError DzElement::setLabel(const QString& label)
{
    if (label == _impl->label)
        return DZ_NO_ERROR;
    _impl->label = label;
    emit labelChanged(getLabel());
    return DZ_NO_ERROR;
}

int DzElement::getElementID() const
{
    return _impl->id;
}

DzElement* DzElement::getElementParent() const
{
    return nullptr;
}

DzProperty* DzElement::findProperty(const QString& name) const
{
    DzProperty* const property = _impl->byName.value(name);
    return property && !property->isPrivate() ? property : nullptr;
}

DzProperty* DzElement::findProperty(const QString& name, bool caseSensitive) const
{
    if (caseSensitive)
        return findProperty(name);
    for (DzProperty* property : std::as_const(_impl->properties)) {
        if (property->getName().compare(name, Qt::CaseInsensitive) == 0)
            return property;
    }
    return nullptr;
}

DzProperty* DzElement::findPropertyByLabel(const QString& label) const
{
    for (DzProperty* property : std::as_const(_impl->properties)) {
        if (property->getLabel() == label)
            return property;
    }
    return nullptr;
}

DzProperty* DzElement::findPrivateProperty(const QString& name) const
{
    DzProperty* const property = _impl->byName.value(name);
    return property && property->isPrivate() ? property : nullptr;
}

int DzElement::getNumProperties() const
{
    return _impl->properties.size();
}

DzProperty* DzElement::getProperty(int index) const
{
    return ItemAt(_impl->properties, index);
}

QObjectList DzElement::getPropertyList() const
{
    QObjectList list;
    for (DzProperty* property : std::as_const(_impl->properties))
        list.append(property);
    return list;
}

DzPropertyListIterator DzElement::propertyListIterator() const
{
    return DzPropertyListIterator(_impl->properties);
}

int DzElement::getNumPrivateProperties() const
{
    return _impl->privateProperties.size();
}

DzProperty* DzElement::getPrivateProperty(int index) const
{
    return ItemAt(_impl->privateProperties, index);
}

DzError DzElement::addProperty(DzProperty* property)
{
    return insertProperty(property, false);
}

DzError DzElement::addPrivateProperty(DzProperty* property)
{
    return insertProperty(property, true);
}

DzError DzElement::insertProperty(DzProperty* property, bool isPrivate)
{
    if (!property)
        return DZ_NULL_POINTER_ERROR;
    if (property->getOwner())
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    if (_impl->byName.contains(property->getName()))
        return DZ_DUPLICATE_NAME_ERROR;
    (isPrivate ? _impl->privateProperties : _impl->properties).append(property);
    _impl->byName.insert(property->getName(), property);
    property->setOwner(this, isPrivate);
    propertyPathChanged();
    emit propertyAdded(property);
    emit propertyListChanged();
    return DZ_NO_ERROR;
}

namespace openhost {

void KeepProperty(DzProperty& property)
{
    KeptProperties().insert(&property);
}

bool IsKept(const DzProperty& property)
{
    return KeptProperties().count(&property) > 0;
}

} // namespace openhost

DzError DzElement::removeProperty(DzProperty* property)
{
    if (!property || property->getOwner() != this)
        return DZ_NOT_FOUND_ERROR;
    // Programs may, and know what they do.
    if (openhost::ForeignFrames::areAround() && openhost::IsKept(*property))
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    (property->isPrivate() ? _impl->privateProperties : _impl->properties).removeOne(property);
    if (KeptProperties().erase(property) > 0)
        for (const QString& name : _impl->byName.keys(property))
            _impl->byName.remove(name);
    _impl->byName.remove(property->getName());
    property->setOwner(nullptr, property->isPrivate());
    propertyPathChanged();
    emit property->removed();
    emit propertyRemoved(property);
    emit propertyListChanged();
    property->dropDependants();
    openhost::LetGoOf(property);
    return DZ_NO_ERROR;
}

void DzElement::propertyRenamed(DzProperty* property, const QString& oldName)
{
    // Files know one that is kept by the name that it has, whatever a script calls it.
    const bool isKnown = openhost::ForeignFrames::areAround() && openhost::IsKept(*property);
    if (_impl->byName.value(oldName) == property && !isKnown)
        _impl->byName.remove(oldName);
    if (!_impl->byName.contains(property->getName()))
        _impl->byName.insert(property->getName(), property);
}

DzPropertyGroupTree* DzElement::getPropertyGroups() const
{
    if (!_impl->groups)
        _impl->groups.reset(new DzPropertyGroupTree(this, false));
    return _impl->groups.get();
}

DzPropertyGroupTree* DzElement::getPrivatePropertyGroups() const
{
    if (!_impl->privateGroups)
        _impl->privateGroups.reset(new DzPropertyGroupTree(this, true));
    return _impl->privateGroups.get();
}

void DzElement::propertyPathChanged()
{
    for (DzElement* element = this; element; element = element->getElementParent()) {
        if (element->_impl->groups)
            element->_impl->groups->invalidate();
        if (element->_impl->privateGroups)
            element->_impl->privateGroups->invalidate();
        emit element->propertyTreeChanged();
    }
}

void DzElement::propertyValueChanged(DzProperty*) {}

void DzElement::appendTreeMembers(QList<const DzElement*>*) const {}

void DzElement::beginEdit() {}
void DzElement::finishEdit() {}
void DzElement::cancelEdit() {}
