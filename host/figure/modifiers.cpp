// Modifiers, morphs and D-Formers.
// SPDX-License-Identifier: MIT

#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzpresentation.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "geometry/deform_field.h"
#include "modifier_impl.h"
#include "openhost/events.h"
#include "scene/own_property.h"
#include "scene/undo_recording.h"

DzModifier::DzModifier() : _modifier(new ModifierImpl) {}
DzModifier::~DzModifier() = default;

DzObject* DzModifier::getObject() const
{
    return _modifier->object;
}
DzNode* DzModifier::getNode() const
{
    return _modifier->object ? _modifier->object->getNode() : nullptr;
}
DzElement* DzModifier::getElementParent() const
{
    return _modifier->object;
}
DzPresentation* DzModifier::getPresentation() const
{
    return _modifier->presentation.get();
}
void DzModifier::setPresentation(DzPresentation* presentation)
{
    _modifier->presentation.reset(presentation);
}

void DzModifier::renamed(const QString& oldName)
{
    openhost::RecordValue(
        this, *this, oldName,
        [](DzModifier& modifier, QString& other) { openhost::SwapName(modifier, other); },
        openhost::ChangeRank::Look, openhost::captions::rename);
    if (_modifier->object)
        _modifier->object->modifierRenamed(this, oldName);
}

void DzModifier::propertyValueChanged(DzProperty*)
{
    emit currentValueChanged();
}

void DzModifier::appendTreeMembers(QList<const DzElement*>*) const {}

DzMorph::DzMorph() : _morph(new MorphImpl)
{
    makeDial();
    setDeltas(new DzMorphDeltas);
}

DzMorph::DzMorph(DzMorphDeltas* deltas) : _morph(new MorphImpl)
{
    makeDial();
    setDeltas(deltas ? deltas : new DzMorphDeltas);
}

DzMorph::~DzMorph() = default;

void DzMorph::makeDial()
{
    auto* const dial = new DzFloatProperty(QStringLiteral("Value"), true, true);
    dial->setMinMax(0.0f, 1.0f);
    dial->setIsClamped(true);
    dial->setDisplayAsPercent(true);
    dial->setSensitivity(0.01f);
    dial->setPath(QStringLiteral("/Morphs"));
    addProperty(dial);
    openhost::KeepProperty(*dial);
    _morph->dial = dial;
}

QString DzMorph::getLabel() const
{
    if (!_morph->dial)
        return DzModifier::getLabel();
    const QString label = _morph->dial->getLabel();
    return label == _morph->dial->getName() && !getName().isEmpty() ? getName() : label;
}

DzError DzMorph::setLabel(const QString& label)
{
    if (_morph->dial)
        _morph->dial->setLabel(label);
    return DzModifier::setLabel(label);
}

DzMorphDeltas* DzMorph::getDeltas() const
{
    return _morph->deltas;
}

void DzMorph::setDeltas(DzMorphDeltas* deltas)
{
    if (!deltas || deltas == _morph->deltas)
        return;
    openhost::RecordValue(
        this, *this, _morph->deltas,
        [](DzMorph& morph, DzMorphDeltasPtr& other) {
            const DzMorphDeltasPtr former = morph._morph->deltas;
            morph.setDeltas(other);
            other = former;
            emit openhost::Events().sceneEdited(openhost::SceneEdit::Morph, morph.getObject());
        },
        openhost::ChangeRank::Morph, openhost::captions::changeMorph);
    if (_morph->deltas) {
        disconnect(_morph->deltas, SIGNAL(deltasChanged()), this, SLOT(handleDeltasChanged()));
        openhost::DeltasAccess::setWorn(*_morph->deltas, *this, false);
    }
    _morph->deltas = deltas;
    openhost::DeltasAccess::setWorn(*deltas, *this, true);
    connect(deltas, SIGNAL(deltasChanged()), this, SLOT(handleDeltasChanged()));
    handleDeltasChanged();
}

void DzMorph::handleDeltasChanged()
{
    if (DzObject* const object = getObject())
        object->pipeline().morphChanged(*this, true);
    emit deltasChanged();
}

DzFloatProperty* DzMorph::getValueControl() const
{
    return _morph->dial;
}
DzFloatProperty* DzMorph::getValueChannel() const
{
    return _morph->dial;
}
DzUri DzMorph::getAssetUri() const
{
    return _morph->assetUri;
}
void DzMorph::setAssetUri(const DzUri& uri)
{
    _morph->assetUri = uri;
}

bool DzMorph::modifyAsset()
{
    _morph->assetModified = true;
    return true;
}

bool DzMorph::isAssetModified() const
{
    return _morph->assetModified;
}
int DzMorph::getHDLimit() const
{
    return _morph->hdLimit;
}

void DzMorph::setHDLimit(int level)
{
    if (level == _morph->hdLimit)
        return;
    openhost::RecordValue(
        this, *this, _morph->hdLimit,
        [](DzMorph& morph, int& other) {
            const int former = morph._morph->hdLimit;
            morph.setHDLimit(other);
            other = former;
        },
        openhost::ChangeRank::Detail, openhost::captions::change);
    _morph->hdLimit = level;
    if (DzObject* const object = getObject())
        object->pipeline().resolutionChanged();
    emit hdLimitChanged();
}

void DzMorph::propertyValueChanged(DzProperty* property)
{
    if (property == _morph->dial && getObject())
        getObject()->pipeline().morphChanged(*this, false);
    DzModifier::propertyValueChanged(property);
}

DzDForm::DzDForm() : _base(nullptr), _zone(nullptr)
{
    connect(this, SIGNAL(transformChanged()), SLOT(handlePartChanged()));
}

DzDForm::~DzDForm()
{
    for (DzDFormModifier* modifier : std::as_const(_modifiers)) {
        modifier->_former = nullptr;
        modifier->formChanged();
    }
}

void DzDForm::setBase(DzDFormBase* base)
{
    _base = base;
    if (base) {
        connect(base, SIGNAL(destroyed(QObject*)), SLOT(handleNodeDestroyed(QObject*)));
        connect(base, SIGNAL(transformChanged()), SLOT(handlePartChanged()));
    }
    handlePartChanged();
}

void DzDForm::setZone(DzDFormZone* zone)
{
    _zone = zone;
    if (zone) {
        connect(zone, SIGNAL(destroyed(QObject*)), SLOT(handleNodeDestroyed(QObject*)));
        connect(zone, SIGNAL(transformChanged()), SLOT(handlePartChanged()));
        connect(zone, SIGNAL(fieldChanged()), SLOT(handlePartChanged()));
    }
    handlePartChanged();
}

void DzDForm::handlePartChanged()
{
    for (DzDFormModifier* modifier : std::as_const(_modifiers))
        modifier->formChanged();
}

void DzDForm::handleNodeDestroyed(QObject* node)
{
    if (node == _base)
        _base = nullptr;
    if (node == _zone)
        _zone = nullptr;
    handlePartChanged();
}

int DzDForm::getNumModifiers() const
{
    return _modifiers.size();
}
DzDFormModifier* DzDForm::getModifier(int index) const
{
    return _modifiers.value(index);
}

DzDFormModifier* DzDForm::getModifierForNode(const DzNode* node) const
{
    for (DzDFormModifier* modifier : _modifiers) {
        if (modifier->getNode() == node)
            return modifier;
    }
    return nullptr;
}

DzDFormModifier* DzDForm::applyToNode(DzNode* node)
{
    if (!node || !node->getObject())
        return nullptr;
    if (DzDFormModifier* const present = getModifierForNode(node))
        return present;
    auto* const modifier = new DzDFormModifier(this);
    modifier->setName(getName());
    modifier->setLabel(getLabel());
    node->getObject()->addModifier(modifier);
    return modifier;
}

void DzDForm::leftScene()
{
    // What was taken from others then is given back and taken again by changes of its own.
    const bool isTaken = openhost::IsReplaying();
    for (DzDFormModifier* modifier : QList<DzDFormModifier*>(_modifiers)) {
        if (modifier->getObject() && !isTaken)
            modifier->getObject()->removeModifier(modifier);
    }
    DzNode::leftScene();
}

DzDFormBase::DzDFormBase() = default;
DzDFormBase::~DzDFormBase() = default;
DzDFormZone::DzDFormZone() : _mode(Sphere), _falloff(new geometry::Falloff) {}
DzDFormZone::~DzDFormZone() = default;

void DzDFormZone::setInfluenceMode(InfluenceMode mode)
{
    _mode = mode;
    emit fieldChanged();
}

void DzDFormZone::setFalloff(const geometry::Falloff& falloff)
{
    *_falloff = falloff;
    emit fieldChanged();
}

DzDFormModifier::DzDFormModifier(DzDForm* former) : _former(nullptr)
{
    setDForm(former);
}

void DzDFormModifier::setDForm(DzDForm* former)
{
    if (_former)
        _former->_modifiers.removeOne(this);
    _former = former;
    if (former)
        former->_modifiers.append(this);
    formChanged();
}

DzDFormModifier::~DzDFormModifier()
{
    if (_former)
        _former->_modifiers.removeOne(this);
}

DzError DzDFormModifier::setInfluenceWeights(DzWeightMap* weights)
{
    _weights = weights;
    formChanged();
    return DZ_NO_ERROR;
}

void DzDFormModifier::propertyValueChanged(DzProperty* property)
{
    formChanged();
    DzModifier::propertyValueChanged(property);
}

void DzDFormModifier::formChanged()
{
    if (DzObject* const object = getObject())
        object->pipeline().formerChanged();
}
