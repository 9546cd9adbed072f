// Cameras.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

/// Looks along its own negative Z axis, with its own Y axis up. Abstract in spirit: make a DzBasicCamera.
///
/// Public properties besides a node's: "Focal Length" and "Frame Width" (both millimetres), "Focal Distance"
/// (cm, how far away the point lies that the camera turns about), "Perspective".
class DzCamera : public DzNode {
    Q_OBJECT
public:
    DzCamera();
    ~DzCamera();

    DzFloatProperty* getFocalLengthControl() const;
    DzFloatProperty* getFrameWidthControl() const;
    DzFloatProperty* getFocalDistanceControl() const;
    DzBoolProperty* getPerspectiveControl() const;

    Q_INVOKABLE float getFocalLength() const;   ///< millimetres
    Q_INVOKABLE float getFocalDistance() const; ///< cm
    Q_INVOKABLE bool isPerspective() const;
    /// Degrees from one side of the picture to the other, along its longer side.
    Q_INVOKABLE float getFieldOfView() const;
    /// The point that the camera looks at; world space, cm.
    Q_INVOKABLE DzVec3 getFocalPoint() const;

    /// Turns the camera, upright, towards a point of the world and makes that its focal point. Nothing
    /// happens when the camera stands there.
    Q_INVOKABLE void aimAt(const DzVec3& point);
    /// Moves the camera back or forth, without turning it, until the whole box (world space, cm) can be seen.
    /// Nothing happens for an invalid box.
    /// @param aspect  width of the picture through its height, above 0
    Q_INVOKABLE void frame(const DzBox3& box, float aspect);
    /// Turns the camera about its focal point; degrees. It stops short of looking straight up or down.
    void orbit(float turn, float tilt);
    /// The same about any point of the world (cm), which stays where it is in the picture.
    void orbitAbout(const DzVec3& point, float turn, float tilt);
    /// Shifts camera and focal point along the picture; cm.
    void pan(float right, float up);
    /// Multiplies the distance to the focal point by a factor above 0.
    void dolly(float factor);
    /// The same towards any point of the world (cm), which stays where it is in the picture.
    void dollyTo(const DzVec3& point, float factor);
    /// Turns the camera about its focal point until it looks along a direction of the world, upright.
    void lookAlong(const DzVec3& direction);

private:
    void stand(const DzVec3& position, double turn, double tilt);

    DzFloatProperty* _focalLength;
    DzFloatProperty* _frameWidth;
    DzFloatProperty* _focalDistance;
    DzBoolProperty* _perspective;
};
