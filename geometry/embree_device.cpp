// The one Embree device of the process.
// SPDX-License-Identifier: MIT

#include "embree_device.h"

#include "base/errors.h"

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

} // namespace geometry
