// What rays find on a processor without wide registers, where Embree takes packets of them apart.
// SPDX-License-Identifier: MIT

#include "geometry/picture.h"
#include "geometry/picture_stage.h"
#include "shapes.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <embree3/rtcore.h>

#include <limits>
#include <string>
#include <vector>

using namespace geometry;

namespace {

RTCDevice theDevice = nullptr;

} // namespace

/// Stands before Embree's own: the processor is taken for one with 128 bits only.
RTCDevice rtcNewDevice(const char* config)
{
    using NewDevice = RTCDevice (*)(const char*);
    static const auto original = reinterpret_cast<NewDevice>(dlsym(RTLD_NEXT, "rtcNewDevice"));
    theDevice = original(((config ? config + std::string(",") : std::string()) + "max_isa=sse2").c_str());
    return theDevice;
}

namespace {

/// What is left on the stack by others, which none of the rays may depend on.
void LeaveOnStack(float value)
{
    volatile float left[4096];
    for (volatile float& one : left)
        one = value;
}

/// A wall in the plane z = 0, from x = 0 to 10 and y = 0 to 10 cm.
PolygonMesh Wall()
{
    return shapes::FromFaces({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {{0, 1, 2, 3}});
}

} // namespace

TEST(OlderProcessor, rays_in_any_number_find_what_is_in_their_way)
{
    const PolygonMesh wall = Wall();
    const PictureItem item{wall.view()};
    const PictureStage stage({&item, 1});
    stage.prepareToTrace();
    ASSERT_EQ(rtcGetDeviceProperty(theDevice, RTC_DEVICE_PROPERTY_NATIVE_RAY8_SUPPORTED), 0);
    for (std::size_t count = 1; count <= 17; ++count) {
        std::vector<Ray> rays;
        for (std::size_t i = 0; i < count; ++i) // every other one passes beside the wall
            rays.push_back({{i % 2 ? 5.0f : 15.0f, 5.0f, 3.0f}, {0, 0, -1}});
        std::vector<std::uint8_t> areFree(count, 7);
        for (const float left : {-1.0f, std::numeric_limits<float>::quiet_NaN()}) {
            LeaveOnStack(left);
            stage.findFree(rays, 0.01f, INFINITY, areFree.data());
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_EQ(areFree[i], i % 2 ? 0 : 1) << "ray " << i << " of " << count;
        }
    }
}

TEST(OlderProcessor, a_picture_has_its_shadows)
{
    const PolygonMesh ball = shapes::Sphere(10.0f, 16, 24);
    const PolygonMesh mesh = shapes::Joined(ball, shapes::Moved(shapes::Sphere(3.0f, 12, 16), {-6, 10, 9}));
    PictureOptions options;
    options.width = 60;
    options.height = 80;
    const auto light = [&](const PolygonMesh& shown) {
        options.frame = Box3f{{-10, -10, -10}, {10, 14, 14}};
        const PictureItem item{shown.view()};
        const Picture picture = Render({&item, 1}, options);
        std::size_t sum = 0;
        for (int row = 35; row < 50; ++row) // of the large ball, below the small one
            for (int column = 22; column < 40; ++column)
                sum += picture.rgb[3 * static_cast<std::size_t>(row * options.width + column)];
        return sum;
    };
    EXPECT_LT(light(mesh), light(ball));
}
