// Whether dials are still as their assets define them.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "library/asset_origin.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

QString Q(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

TEST(DefinedDial, has_changed_when_any_of_its_settings_has)
{
    const std::function<void(DzFloatProperty&)> changes[] = {
        [](DzFloatProperty& dial) { dial.setLabel(Q("Other")); },
        [](DzFloatProperty& dial) { dial.setPath(Q("/Other")); },
        [](DzFloatProperty& dial) { dial.setDoubleMinMax(-0.5, 1.0); },
        [](DzFloatProperty& dial) { dial.setDoubleMinMax(0.0, 1.0000000000000002); },
        [](DzFloatProperty& dial) { dial.setIsClamped(true); },
        [](DzFloatProperty& dial) { dial.setHidden(true); },
        [](DzFloatProperty& dial) { dial.lock(true); }};
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        DzFloatProperty dial(Q("Up"), true, true, 0.0f);
        dial.setDoubleMinMax(0.0, 1.0);
        EXPECT_FALSE(openhost::HasChanged(dial)) << i;
        openhost::SetAsDefined(dial);
        dial.setValue(0.5f);
        EXPECT_FALSE(openhost::HasChanged(dial)) << i;
        changes[i](dial);
        EXPECT_TRUE(openhost::HasChanged(dial)) << i;
    }
}

TEST(DefinedDial, tells_its_label_and_its_path_apart)
{
    DzFloatProperty dial(Q("Up"), true, true, 0.0f);
    dial.setLabel(Q("a/b"));
    dial.setPath(Q("/c"));
    openhost::SetAsDefined(dial);
    dial.setLabel(Q("a"));
    dial.setPath(Q("/b/c"));
    EXPECT_TRUE(openhost::HasChanged(dial));
}
