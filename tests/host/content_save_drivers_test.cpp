// Morphs that drive each other, saved for every figure of their kind.
// SPDX-License-Identifier: MIT

#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "ks_filtered-save.h"
#include "openhost/link_copies.h"
#include "scene/formula_controller.h"
#include "tests/host/save_fixture.h"

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using openhost::FormulaOperation;

class SavedDrivers : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        figure = openMini();
        ASSERT_TRUE(figure);
        driver = addMorph(*figure, "Strong", {{9}, {{5, 0, 0}}});
        driven = addMorph(*figure, "Long Arm", {{9}, {{0, 5, 0}}});
        for (const DzMorph* const morph : {driver, driven})
            morph->getValueControl()->setMinMax(-9, 9);
        dialOf(*driven).insertController(new DzERCLink(&dialOf(*driver), 0.5, 0.25));
    }

    static DzFloatProperty& dialOf(const DzMorph& morph) { return *morph.getValueControl(); }
    void saveMorphs(const std::vector<std::string>& names) const
    {
        EXPECT_TRUE(kst::FilteredSave::SaveMorphSupportAsset_X(*figure, _library.string(), "Acme", "Arms",
                                                               names, false, false));
    }
    json formulasOf(const char* name) const
    {
        const fs::path folder = _library / "data/Acme/Mini/Base/Morphs/Acme/Arms";
        return json::parse(ReadBytes(folder / (std::string(name) + ".dsf")))
            .at("modifier_library")
            .at(0)
            .value("formulas", json::array());
    }

    DzFigure* figure = nullptr;
    DzMorph *driver = nullptr, *driven = nullptr;
};

const char* const strongUri = "Mini:/data/Acme/Mini/Base/Morphs/Acme/Arms/Strong.dsf#Strong?value";

} // namespace

TEST_F(SavedDrivers, are_named_by_formulas_of_the_morph_that_is_driven)
{
    saveMorphs({"Long Arm", "Strong"});
    EXPECT_EQ(formulasOf("Strong"), json::array());
    const json formulas = formulasOf("Long Arm");
    ASSERT_EQ(formulas.size(), 1u);
    EXPECT_EQ(formulas[0].at("output"),
              "Mini:/data/Acme/Mini/Base/Morphs/Acme/Arms/Long%20Arm.dsf#Long%20Arm?value");
    EXPECT_EQ(formulas[0].at("operations").at(0), (json{{"op", "push"}, {"url", strongUri}}));
}

TEST_F(SavedDrivers, drive_on_every_later_load)
{
    saveMorphs({"Strong"});
    saveMorphs({"Long Arm"});
    const DzFigure* const later = openMini();
    ASSERT_TRUE(later);
    ASSERT_NE(later, figure);
    DialOf(*later, "Strong")->setValue(3);
    EXPECT_FLOAT_EQ(DialOf(*later, "Long Arm")->getValue(), 1.75f);
}

TEST_F(SavedDrivers, that_no_file_has_are_left_to_the_scene)
{
    saveMorphs({"Long Arm"});
    EXPECT_EQ(formulasOf("Long Arm"), json::array());
    dialOf(*driver).setValue(3);
    EXPECT_FLOAT_EQ(dialOf(*driven).getValue(), 1.75f) << "it still drives here";
}

TEST_F(SavedDrivers, can_be_others_in_copies_of_the_links)
{
    DzMorph* const other = addMorph(*figure, "Other", {{9}, {{1, 0, 0}}});
    DzMorph* const copy = addMorph(*figure, "Copy", {{9}, {{1, 0, 0}}});
    for (const DzMorph* const morph : {other, copy})
        dialOf(*morph).setMinMax(-9, 9);
    auto* const keyed = new DzERCLink(DzERCLink::ERCKeyed, &dialOf(*driver));
    keyed->addKeyValue(0, 0);
    keyed->addKeyValue(1, 4);
    dialOf(*driven).insertController(keyed);
    FormulaOperation push;
    push.kind = FormulaOperation::Kind::PushProperty;
    push.property = &dialOf(*driver);
    dialOf(*driven).insertController(
        openhost::FormulaController::Create(openhost::FormulaStage::Multiply, {push}));
    const auto counterpart = [&](const DzNumericProperty& input) -> DzNumericProperty* {
        return &input == &dialOf(*driver) ? &dialOf(*other) : nullptr;
    };
    for (int i = 0; i < 3; ++i) {
        const auto* const link = qobject_cast<DzNumericController*>(dialOf(*driven).getController(i));
        auto made = openhost::CopyLink(*link, counterpart);
        ASSERT_TRUE(made) << i;
        dialOf(*copy).insertController(made.release());
        EXPECT_EQ(openhost::CopyLink(*link, [](const auto&) { return nullptr; }), nullptr);
    }
    dialOf(*other).setValue(0.5f);
    EXPECT_FLOAT_EQ(dialOf(*copy).getValue(), (0.5f * 0.5f + 0.25f + 2.0f) * 0.5f);
    EXPECT_FLOAT_EQ(dialOf(*driven).getValue(), 0.0f) << "the first driver is at 0, and a factor";
}
