// What the shared library does where the host holds back what it usually gives.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/withheld.h"

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzscene.h"
#include "ks_daz-helpers.h"
#include "ks_dlg_morph-path.h"
#include "ks_filtered-save.h"
#include "ks_morphlist.h"
#include "ks_node-list.h"
#include "tests/shared/throws.h"
#include "tests/windows/success_dialog_scene.h"

#include <QTreeWidget>

namespace {

using withheld::Withholding;

class WithheldTest : public SuccessDialogTest {};

TEST_F(WithheldTest, groups_of_properties_leave_the_picker_with_the_path_it_begins_with)
{
    const Withholding groups(withheld::propertyGroups);
    const kst::MorphPathDialog picker(nullptr, *target, "/Gantrel", "");
    const auto& tree = *picker.findChild<QTreeWidget*>();
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_EQ(tree.topLevelItem(0)->text(0), QStringLiteral("Gantrel"));
}

TEST_F(WithheldTest, a_modifier_is_passed_over)
{
    const char* const dial = "Only of this one";
    addMorph("Vera").addProperty(new DzFloatProperty(QLatin1String(dial), true, true));
    const Withholding first(withheld::firstModifier);
    EXPECT_NE(kst::daz::FindProperty(*target, kst::daz::PropertyLocation::Modifiers, dial, false), nullptr);
}

TEST_F(WithheldTest, a_node_is_passed_over_in_scene_and_selection)
{
    dzScene->setPrimarySelection(target);
    const std::size_t selected = kst::daz::GetSceneSelection().size();
    const Withholding first(withheld::firstNode);
    EXPECT_EQ(kst::daz::GetSceneSelection().size(), selected);
    EXPECT_TRUE(kst::NodeList::IsSceneNode(target));
}

TEST_F(WithheldTest, options_for_saving_are_missed_in_words)
{
    const Withholding options(withheld::nestedOptions);
    EXPECT_EQ(MessageOf([this] {
                  kst::FilteredSave::SaveMorphSupportAsset_X(*target, "/library", "Acme", "Shapes", {"Vera"},
                                                             false, false);
              }),
              "failed to create options for saving");
}

} // namespace
