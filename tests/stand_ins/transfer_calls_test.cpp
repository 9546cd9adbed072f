// What the Transfer Utility is told by a conversion.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/noting_tools.h"

#include "gnt_convert-impl.h"
#include "tests/windows/success_dialog_scene.h"

#include <dzfigure.h>
#include <dzfloatproperty.h>

namespace {

/// Of a conversion of Vera to Nova.
class TransferCalls : public SuccessDialogTest {
protected:
    void SetUp() override
    {
        SuccessDialogTest::SetUp();
        kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
        noting::calls.clear();
    }
};

TEST_F(TransferCalls, ask_for_all_morphs_and_list_none_when_none_is_named)
{
    GntConverter::Impl(params).runTransferUtility(*source, *target, {});
    EXPECT_EQ(noting::calls,
              (std::vector<std::string>{
                  "setSource Vera", "setTarget Nova", "setParentToFigure false", "setTransferBinding true",
                  "setTransferSelectionMap true", "setTransferFaceGroups true",
                  "setTransferRegionGroups true", "setTransferMorphs true", "setTransferSourceMorphs 5",
                  "setOverrideExistingMorphs true", "setTargetReplacesSource false", "doTransfer"}));
}

TEST_F(TransferCalls, list_the_morphs_in_their_order_and_want_all_but_a_parent_and_a_replaced_source)
{
    GntConverter::Impl(params).runTransferUtility(*source, *target, {{"First", 1.0f}, {"Second", 0.5f}});
    EXPECT_EQ(noting::calls,
              (std::vector<std::string>{"setSource Vera", "setTarget Nova", "setParentToFigure false",
                                        "setTransferBinding true", "setTransferSelectionMap true",
                                        "setTransferFaceGroups true", "setTransferRegionGroups true",
                                        "setTransferMorphs true", "setTransferSourceMorphs 1",
                                        "setMorphTransferList First+Second", "setOverrideExistingMorphs true",
                                        "setTargetReplacesSource false", "doTransfer"}));
}

} // namespace
