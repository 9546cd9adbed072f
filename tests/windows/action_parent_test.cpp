// Whose windows a conversion's are when the menu starts it.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "gnt_actions.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/plugin/scripted_forms.h"
#include "tests/windows/dialog_use_scene.h"
#include "tests/windows/modal_answer.h"

#include <QDialog>

namespace {

/// Fails when it is to ask, with another window in front than the one that stood there before.
class FailingForms : public GntForms {
public:
    explicit FailingForms(QWidget& front) : _front(front) {}

private:
    std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion&) override
    {
        _front.hide();
        throw kst::Exception("nobody can be asked");
    }
    void showSuccess(const GntSuccess&) override {}

    QWidget& _front;
    const GntFormsOverride _override{*this};
};

class ActionParent : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        AddMiniLibrary();
        DzFigure& source = LoadMini("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
        DzFigure& target = LoadMini("People/Genesis 9/Genesis 9.duf");
        kst::daz::FindFloatProperty(source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
        dzScene->selectAllNodes(false);
        source.select(true);
        target.select(true);
        ASSERT_NE(dzApp->getDialogParent(), nullptr);
    }
};

TEST_F(ActionParent, owns_the_dialog_that_asks)
{
    ScriptedForms forms;
    forms.goesOn = false;
    GntConvertFigureAction().trigger();
    ASSERT_TRUE(forms.question);
    EXPECT_EQ(forms.question->parent, dzApp->getDialogParent());
}

TEST_F(ActionParent, owns_the_dialog_that_tells)
{
    const ScriptedForms forms;
    GntConvertFigureAction().trigger();
    ASSERT_TRUE(forms.success);
    EXPECT_EQ(forms.success->parent, dzApp->getDialogParent());
}

TEST_F(ActionParent, owns_the_box_that_tells_of_a_failure)
{
    QDialog front;
    front.setModal(true);
    front.show();
    ASSERT_EQ(dzApp->getDialogParent(), &front);
    const FailingForms forms(front);
    const ModalAnswer box(Press("OK"));
    GntConvertFigureAction().trigger();
    ASSERT_TRUE(box.seen);
    EXPECT_EQ(box.parent, &front);
}

using ActionDialogs = DialogUseTest;

TEST_F(ActionDialogs, stand_before_the_window_that_the_host_gives_them)
{
    QWidget* const window = dzApp->getDialogParent();
    const QWidget* askedBefore = nullptr;
    Wish wish = FullFigure("Whole");
    wish.before = [&askedBefore](QWidget& dialog) { askedBefore = dialog.parentWidget(); };
    const GntSuccessDialog* const told = convert(wish);
    ASSERT_TRUE(window && told);
    EXPECT_EQ(askedBefore, window);
    EXPECT_EQ(told->parentWidget(), window);
}

} // namespace
