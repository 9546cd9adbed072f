// The icons that the product brings in its resources.
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <QImage>

namespace {

int CountOpaquePixels(const QImage& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += qAlpha(picture.pixel(x, y)) > 128;
    return count;
}

class IconTest : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(IconTest, is_a_24_pixel_picture_with_a_shape_to_tint)
{
    const QImage picture(QStringLiteral(":/bootstrap/24/%1.png").arg(QLatin1String(GetParam())));
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.size(), QSize(24, 24));
    EXPECT_TRUE(picture.hasAlphaChannel());
    const int opaque = CountOpaquePixels(picture);
    EXPECT_GT(opaque, 0);
    EXPECT_LT(opaque, 24 * 24 / 2) << "a filled square has no shape";
}

INSTANTIATE_TEST_SUITE_P(Icons, IconTest,
                         testing::Values("question-square", "magic", "eyedropper", "chevron-bar-left",
                                         "stop-circle", "chevron-bar-right"));
