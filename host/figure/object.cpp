// Objects: shapes and the modifier stack.
// SPDX-License-Identifier: MIT

#include "dzobject.h"

#include "app/letting_go.h"
#include "app/operations.h"
#include "dzcontroller.h"
#include "dzdformmodifier.h"
#include "dzfacetmesh.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzproperty.h"
#include "dzshape.h"
#include "dzskinbinding.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "modifier_impl.h"
#include "openhost/events.h"
#include "scene/changes_together.h"
#include "scene/undo_recording.h"

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <vector>

struct DzObject::Impl {
    class Stacking;

    DzNode* node = nullptr;
    QList<DzShape*> shapes;
    QList<DzModifier*> modifiers;
    QHash<QString, QList<DzModifier*>> byName;
    std::unique_ptr<openhost::Pipeline> pipeline;
};

namespace {

int SectionOf(const DzModifier* modifier)
{
    if (qobject_cast<const DzMorph*>(modifier))
        return 0;
    if (qobject_cast<const DzDFormModifier*>(modifier))
        return 1;
    return qobject_cast<const DzSkinBinding*>(modifier) ? 2 : 3;
}

/// What a modifier's dials drove goes without them from now on, also while it is kept.
void DropLinksOf(const DzModifier& modifier)
{
    const openhost::ChangesTogether together;
    for (int i = 0; i < modifier.getNumProperties(); ++i) {
        std::vector<QPointer<DzController>> links;
        for (DzControllerListIterator link = modifier.getProperty(i)->slaveControllerListIterator();
             link.hasNext();)
            links.emplace_back(link.next());
        for (const QPointer<DzController>& link : links)
            if (link)
                openhost::DropLink(*link);
    }
}

} // namespace

DzObject::DzObject() : _impl(new Impl)
{
    _impl->pipeline.reset(new openhost::Pipeline(*this));
}

DzObject::~DzObject()
{
    const openhost::ChangesTogether together;
    const QList<DzModifier*> modifiers = _impl->modifiers;
    _impl->modifiers.clear();
    _impl->byName.clear();
    for (DzModifier* modifier : modifiers) {
        modifier->_modifier->object = nullptr;
        delete modifier;
    }
    for (DzShape* shape : std::as_const(_impl->shapes)) {
        shape->_object = nullptr;
        delete shape;
    }
    _impl->shapes.clear();
}

DzNode* DzObject::getNode() const
{
    return _impl->node;
}
DzElement* DzObject::getElementParent() const
{
    return _impl->node;
}

void DzObject::setNode(DzNode* node)
{
    _impl->node = node;
    _impl->pipeline->nodeChanged();
}

void DzObject::nodeMoved()
{
    _impl->pipeline->placeChanged();
}
void DzObject::nodeLeftScene()
{
    _impl->pipeline->release();
}
openhost::Pipeline& DzObject::pipeline() const
{
    return *_impl->pipeline;
}

int DzObject::getNumModifiers() const
{
    return _impl->modifiers.size();
}

DzModifier* DzObject::getModifier(int index) const
{
    return index >= 0 && index < _impl->modifiers.size() ? _impl->modifiers.at(index) : nullptr;
}

DzModifierIterator DzObject::modifierIterator() const
{
    return DzModifierIterator(_impl->modifiers);
}

DzModifier* DzObject::findModifier(const QString& name) const
{
    const auto found = _impl->byName.constFind(name);
    if (found == _impl->byName.constEnd())
        return nullptr;
    DzModifier* first = found->first();
    for (int i = 1; i < found->size(); ++i) {
        if (findModifierIndex(found->at(i)) < findModifierIndex(first))
            first = found->at(i);
    }
    return first;
}

int DzObject::findModifierIndex(const DzModifier* modifier) const
{
    return _impl->modifiers.indexOf(const_cast<DzModifier*>(modifier));
}

/// That a modifier is in the object's stack.
class DzObject::Impl::Stacking : public openhost::Change {
public:
    Stacking(DzObject& object, DzModifier& modifier, bool isEntry)
        : _object(&object), _modifier(&modifier), _isEntry(isEntry)
    {
        if (!isEntry)
            takeOut();
    }
    ~Stacking() override
    {
        if (!_isOut || !_modifier)
            return;
        openhost::SetHeldByUndo(*_modifier, false);
        if (!_modifier->getObject()) // somebody may have put it back by hand
            openhost::LetGoOf(_modifier);
    }
    void undo() override { _isEntry ? takeOut() : putBack(); }
    void redo() override { _isEntry ? putBack() : takeOut(); }
    openhost::ChangeRank rank() const override
    {
        return isMorph() ? openhost::ChangeRank::Morph : openhost::ChangeRank::Look;
    }
    QString caption() const override
    {
        return openhost::Captioned(
            isMorph() ? (_isEntry ? openhost::captions::createMorph : openhost::captions::deleteMorph)
                      : (_isEntry ? openhost::captions::add : openhost::captions::deleteWhole),
            _modifier ? _modifier->getLabel() : QString());
    }
    const QObject* held() const override { return _isEntry ? nullptr : _modifier.data(); }

private:
    bool isMorph() const { return qobject_cast<DzMorph*>(_modifier.data()); }

    void takeOut()
    {
        if (!_object || !_modifier || _modifier->getObject() != _object)
            return;
        _place = _object->findModifierIndex(_modifier);
        _isOut = true;
        openhost::SetHeldByUndo(*_modifier, true);
        _object->detach(*_modifier);
        if (openhost::IsReplaying() && isMorph())
            emit openhost::Events().sceneEdited(openhost::SceneEdit::Morph, _object);
    }
    void putBack()
    {
        if (!_isOut || !_object || !_modifier || _modifier->getObject())
            return;
        _isOut = false;
        openhost::SetHeldByUndo(*_modifier, false);
        _object->insert(*_modifier, std::min(_place, _object->getNumModifiers()));
    }

    QPointer<DzObject> _object;
    QPointer<DzModifier> _modifier;
    bool _isEntry, _isOut = false;
    int _place = 0;
};

DzError DzObject::addModifier(DzModifier* modifier, int index)
{
    if (!modifier)
        return DZ_NULL_POINTER_ERROR;
    if (modifier->_modifier->object)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    openhost::SetHeldByUndo(*modifier, false);
    auto* const morph = qobject_cast<DzMorph*>(modifier);
    if (morph && openhost::IsWatched() && !openhost::Allows(openhost::Operation::AddMorph, morph->getName()))
        return DZ_OPERATION_FAILED_ERROR;
    int position = index;
    if (index < 0 || index > _impl->modifiers.size()) {
        position = _impl->modifiers.size();
        const int section = SectionOf(modifier);
        while (position > 0 && SectionOf(_impl->modifiers.at(position - 1)) > section)
            --position;
    }
    if (openhost::IsRecording(this))
        openhost::Record(std::make_unique<Impl::Stacking>(*this, *modifier, true));
    if (morph)
        _impl->pipeline->numberMorph(*morph);
    insert(*modifier, position);
    return DZ_NO_ERROR;
}

void DzObject::insert(DzModifier& modifier, int position)
{
    _impl->modifiers.insert(position, &modifier);
    _impl->byName[modifier.getName()].append(&modifier);
    modifier._modifier->object = this;
    auto* const morph = qobject_cast<DzMorph*>(&modifier);
    if (morph)
        _impl->pipeline->morphAdded(*morph);
    else
        _impl->pipeline->stackChanged();
    propertyPathChanged();
    emit modifier.added();
    emit modifierAdded(&modifier);
    emit modifierStackChanged();
    if (morph)
        emit openhost::Events().sceneEdited(openhost::SceneEdit::Morph, this);
}

DzError DzObject::removeModifier(DzModifier* modifier)
{
    if (!modifier || modifier->_modifier->object != this)
        return DZ_NOT_FOUND_ERROR;
    if (openhost::IsRecording(this)) {
        openhost::CutOff(openhost::PropertiesOf({modifier}));
        openhost::Record(std::make_unique<Impl::Stacking>(*this, *modifier, false));
        return DZ_NO_ERROR;
    }
    detach(*modifier);
    DropLinksOf(*modifier);
    openhost::LetGoOf(modifier);
    return DZ_NO_ERROR;
}

void DzObject::detach(DzModifier& modifier)
{
    _impl->modifiers.removeOne(&modifier);
    if (auto* const morph = qobject_cast<DzMorph*>(&modifier))
        _impl->pipeline->morphRemoved(*morph);
    else
        _impl->pipeline->stackChanged();
    modifierRenamed(&modifier, modifier.getName());
    modifier._modifier->object = nullptr;
    propertyPathChanged();
    emit modifier.removed();
    emit modifierRemoved(&modifier);
    emit modifierStackChanged();
}

void DzObject::modifierRenamed(DzModifier* modifier, const QString& oldName)
{
    QList<DzModifier*>& old = _impl->byName[oldName];
    old.removeOne(modifier);
    if (old.isEmpty())
        _impl->byName.remove(oldName);
    if (modifier->getName() != oldName)
        _impl->byName[modifier->getName()].append(modifier);
}

DzShape* DzObject::getCurrentShape() const
{
    return getShape(0);
}

DzError DzObject::addShape(DzShape* shape, int index)
{
    if (!shape)
        return DZ_NULL_POINTER_ERROR;
    if (shape->_object)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    openhost::RecordBeyondUndo(this, openhost::Captioned(openhost::captions::changeShape, getLabel()));
    const bool append = index < 0 || index > _impl->shapes.size();
    _impl->shapes.insert(append ? _impl->shapes.size() : index, shape);
    shape->_object = this;
    _impl->pipeline->baseChanged();
    propertyPathChanged();
    return DZ_NO_ERROR;
}

DzShape* DzObject::getShape(int index) const
{
    return index >= 0 && index < _impl->shapes.size() ? _impl->shapes.at(index) : nullptr;
}

int DzObject::getNumShapes() const
{
    return _impl->shapes.size();
}

DzVertexMesh* DzObject::getCachedGeom() const
{
    return _impl->pipeline->hasMesh() ? _impl->pipeline->cachedMesh() : nullptr;
}

void DzObject::forceCacheUpdate(DzNode*, bool)
{
    getCachedGeom();
}
void DzObject::invalidateCache()
{
    _impl->pipeline->baseChanged();
}

DzBox3 DzObject::getBoundingBox() const
{
    const geometry::Box3f box = _impl->pipeline->worldBox();
    return box.isEmpty() ? DzBox3() : DzBox3(openhost::ToDz(box.min), openhost::ToDz(box.max));
}

void DzObject::appendTreeMembers(QList<const DzElement*>* members) const
{
    for (const DzShape* shape : std::as_const(_impl->shapes))
        members->append(shape);
    for (const DzModifier* modifier : std::as_const(_impl->modifiers))
        members->append(modifier);
}
