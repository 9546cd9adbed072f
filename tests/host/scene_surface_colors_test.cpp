// The colours that surfaces are drawn in.
// SPDX-License-Identifier: MIT

#include "openhost/scene_picture.h"

#include <gtest/gtest.h>

namespace {

using Colors = std::vector<std::array<float, 3>>;

Colors ColorsOf(const std::vector<std::string>& names)
{
    geometry::Topology topology;
    topology.surfaceNames = names;
    return openhost::SurfaceColors(topology);
}

} // namespace

TEST(SurfaceColors, tell_parts_of_a_body_apart_however_their_names_are_spelled)
{
    const Colors plain = ColorsOf({"Torso", "Sclera", "Iris", "Pupils", "Eyelashes"});
    ASSERT_EQ(plain.size(), 5u);
    for (std::size_t a = 0; a < plain.size(); ++a)
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_NE(plain[a], plain[b]) << a << ' ' << b;
    EXPECT_EQ(ColorsOf({"Torso", "LeftSclera", "irises", "PUPILS_2", "EyeLashes"}), plain);
    EXPECT_EQ(plain[0], geometry::PictureItem().color);
}

TEST(SurfaceColors, are_none_where_no_name_tells_of_one)
{
    EXPECT_EQ(ColorsOf({"Torso", "Irish Lace", "Splash", "Thumbnailer", ""}), Colors());
    EXPECT_EQ(ColorsOf({}), Colors());
}
