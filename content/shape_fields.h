// Shapes as closed-form displacement fields of the canonical body.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "distance_field.h"

#include <vector>

namespace content {

/// A displacement in cm for each place of the canonical body. A shape so given is known exactly on every
/// topology, at the joints within the body too.
using ShapeField = Vec3f (*)(Vec3f);

/// Some of a field.
struct ShapePart {
    ShapeField field;
    float amount;
};
Vec3f Displacement(base::Span<const ShapePart> parts, Vec3f canonical);

/// 1 on the head, falling off over the neck, 0 on the body.
float HeadInfluence(Vec3f canonical);
/// 1 on the arms, falling off towards the trunk; legs stay 0.
float ArmInfluence(Vec3f canonical);
/// How far left of the middle a place counts as the left leg's: 0 on the right, 1 once clear of the crotch.
float LeftSide(Vec3f canonical);
/// How much a place follows the left thigh.
float LeftLegInfluence(Vec3f canonical);

/// The angle between the legs of older and newer neutrals, at each hip.
constexpr float spreadDegrees = 6.5f;

/// Each at amount 1.
namespace shapes {

// Whole body and trunk
Vec3f Taller(Vec3f p);           ///< everything 10 % larger, from the ground
Vec3f LegsSpread(Vec3f p);       ///< both legs turned outwards by spreadDegrees, feet flat and on the ground
Vec3f LongerLegs(Vec3f p);       ///< 6 cm
Vec3f BroaderShoulders(Vec3f p); ///< 2 cm on each side
Vec3f WiderHips(Vec3f p);        ///< 1.6 cm on each side
Vec3f NarrowerWaist(Vec3f p);    ///< by a tenth
Vec3f FullerBreasts(Vec3f p);    ///< 4 cm
Vec3f FullerSeat(Vec3f p);       ///< 2 cm
Vec3f LargerBelly(Vec3f p);      ///< 7 cm
Vec3f Heavier(Vec3f p);          ///< 3 to 5 cm around the trunk, less along the limbs
Vec3f MoreMuscle(Vec3f p);
Vec3f ThickerNeck(Vec3f p);
Vec3f LargerHands(Vec3f p); ///< by a fifth
Vec3f LargerFeet(Vec3f p);  ///< by a fifth
Vec3f TurnedTrunk(Vec3f p); ///< left shoulder higher, left arm thicker

// Head
Vec3f LargerHead(Vec3f p); ///< by an eighth
Vec3f NarrowerFace(Vec3f p);
Vec3f WiderJaw(Vec3f p);
Vec3f LongerChin(Vec3f p);
Vec3f HeavierBrow(Vec3f p);
Vec3f LargerEyes(Vec3f p);
Vec3f FullerCheeks(Vec3f p);
Vec3f LongerNose(Vec3f p);
Vec3f WiderNose(Vec3f p);
Vec3f FullerLips(Vec3f p);
Vec3f PointedEars(Vec3f p);
Vec3f UnevenFace(Vec3f p); ///< jaw to the left, right brow up

// Age
Vec3f Stooped(Vec3f p);   ///< the chest and what is above bent forward by 9 degrees
Vec3f Sagging(Vec3f p);   ///< breasts, belly and seat hang, by up to 3 cm
Vec3f AgedFace(Vec3f p);  ///< hollow temples and cheeks, bags, jowls, longer ears and nose
Vec3f YoungFace(Vec3f p); ///< round cheeks, short nose and chin, no brow

// Expressions: what lies loose behind lids and lips stays, but for the lower teeth
Vec3f EyesClosed(Vec3f p);
Vec3f MouthOpen(Vec3f p); ///< the jaw turned by 16 degrees
Vec3f Smile(Vec3f p);
Vec3f BrowsUp(Vec3f p);
Vec3f Frown(Vec3f p);

} // namespace shapes

} // namespace content
