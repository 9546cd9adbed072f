// Cameras: lens, aiming, framing.
// SPDX-License-Identifier: MIT

#include "dzbasiccamera.h"
#include "dzboolproperty.h"
#include "dzfloatproperty.h"
#include "openhost/class_registry.h"
#include "scene/camera_optics.h"
#include "scene/node_transform.h"
#include "scene/own_property.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double degree = 3.14159265358979323846 / 180.0;

DzVec3 ToDz(geometry::Vec3f v)
{
    return DzVec3(v.x, v.y, v.z);
}

geometry::Vec3f FromDz(const DzVec3& v)
{
    return {v.m_x, v.m_y, v.m_z};
}

/// Tilt about X first, then turn about Y: upright, whatever the two angles (radians) are.
DzQuat Upright(double turn, double tilt)
{
    const Eigen::Quaterniond q(Eigen::AngleAxisd(turn, Eigen::Vector3d::UnitY()) *
                               Eigen::AngleAxisd(tilt, Eigen::Vector3d::UnitX()));
    return DzQuat(q.x(), q.y(), q.z(), q.w());
}

geometry::Vec3f Axis(const DzCamera& camera, const Eigen::Vector3d& own)
{
    const Eigen::Vector3f axis = (openhost::WorldTransform(camera).rotation.normalized() * own).cast<float>();
    return {axis.x(), axis.y(), axis.z()};
}

geometry::Vec3f Forward(const DzCamera& camera)
{
    return Axis(camera, -Eigen::Vector3d::UnitZ());
}

double TurnOf(geometry::Vec3f forward)
{
    return std::atan2(double(-forward.x), double(-forward.z));
}

double TiltOf(geometry::Vec3f forward)
{
    return std::asin(std::clamp(double(forward.y), -1.0, 1.0));
}

DzFloatProperty* MakeFloat(const char* name, const char* label, float value, float min, float max)
{
    auto* const property = new DzFloatProperty(QLatin1String(name), true, false, value);
    property->setLabel(QLatin1String(label));
    property->setMinMax(min, max);
    property->setIsClamped(true);
    property->setPath(QStringLiteral("/Camera/Lens"));
    return property;
}

const openhost::BuiltInClass<DzBasicCamera> registration;

} // namespace

DzCamera::DzCamera()
    : _focalLength(MakeFloat("Focal Length", "Focal Length (mm)", 65.0f, 1.0f, 1000.0f)),
      _frameWidth(MakeFloat("Frame Width", "Frame Width (mm)", 36.0f, 1.0f, 1000.0f)),
      _focalDistance(MakeFloat("Focal Distance", "Focal Distance", 400.0f, 0.01f, 1e6f)),
      _perspective(new DzBoolProperty(QStringLiteral("Perspective"), false, false, true))
{
    _perspective->setPath(QStringLiteral("/Camera/Lens"));
    for (DzProperty* const property :
         {static_cast<DzProperty*>(_focalLength), static_cast<DzProperty*>(_frameWidth),
          static_cast<DzProperty*>(_focalDistance), static_cast<DzProperty*>(_perspective)}) {
        addProperty(property);
        openhost::KeepProperty(*property);
    }
}

DzCamera::~DzCamera() = default;

DzFloatProperty* DzCamera::getFocalLengthControl() const
{
    return _focalLength;
}
DzFloatProperty* DzCamera::getFrameWidthControl() const
{
    return _frameWidth;
}
DzFloatProperty* DzCamera::getFocalDistanceControl() const
{
    return _focalDistance;
}
DzBoolProperty* DzCamera::getPerspectiveControl() const
{
    return _perspective;
}
float DzCamera::getFocalLength() const
{
    return _focalLength->getValue();
}
float DzCamera::getFocalDistance() const
{
    return _focalDistance->getValue();
}
bool DzCamera::isPerspective() const
{
    return _perspective->getBoolValue();
}

float DzCamera::getFieldOfView() const
{
    return static_cast<float>(
        2.0 * std::atan(0.5 * double(_frameWidth->getValue()) / double(_focalLength->getValue())) / degree);
}

DzVec3 DzCamera::getFocalPoint() const
{
    return ToDz(FromDz(getWSPos()) + Forward(*this) * getFocalDistance());
}

void DzCamera::stand(const DzVec3& position, double turn, double tilt)
{
    placeAt(position, Upright(turn, tilt));
}

void DzCamera::aimAt(const DzVec3& point)
{
    const geometry::Vec3f way = FromDz(point) - FromDz(getWSPos());
    const float distance = Length(way);
    if (!(distance > 0.0f) || !std::isfinite(distance))
        return;
    const geometry::Vec3f forward = way * (1.0f / distance);
    stand(getWSPos(), TurnOf(forward), TiltOf(forward));
    _focalDistance->setValue(distance);
}

void DzCamera::frame(const DzBox3& box, float aspect)
{
    if (!box.isValid() || !(aspect > 0.0f))
        return;
    const geometry::Box3f bounds{FromDz(box.getMin()), FromDz(box.getMax())};
    const geometry::PictureCamera optics = openhost::OpticsOf(*this, aspect);
    const float slope = optics.isPerspective ? optics.halfHeight : optics.halfHeight / getFocalDistance();
    const float distance = DistanceToSee(bounds, optics, slope, aspect);
    placeAt(ToDz(bounds.center() - optics.forward * distance), getWSRot());
    _focalDistance->setValue(distance);
}

void DzCamera::orbit(float turn, float tilt)
{
    orbitAbout(getFocalPoint(), turn, tilt);
}

void DzCamera::orbitAbout(const DzVec3& point, float turn, float tilt)
{
    const geometry::Vec3f forward = Forward(*this);
    // Whoever looks down more steeply already does not jump.
    const double steepest = std::max(89.0 * degree, std::abs(TiltOf(forward)));
    const double newTurn = TurnOf(forward) + double(turn) * degree;
    const double newTilt = std::clamp(TiltOf(forward) + double(tilt) * degree, -steepest, steepest);
    const geometry::PictureCamera before = openhost::OpticsOf(*this, 1.0f);
    const geometry::Vec3f way = FromDz(point) - before.eye;
    stand(getWSPos(), newTurn, newTilt);
    const geometry::PictureCamera now = openhost::OpticsOf(*this, 1.0f);
    const geometry::Vec3f newWay = now.right * Dot(way, before.right) + now.up * Dot(way, before.up) +
                                   now.forward * Dot(way, before.forward);
    stand(ToDz(FromDz(point) - newWay), newTurn, newTilt);
}

void DzCamera::pan(float right, float up)
{
    const geometry::PictureCamera optics = openhost::OpticsOf(*this, 1.0f);
    placeAt(ToDz(optics.eye + optics.right * right + optics.up * up), getWSRot());
}

void DzCamera::dolly(float factor)
{
    dollyTo(getFocalPoint(), factor);
}

void DzCamera::dollyTo(const DzVec3& point, float factor)
{
    if (!(factor > 0.0f))
        return;
    const float before = getFocalDistance();
    _focalDistance->setValue(before * factor);
    const float shorter = getFocalDistance() / before; // within the limits of the property
    const geometry::Vec3f to = FromDz(point);
    placeAt(ToDz(to + (FromDz(getWSPos()) - to) * shorter), getWSRot());
}

void DzCamera::lookAlong(const DzVec3& direction)
{
    const float length = Length(FromDz(direction));
    if (!(length > 0.0f) || !std::isfinite(length))
        return;
    const geometry::Vec3f forward = FromDz(direction) * (1.0f / length), point = FromDz(getFocalPoint());
    stand(ToDz(point - forward * getFocalDistance()), TurnOf(forward), TiltOf(forward));
}

geometry::PictureCamera openhost::OpticsOf(const DzCamera& camera, float aspect)
{
    geometry::PictureCamera optics;
    optics.eye = FromDz(camera.getWSPos());
    optics.right = Axis(camera, Eigen::Vector3d::UnitX());
    optics.up = Axis(camera, Eigen::Vector3d::UnitY());
    optics.forward = Forward(camera);
    optics.isPerspective = camera.isPerspective();
    // The lens covers the picture's longer side.
    const auto half = static_cast<float>(std::tan(0.5 * double(camera.getFieldOfView()) * degree));
    optics.halfHeight = aspect > 1.0f ? half / aspect : half;
    if (!optics.isPerspective)
        optics.halfHeight *= camera.getFocalDistance();
    return optics;
}

DzBasicCamera::DzBasicCamera()
{
    setName(QStringLiteral("Camera"));
    setLabel(QStringLiteral("Camera"));
}

DzBasicCamera::~DzBasicCamera() = default;
