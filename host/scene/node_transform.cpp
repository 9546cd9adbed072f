// Transform properties of nodes and the world transforms they give.
// SPDX-License-Identifier: MIT

#include "scene/node_transform.h"

#include "dznode.h"
#include "dzobject.h"
#include "node_impl.h"
#include "scene/own_property.h"
#include "scene/undo_recording.h"

#include <utility>
#include <vector>

namespace {

constexpr double transformLimit = 10000.0;

DzFloatProperty* MakeFloat(const QString& name, const QString& path, float value)
{
    auto* const property = new DzFloatProperty(name, true, false, value);
    property->setDoubleMinMax(-transformLimit, transformLimit);
    property->setPath(path);
    return property;
}

/// @param axis  before the name; empty for all axes at once
DzFloatProperty* AddFloat(DzNode& node, const QString& axis, const QString& name, const QString& group,
                          float value = 0.0f)
{
    DzFloatProperty* const property =
        MakeFloat(axis + name, QLatin1String("/General/Transforms/") + group, value);
    property->setLabel((axis + QLatin1Char(' ') + name).trimmed());
    node.addProperty(property);
    openhost::KeepProperty(*property);
    return property;
}

DzFloatProperty* AddPrivateFloat(DzNode& node, const QString& name)
{
    DzFloatProperty* const property = MakeFloat(name, QStringLiteral("/General/Rigging"), 0.0f);
    node.addPrivateProperty(property);
    openhost::KeepProperty(*property);
    return property;
}

DzBoolProperty* AddSwitch(DzNode& node, const QString& name)
{
    auto* const property = new DzBoolProperty(name, true, false, true);
    property->setPath(QStringLiteral("/Display"));
    node.addProperty(property);
    openhost::KeepProperty(*property);
    return property;
}

const QString& Axis(int i)
{
    static const QString names[] = {QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z")};
    return names[i];
}

Eigen::Vector3d Values(const std::array<DzFloatProperty*, 3>& axes)
{
    return {axes[0]->getDoubleValue(), axes[1]->getDoubleValue(), axes[2]->getDoubleValue()};
}

Eigen::Vector3d Defaults(const std::array<DzFloatProperty*, 3>& axes)
{
    return {axes[0]->getDoubleDefaultValue(), axes[1]->getDoubleDefaultValue(),
            axes[2]->getDoubleDefaultValue()};
}

DzVec3 ToDz(const Eigen::Vector3d& v)
{
    return DzVec3(static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z()));
}

DzQuat ToDz(const Eigen::Quaterniond& q)
{
    return DzQuat(q.x(), q.y(), q.z(), q.w());
}

DzMatrix3 ToDz(const Eigen::Matrix3d& m)
{
    DzMatrix3 result;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            result.at(row, column) = m(row, column);
    }
    return result;
}

/// The angles in degrees, by axis, of a rotation about the order's letters, first letter innermost.
Eigen::Vector3d AnglesOf(const Eigen::Matrix3d& rotation, geometry::RotationOrder order)
{
    const std::string_view letters = geometry::RotationOrderName(order);
    const int first = letters[0] - 'X', second = letters[1] - 'X', third = letters[2] - 'X';
    const Eigen::Vector3d outerFirst = rotation.eulerAngles(third, second, first) * (180.0 / M_PI);
    Eigen::Vector3d degrees;
    degrees[third] = outerFirst[0];
    degrees[second] = outerFirst[1];
    degrees[first] = outerFirst[2];
    return degrees;
}

void SetBoth(const std::array<DzFloatProperty*, 3>& axes, const DzVec3& v)
{
    for (std::size_t i = 0; i < 3; ++i) {
        axes[i]->setDefaultValue(v[static_cast<int>(i)]);
        axes[i]->setRawValue(v[static_cast<int>(i)]);
    }
}

} // namespace

void DzNode::makeProperties()
{
    const QString translate = QStringLiteral("Translate"), rotate = QStringLiteral("Rotate"),
                  scale = QStringLiteral("Scale");
    for (std::size_t i = 0; i < 3; ++i)
        _impl->translation[i] = AddFloat(*this, Axis(int(i)), translate, QStringLiteral("Translation"));
    for (std::size_t i = 0; i < 3; ++i)
        _impl->rotation[i] = AddFloat(*this, Axis(int(i)), rotate, QStringLiteral("Rotation"));
    _impl->generalScale = AddFloat(*this, QString(), scale, scale, 1.0f);
    for (std::size_t i = 0; i < 3; ++i)
        _impl->scale[i] = AddFloat(*this, Axis(int(i)), scale, scale, 1.0f);
    _impl->visible = AddSwitch(*this, QStringLiteral("Visible"));
    _impl->visibleInSimulation = AddSwitch(*this, QStringLiteral("Visible in Simulation"));
    for (std::size_t i = 0; i < 3; ++i) {
        _impl->origin[i] = AddPrivateFloat(*this, Axis(int(i)) + QLatin1String("Origin"));
        _impl->end[i] = AddPrivateFloat(*this, Axis(int(i)) + QLatin1String("End"));
        _impl->orientation[i] = AddPrivateFloat(*this, Axis(int(i)) + QLatin1String("Orientation"));
    }
}

DzFloatProperty* DzNode::getXPosControl() const
{
    return _impl->translation[0];
}
DzFloatProperty* DzNode::getYPosControl() const
{
    return _impl->translation[1];
}
DzFloatProperty* DzNode::getZPosControl() const
{
    return _impl->translation[2];
}
DzFloatProperty* DzNode::getXRotControl() const
{
    return _impl->rotation[0];
}
DzFloatProperty* DzNode::getYRotControl() const
{
    return _impl->rotation[1];
}
DzFloatProperty* DzNode::getZRotControl() const
{
    return _impl->rotation[2];
}
DzFloatProperty* DzNode::getXScaleControl() const
{
    return _impl->scale[0];
}
DzFloatProperty* DzNode::getYScaleControl() const
{
    return _impl->scale[1];
}
DzFloatProperty* DzNode::getZScaleControl() const
{
    return _impl->scale[2];
}
DzFloatProperty* DzNode::getScaleControl() const
{
    return _impl->generalScale;
}
DzFloatProperty* DzNode::getOriginXControl() const
{
    return _impl->origin[0];
}
DzFloatProperty* DzNode::getOriginYControl() const
{
    return _impl->origin[1];
}
DzFloatProperty* DzNode::getOriginZControl() const
{
    return _impl->origin[2];
}
DzFloatProperty* DzNode::getEndXControl() const
{
    return _impl->end[0];
}
DzFloatProperty* DzNode::getEndYControl() const
{
    return _impl->end[1];
}
DzFloatProperty* DzNode::getEndZControl() const
{
    return _impl->end[2];
}
DzFloatProperty* DzNode::getOrientXControl() const
{
    return _impl->orientation[0];
}
DzFloatProperty* DzNode::getOrientYControl() const
{
    return _impl->orientation[1];
}
DzFloatProperty* DzNode::getOrientZControl() const
{
    return _impl->orientation[2];
}

DzVec3 DzNode::getOrigin(bool defaultVal) const
{
    return ToDz(defaultVal ? Defaults(_impl->origin) : Values(_impl->origin));
}
DzVec3 DzNode::getEndPoint(bool defaultVal) const
{
    return ToDz(defaultVal ? Defaults(_impl->end) : Values(_impl->end));
}

DzQuat DzNode::getOrientation(bool defaultVal) const
{
    const Eigen::Vector3d degrees = defaultVal ? Defaults(_impl->orientation) : Values(_impl->orientation);
    return ToDz(geometry::EulerRotation(degrees, geometry::RotationOrder::XYZ));
}

void DzNode::setOrigin(const DzVec3& origin)
{
    SetBoth(_impl->origin, origin);
}
void DzNode::setEndPoint(const DzVec3& endPoint)
{
    SetBoth(_impl->end, endPoint);
}
void DzNode::setOrientation(const DzVec3& degrees)
{
    SetBoth(_impl->orientation, degrees);
}
DzRotationOrder DzNode::getRotationOrder() const
{
    return _impl->order;
}

void DzNode::setRotationOrder(const DzRotationOrder& order)
{
    if (order.order() == _impl->order.order())
        return;
    openhost::RecordValue(
        this, *this, _impl->order,
        [](DzNode& node, DzRotationOrder& other) {
            const DzRotationOrder former = node._impl->order;
            node.setRotationOrder(other);
            other = former;
        },
        openhost::ChangeRank::Look, openhost::captions::change);
    _impl->order = order;
    invalidateTransform();
    announceHierarchyChange();
}

bool DzNode::inheritsScale() const
{
    return _impl->inheritsScale;
}

void DzNode::setInheritsScale(bool onOff)
{
    if (onOff == _impl->inheritsScale)
        return;
    openhost::RecordValue(
        this, *this, _impl->inheritsScale,
        [](DzNode& node, bool& other) {
            const bool former = node._impl->inheritsScale;
            node.setInheritsScale(other);
            other = former;
        },
        openhost::ChangeRank::Look, openhost::captions::change);
    _impl->inheritsScale = onOff;
    invalidateTransform();
    announceHierarchyChange();
}

void DzNode::propertyValueChanged(DzProperty* property)
{
    if (property == _impl->visible)
        emit visibilityChanged();
    else if (_impl->isTransform(property))
        invalidateTransform();
}

void DzNode::invalidateTransform()
{
    // Below a node that is out of date everything is, and has been told so.
    std::vector<DzNode*> outdated{this};
    for (std::size_t next = 0; next < outdated.size(); ++next) {
        Impl& impl = *outdated[next]->_impl;
        if (!std::exchange(impl.transformDirty, true))
            outdated.insert(outdated.end(), impl.children.begin(), impl.children.end());
    }
    for (auto node = outdated.rbegin(); node != outdated.rend(); ++node) {
        (*node)->transformInvalidated();
        emit(*node)->transformChanged();
    }
}

void DzNode::transformInvalidated()
{
    if (_impl->object)
        _impl->object->nodeMoved();
}

namespace openhost {

LocalPlace ReadPlace(const DzNode& node)
{
    const auto values = [](const DzFloatProperty* x, const DzFloatProperty* y, const DzFloatProperty* z) {
        return Eigen::Vector3d(x->getDoubleValue(), y->getDoubleValue(), z->getDoubleValue());
    };
    LocalPlace place;
    place.center = values(node.getOriginXControl(), node.getOriginYControl(), node.getOriginZControl());
    place.orientation = values(node.getOrientXControl(), node.getOrientYControl(), node.getOrientZControl());
    place.rotation = values(node.getXRotControl(), node.getYRotControl(), node.getZRotControl());
    place.translation = values(node.getXPosControl(), node.getYPosControl(), node.getZPosControl());
    place.scale = values(node.getXScaleControl(), node.getYScaleControl(), node.getZScaleControl()) *
                  node.getScaleControl()->getDoubleValue();
    place.order = static_cast<geometry::RotationOrder>(node.getRotationOrder().order());
    return place;
}

namespace {

// The file format's node transform: rotation O R O', scale O S O', each after the parent's.
NodeTransform Evaluate(const DzNode& node, const NodeTransform* parent)
{
    const LocalPlace place = ReadPlace(node);
    NodeTransform t;
    t.center = place.center;
    const Eigen::Quaterniond o = geometry::EulerRotation(place.orientation, geometry::RotationOrder::XYZ);
    const bool turned = !place.rotation.isZero(0.0), scaled = place.scale != Eigen::Vector3d::Ones();
    if (turned)
        t.rotation = o * geometry::EulerRotation(place.rotation, place.order) * o.conjugate();
    if (scaled)
        t.ownScale = o * place.scale.asDiagonal() * o.conjugate().toRotationMatrix();
    t.scale = t.ownScale;
    t.origin = place.center + place.translation;
    if (parent) {
        t.origin = parent->linear * (place.center - parent->center + place.translation) + parent->origin;
        t.rotation = turned ? parent->rotation * t.rotation : parent->rotation;
        const bool inherits = node.inheritsScale() || parent->ownScale.determinant() == 0.0;
        if (inherits)
            t.scale = parent->scale * t.ownScale;
        else
            t.scale = parent->scale * parent->ownScale.inverse() * t.ownScale;
    }
    t.linear = t.rotation.toRotationMatrix() * t.scale;
    // The sum above rounds; a node at rest below a node at rest stands exactly at its centre.
    if (parent && place.translation.isZero(0.0) && parent->isIdentity())
        t.origin = t.center;
    return t;
}

} // namespace

const NodeTransform& WorldTransform(const DzNode& node)
{
    std::vector<const DzNode*> outdated;
    const DzNode* above = &node;
    for (; above && above->_impl->transformDirty; above = above->_impl->parent)
        outdated.push_back(above);
    // From the top, and not by recursion: files may chain any number of nodes.
    for (auto next = outdated.rbegin(); next != outdated.rend(); above = *next++) {
        const NodeTransform transform = Evaluate(**next, above ? &above->_impl->transform : nullptr);
        (*next)->_impl->transform = transform;
        (*next)->_impl->transformDirty = false;
    }
    return node._impl->transform;
}

} // namespace openhost

DzVec3 DzNode::getWSPos() const
{
    return ToDz(openhost::WorldTransform(*this).origin);
}

DzVec3 DzNode::getWSPos(const DzTime&, bool defaultVal) const
{
    return defaultVal ? getOrigin(true) : getWSPos();
}

DzQuat DzNode::getWSRot() const
{
    return ToDz(openhost::WorldTransform(*this).rotation);
}
DzMatrix3 DzNode::getWSScale() const
{
    return ToDz(openhost::WorldTransform(*this).scale);
}
DzMatrix3 DzNode::getWSTransform() const
{
    return ToDz(openhost::WorldTransform(*this).linear);
}
DzVec3 DzNode::getLocalPos() const
{
    return ToDz(Values(_impl->translation));
}

void DzNode::placeAt(const DzVec3& position, const DzQuat& rotation)
{
    const openhost::LocalPlace place = openhost::ReadPlace(*this);
    openhost::NodeTransform above;
    if (_impl->parent)
        above = openhost::WorldTransform(*_impl->parent);
    const Eigen::Quaterniond o = geometry::EulerRotation(place.orientation, geometry::RotationOrder::XYZ);
    const Eigen::Quaterniond wanted(rotation.m_w, rotation.m_x, rotation.m_y, rotation.m_z);
    const Eigen::Matrix3d own = (o.conjugate() * above.rotation.conjugate() * wanted * o).toRotationMatrix();
    const Eigen::Vector3d degrees = AnglesOf(own, place.order);
    const Eigen::Vector3d world(position.m_x, position.m_y, position.m_z);
    Eigen::Vector3d translation = world - place.center;
    if (_impl->parent)
        translation = above.linear.inverse() * (world - above.origin) - (place.center - above.center);
    for (int i = 0; i < 3; ++i) {
        _impl->rotation[std::size_t(i)]->setDoubleValue(degrees[i]);
        _impl->translation[std::size_t(i)]->setDoubleValue(translation[i]);
    }
}
