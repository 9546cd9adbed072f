// The one Embree device of the process.
// SPDX-License-Identifier: MIT

#include "embree_device.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "geometry/errors.h"
#include "geometry/limits.h"

#include <algorithm>
#include <cmath>

namespace geometry {

RTCDevice EmbreeDevice()
{
    static const RTCDevice device = [] {
        const RTCDevice created = rtcNewDevice(nullptr);
        if (!created)
            throw base::Error("cannot start the ray tracer");
        return created;
    }();
    return device;
}

void CheckReach(base::Span<const Vec3f> positions)
{
    // What is no number belongs to triangles without an area, which no scene gets.
    const auto isFar = [](Vec3f p) {
        return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) > farthestPosition;
    };
    const auto far = std::find_if(positions.begin(), positions.end(), isFar);
    if (far != positions.end())
        throw TopologyError("vertex {} lies farther than {:g} cm from the origin", far - positions.begin(),
                            farthestPosition);
}

void CommitScene(RTCScene scene)
{
    const auto goesOn = [](void*, double) { return !base::IsCancelled(); };
    rtcSetSceneProgressMonitorFunction(scene, goesOn, nullptr);
    rtcCommitScene(scene);
    base::ThrowIfCancelled();
}

} // namespace geometry
