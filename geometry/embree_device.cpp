// The one Embree device of the process.
// SPDX-License-Identifier: MIT

#include "geometry/embree_device.h"

#include "geometry/errors.h"

namespace geometry {

RTCDevice EmbreeDevice()
{
    static const RTCDevice device = [] {
        const RTCDevice created = rtcNewDevice(nullptr);
        if (!created)
            throw Error("cannot start the ray tracer");
        return created;
    }();
    return device;
}

} // namespace geometry
