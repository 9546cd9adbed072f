// Elements and the properties they own.
// SPDX-License-Identifier: MIT

#include "dzelement.h"

#include "app/guard.h"
#include "app/letting_go.h"
#include "dzproperty.h"
#include "dzpropertygrouptree.h"
#include "openhost/events.h"
#include "scene/changes_together.h"
#include "scene/own_property.h"
#include "scene/undo_recording.h"

#include <QHash>
#include <QPointer>

#include <unordered_set>

struct DzElement::Impl {
    class Ownership;

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
    openhost::RecordValue(
        this, *this, _impl->label,
        [](DzElement& element, QString& other) {
            const QString former = element._impl->label;
            element.DzElement::setLabel(other);
            other = former;
            emit openhost::Events().sceneEdited(openhost::SceneEdit::Label, &element);
        },
        openhost::ChangeRank::Look, openhost::captions::rename);
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

/// That a property is one of the element's.
class DzElement::Impl::Ownership : public openhost::Change {
public:
    Ownership(DzElement& element, DzProperty& property, bool isEntry)
        : _element(&element), _property(&property), _isEntry(isEntry), _isPrivate(property.isPrivate())
    {
        if (!isEntry)
            takeOut();
    }
    ~Ownership() override
    {
        if (!_isOut || !_property)
            return;
        openhost::SetHeldByUndo(*_property, false);
        if (!_property->getOwner()) // somebody may have put it back by hand
            openhost::LetGoOf(_property);
    }
    void undo() override { _isEntry ? takeOut() : putBack(); }
    void redo() override { _isEntry ? putBack() : takeOut(); }
    openhost::ChangeRank rank() const override { return openhost::ChangeRank::Look; }
    QString caption() const override
    {
        return openhost::Captioned(_isEntry ? openhost::captions::add : openhost::captions::remove,
                                   _property ? _property->getLabel() : QString());
    }

private:
    void takeOut()
    {
        if (!_element || !_property || _property->getOwner() != _element)
            return;
        Impl& impl = *_element->_impl;
        _place = list(impl).indexOf(_property);
        _names = impl.byName.keys(_property);
        _isKept = openhost::IsKept(*_property);
        _isOut = true;
        openhost::SetHeldByUndo(*_property, true);
        _element->detach(*_property);
    }
    void putBack()
    {
        if (!_isOut || !_element || !_property || _property->getOwner())
            return;
        Impl& impl = *_element->_impl;
        _isOut = false;
        openhost::SetHeldByUndo(*_property, false);
        openhost::PutBackAt(list(impl), _place, _property.data());
        for (const QString& name : std::as_const(_names))
            impl.byName.insert(name, _property);
        if (_isKept)
            openhost::KeepProperty(*_property);
        _property->setOwner(_element, _isPrivate);
        _element->propertyPathChanged();
        emit _element->propertyAdded(_property);
        emit _element->propertyListChanged();
    }
    QList<DzProperty*>& list(Impl& impl) const
    {
        return _isPrivate ? impl.privateProperties : impl.properties;
    }

    QPointer<DzElement> _element;
    QPointer<DzProperty> _property;
    bool _isEntry, _isPrivate, _isOut = false, _isKept = false;
    int _place = 0;
    QStringList _names;
};

DzError DzElement::insertProperty(DzProperty* property, bool isPrivate)
{
    if (!property)
        return DZ_NULL_POINTER_ERROR;
    if (property->getOwner())
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    if (_impl->byName.contains(property->getName()))
        return DZ_DUPLICATE_NAME_ERROR;
    openhost::SetHeldByUndo(*property, false);
    (isPrivate ? _impl->privateProperties : _impl->properties).append(property);
    _impl->byName.insert(property->getName(), property);
    property->setOwner(this, isPrivate);
    if (openhost::IsRecording(this))
        openhost::Record(std::make_unique<Impl::Ownership>(*this, *property, true));
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
    if (openhost::IsRecording(this)) {
        openhost::CutOff({property});
        openhost::Record(std::make_unique<Impl::Ownership>(*this, *property, false));
        return DZ_NO_ERROR;
    }
    detach(*property);
    property->dropDependants();
    openhost::LetGoOf(property);
    return DZ_NO_ERROR;
}

void DzElement::detach(DzProperty& property)
{
    (property.isPrivate() ? _impl->privateProperties : _impl->properties).removeOne(&property);
    if (KeptProperties().erase(&property) > 0)
        for (const QString& name : _impl->byName.keys(&property))
            _impl->byName.remove(name);
    _impl->byName.remove(property.getName());
    property.setOwner(nullptr, property.isPrivate());
    propertyPathChanged();
    emit property.removed();
    emit propertyRemoved(&property);
    emit propertyListChanged();
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

void DzElement::beginEdit()
{
    openhost::BeginEdit(*this);
}
void DzElement::finishEdit()
{
    openhost::FinishEdit(*this);
}
void DzElement::cancelEdit()
{
    openhost::CancelEdit(*this);
}

std::vector<DzProperty*> openhost::PropertiesOf(const QList<const DzElement*>& elements)
{
    std::vector<DzProperty*> all;
    for (const DzElement* const element : elements) {
        for (int i = 0; i < element->getNumProperties(); ++i)
            all.push_back(element->getProperty(i));
        for (int i = 0; i < element->getNumPrivateProperties(); ++i)
            all.push_back(element->getPrivateProperty(i));
    }
    return all;
}
