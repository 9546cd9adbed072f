// The convert dialog at work: what it changes, what it remembers and what it takes back.
// SPDX-License-Identifier: MIT

#include "tests/windows/convert_dialog_scene.h"

#include "gnt_convert-figure.h"
#include "gnt_dlg_success.h"
#include "ks_daz-helpers.h"
#include "ks_figure-height.h"
#include "ks_property-setting.h"
#include "ks_string.h"
#include "tests/windows/modal_answer.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>

namespace {

using kst::str::ToStd;

const int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

class ConvertDialogState : public ConvertDialogTest {
protected:
    void storeAutoAdjust(bool on)
    {
        settings.setBoolValue(QStringLiteral("auto-adjust-proportional-height"), on);
    }
    bool isChecked(const char* name) const { return widget<QAbstractButton>(name).isChecked(); }
    QPushButton& convert() const { return widget<QPushButton>("pbtnConvert"); }

    /// Opens the picker of a morph's path and lets `answer` act in it.
    void pick(const char* row, std::function<void(QWidget&)> answer)
    {
        ModalAnswer picker(std::move(answer));
        QTest::mouseClick(&toolButton(row), Qt::LeftButton);
        EXPECT_TRUE(picker.seen);
        EXPECT_EQ(picker.parent, dialog.get());
    }
    static QLineEdit& pathIn(QWidget& picker)
    {
        return *picker.findChild<QLineEdit*>(QStringLiteral("pledMorphPropertyPath"));
    }
};

TEST_F(ConvertDialogState, begins_with_head_and_body_in_the_products_group)
{
    open();
    EXPECT_FALSE(isChecked("pchkCreateFullFigureMorph"));
    EXPECT_TRUE(isChecked("pchkCreateHeadMorph"));
    EXPECT_TRUE(isChecked("pchkCreateBodyMorph"));
    EXPECT_TRUE(convert().isEnabled());
    EXPECT_EQ(dialog->getMorphPaths(), (std::vector<std::string>{"/Gantrel", "/Gantrel", "/Gantrel"}));
    EXPECT_TRUE(isChecked("pchkAutoAdjustProportionalHeight"));
    EXPECT_EQ(dialog->getJobs(), 6);
    EXPECT_FALSE(dialog->getDebugSteps());
}

TEST_F(ConvertDialogState, remembers_jobs_and_paths_for_the_next_run_when_accepted)
{
    open();
    click("pchkCreateFullFigureMorph");
    click("pchkCreateBodyMorph");
    type("pledFullFigureMorphPath", "/Actor/V\xC3\xB6lk");
    type("pledHeadMorphPath", " no slash ");
    type("pledBodyMorphPath", "");
    type("pledHeadMorphName", "Anna's head");
    EXPECT_EQ(dialog->getJobs(), 6) << "not before it is accepted";
    QTest::mouseClick(&convert(), Qt::LeftButton);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->getJobs(), 3);
    EXPECT_EQ(dialog->getMorphPaths(), (std::vector<std::string>{"/Actor/V\xC3\xB6lk", " no slash ", ""}));
    EXPECT_EQ(dialog->getMorphNames()[GntHead], "Anna's head");
    EXPECT_TRUE(isStored("winpos_convert-figure-dialog"));
    openInNextRun();
    EXPECT_TRUE(isChecked("pchkCreateFullFigureMorph"));
    EXPECT_TRUE(isChecked("pchkCreateHeadMorph"));
    EXPECT_FALSE(isChecked("pchkCreateBodyMorph"));
    EXPECT_EQ(dialog->getMorphPaths(),
              (std::vector<std::string>{"/Actor/V\xC3\xB6lk", " no slash ", "/Gantrel"}))
        << "no path means the usual one";
    EXPECT_EQ(dialog->getMorphNames()[GntHead], "Foo Head") << "names are of one run";
}

TEST_F(ConvertDialogState, stores_jobs_that_changed_and_gives_those_that_are_stored)
{
    open();
    QTest::mouseClick(&convert(), Qt::LeftButton);
    EXPECT_FALSE(isStored("last_job_flags")) << "they are the usual ones";
    EXPECT_EQ(dialog->getJobs(), 6);
    for (const char* const key : {"morph_path_full", "morph_path_head", "morph_path_body"})
        EXPECT_EQ(ToStd(settings.getStringValue(QLatin1String(key))), "/Gantrel") << "these in any case";
    settings.setIntValue(QStringLiteral("last_job_flags"), 1);
    EXPECT_EQ(dialog->getJobs(), 1);
}

TEST_F(ConvertDialogState, remembers_neither_jobs_nor_paths_when_cancelled)
{
    open();
    click("pchkCreateFullFigureMorph");
    type("pledHeadMorphPath", "/Elsewhere");
    QTest::mouseClick(&widget<QPushButton>("pbtnCancel"), Qt::LeftButton);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(isStored("last_job_flags"));
    EXPECT_FALSE(isStored("morph_path_full"));
    EXPECT_FALSE(isStored("morph_path_head"));
    EXPECT_FALSE(isStored("morph_path_body"));
    EXPECT_TRUE(isStored("winpos_convert-figure-dialog")) << "where it stood counts in any case";
}

TEST_F(ConvertDialogState, converts_only_when_a_morph_is_to_be_made)
{
    open();
    click("pchkCreateHeadMorph");
    EXPECT_TRUE(convert().isEnabled());
    click("pchkCreateBodyMorph");
    EXPECT_FALSE(convert().isEnabled());
    QTest::keyClick(&widget<QLineEdit>("pledHeadMorphName"), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible()) << "nor by key";
    for (const char* const box :
         {"pchkCreateFullFigureMorph", "pchkCreateHeadMorph", "pchkCreateBodyMorph"}) {
        QTest::keyClick(&widget<QCheckBox>(box), Qt::Key_Space);
        EXPECT_TRUE(convert().isEnabled()) << box;
        QTest::keyClick(&widget<QCheckBox>(box), Qt::Key_Space);
        EXPECT_FALSE(convert().isEnabled()) << box;
    }
}

TEST_F(ConvertDialogState, cannot_convert_at_first_when_no_job_was_remembered)
{
    settings.setIntValue(QStringLiteral("last_job_flags"), 0);
    open();
    EXPECT_FALSE(convert().isEnabled());
}

TEST_F(ConvertDialogState, moves_the_target_with_its_dials)
{
    storeAutoAdjust(false);
    open();
    for (int row = 0; row < 4; ++row) {
        slider(row).setFocus();
        QTest::keyClick(&slider(row), Qt::Key_Right);
        EXPECT_GT(dial(row).getValue(), 0.0f) << row;
        EXPECT_EQ(dial(row).getValue(), slider(row).getValue());
        QTest::mouseClick(&dialButton(row, "Max"), Qt::LeftButton);
        EXPECT_EQ(dial(row).getValue(), 1.0f) << row;
        QTest::mouseClick(&dialButton(row, "Min"), Qt::LeftButton);
        EXPECT_EQ(dial(row).getValue(), -1.0f) << row;
        QTest::mouseClick(&dialButton(row, "Default"), Qt::LeftButton);
        EXPECT_EQ(dial(row).getValue(), 0.0f) << row;
    }
}

TEST_F(ConvertDialogState, keeps_the_dials_when_accepted)
{
    storeAutoAdjust(false);
    open();
    slider(1).setValue(0.5f);
    EXPECT_EQ(params->settingBaseFeminine->get(), 0.0f) << "not before it is accepted";
    QTest::mouseClick(&convert(), Qt::LeftButton);
    dialog.reset();
    EXPECT_EQ(dial(1).getValue(), 0.5f);
    EXPECT_EQ(params->settingBaseFeminine->get(), 0.5f);
    openInNextRun();
    EXPECT_EQ(slider(1).getValue(), 0.5f) << "it is the figure's own value";
}

TEST_F(ConvertDialogState, stores_the_jobs_before_the_dials_and_those_before_the_paths)
{
    storeAutoAdjust(false);
    open();
    click("pchkCreateFullFigureMorph");
    std::string told;
    const auto expectMidway = [this] {
        EXPECT_TRUE(isStored("last_job_flags"));
        EXPECT_FALSE(isStored("morph_path_full"));
        EXPECT_FALSE(isStored("winpos_convert-figure-dialog")) << "not accepted yet";
    };
    params->settingBaseFeminine->addListener([&] { expectMidway(), told += "feminine "; });
    params->settingBaseMasculine->addListener([&] { expectMidway(), told += "masculine "; });
    slider(1).setValue(0.5f);
    slider(2).setValue(0.25f);
    EXPECT_EQ(told, "");
    QTest::mouseClick(&convert(), Qt::LeftButton);
    EXPECT_EQ(told, "feminine masculine ");
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    for (const char* const key : {"morph_path_full", "morph_path_head", "morph_path_body"})
        EXPECT_TRUE(isStored(key)) << key;
}

TEST_F(ConvertDialogState, matches_the_height_once_by_itself)
{
    open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isMatched(); }, patienceMilliseconds));
    slider(3).setValue(0.5f);
    waitForMatching();
    EXPECT_EQ(dial(3).getValue(), 0.5f) << "the user's own value";
}

TEST_F(ConvertDialogState, puts_the_dials_back_when_cancelled)
{
    storeAutoAdjust(false);
    dial(0).setValue(0.25f);
    dial(3).setValue(-0.125f);
    params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    open();
    for (int row = 0; row < 4; ++row)
        slider(row).setValue(0.75f);
    dialog->close();
    const float before[] = {0.25f, 0.0f, 0.0f, -0.125f};
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(dial(row).getValue(), before[row]) << row;
}

TEST_F(ConvertDialogState, matches_the_height_on_demand)
{
    storeAutoAdjust(false);
    open();
    ASSERT_FALSE(isMatched());
    QTest::mouseClick(&dialButton(3, "Auto"), Qt::LeftButton);
    EXPECT_TRUE(isMatched()) << top(*target) << " for " << top(*source);
    EXPECT_EQ(slider(3).getValue(), dial(3).getValue());
    const float matched = dial(3).getValue();
    dial(3).setValue(0.0f);
    kst::daz::AdjustFigureHeight(*target, dial(3), *source);
    EXPECT_EQ(matched, dial(3).getValue());
}

TEST_F(ConvertDialogState, matches_the_height_by_itself_soon_after_it_opened)
{
    QElapsedTimer clock;
    clock.start();
    open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isMatched(); }, patienceMilliseconds));
    EXPECT_GE(clock.elapsed(), 95) << "the toolkit may fire a timer a twentieth early";
    EXPECT_EQ(slider(3).getValue(), dial(3).getValue());
    QTest::mouseClick(&widget<QPushButton>("pbtnCancel"), Qt::LeftButton);
    EXPECT_EQ(dial(3).getValue(), 0.0f);
}

TEST_F(ConvertDialogState, matches_nothing_by_itself_when_it_is_not_wanted)
{
    storeAutoAdjust(false);
    open();
    EXPECT_FALSE(isChecked("pchkAutoAdjustProportionalHeight"));
    waitForMatching();
    EXPECT_EQ(dial(3).getValue(), 0.0f);
}

TEST_F(ConvertDialogState, stores_the_automatic_matching_at_once_and_follows_it)
{
    open();
    ASSERT_TRUE(QTest::qWaitFor([this] { return isMatched(); }, patienceMilliseconds));
    click("pchkAutoAdjustProportionalHeight");
    EXPECT_EQ(dial(3).getValue(), 0.0f) << "as it was";
    EXPECT_EQ(slider(3).getValue(), 0.0f);
    EXPECT_FALSE(settings.getBoolValue(QStringLiteral("auto-adjust-proportional-height"), true));
    click("pchkAutoAdjustProportionalHeight");
    EXPECT_TRUE(isMatched());
    EXPECT_TRUE(settings.getBoolValue(QStringLiteral("auto-adjust-proportional-height"), false));
    click("pchkAutoAdjustProportionalHeight");
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(settings.getBoolValue(QStringLiteral("auto-adjust-proportional-height"), true))
        << "also when cancelled";
    EXPECT_FALSE(isStored("last_job_flags"));
}

TEST_F(ConvertDialogState, does_not_come_back_to_a_figure_that_it_let_go)
{
    for (const auto close : {&QDialog::accept, &QDialog::reject}) {
        dialog.reset(new GntConvertDialog(nullptr, *params, 1, "Foo", settings));
        ((*dialog).*close)();
        waitForMatching();
        EXPECT_EQ(dial(3).getValue(), 0.0f);
    }
    dialog.reset(new GntConvertDialog(nullptr, *params, 1, "Foo", settings));
    widget<QCheckBox>("pchkAutoAdjustProportionalHeight").setChecked(false);
    waitForMatching();
    EXPECT_EQ(dial(3).getValue(), 0.0f);
}

TEST_F(ConvertDialogState, picks_a_path_from_the_stored_one_on)
{
    settings.setStringValue(QStringLiteral("morph_path_head"), QStringLiteral("/Actor/Head"));
    open();
    type("pledHeadMorphPath", "/Typed only");
    pick("phorzHeadMorphPath", [](QWidget& picker) {
        EXPECT_EQ(ToStd(pathIn(picker).text()), "/Actor/Head");
        pathIn(picker).setText(QStringLiteral("/Actor/Picked"));
        Press("OK")(picker);
    });
    EXPECT_EQ(ToStd(text("pledHeadMorphPath")), "/Actor/Picked");
    EXPECT_EQ(ToStd(text("pledBodyMorphPath")), "/Gantrel");
    EXPECT_TRUE(isStored("winpos_morph_path"));
    EXPECT_EQ(settings.getStringValue(QStringLiteral("morph_path_head")), QStringLiteral("/Actor/Head"))
        << "the choice counts when the dialog is accepted";
}

TEST_F(ConvertDialogState, picks_a_path_for_each_morph)
{
    open();
    for (const char* const kind : {"FullFigure", "Head", "Body"}) {
        const std::string path = std::string("/Actor/") + kind;
        pick(("phorz" + std::string(kind) + "MorphPath").c_str(), [&path](QWidget& picker) {
            pathIn(picker).setText(kst::str::ToQ(path));
            Press("OK")(picker);
        });
    }
    EXPECT_EQ(dialog->getMorphPaths(),
              (std::vector<std::string>{"/Actor/FullFigure", "/Actor/Head", "/Actor/Body"}));
}

TEST_F(ConvertDialogState, offers_the_targets_own_paths)
{
    for (DzFigure* const figure : {source, target}) {
        auto* const property = new DzFloatProperty(QStringLiteral("Extra"), false, false);
        property->setPath(QStringLiteral("/Only ") + figure->getLabel());
        figure->addProperty(property);
    }
    open();
    pick("phorzBodyMorphPath", [](QWidget& picker) {
        auto& tree = *picker.findChild<QTreeWidget*>(QStringLiteral("pTreeWidgetPropertyPaths"));
        const QList<QTreeWidgetItem*> found = tree.findItems(QStringLiteral("Actor"), Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << "where the small library's morphs are";
        EXPECT_EQ(tree.findItems(QStringLiteral("Only Nova"), Qt::MatchExactly).size(), 1);
        EXPECT_EQ(tree.findItems(QStringLiteral("Only Vera"), Qt::MatchExactly).size(), 0);
        tree.setCurrentItem(found.front());
        Press("OK")(picker);
    });
    EXPECT_EQ(ToStd(text("pledBodyMorphPath")), "/Actor");
}

TEST_F(ConvertDialogState, keeps_the_path_when_the_picker_is_cancelled)
{
    open();
    type("pledHeadMorphPath", "/Typed only");
    pick("phorzHeadMorphPath", [](QWidget& picker) {
        pathIn(picker).setText(QStringLiteral("/Actor/Picked"));
        Press("Cancel")(picker);
    });
    EXPECT_EQ(ToStd(text("pledHeadMorphPath")), "/Typed only");
    EXPECT_TRUE(dialog->isVisible());
}

/// Whether the dialog was still there when the conversion showed its progress.
class Watcher {
public:
    Watcher()
    {
        QObject::connect(&openhost::Events(), &openhost::HostEvents::progressTextShown, &_context,
                         [this] { look(); });
    }
    bool hasConverted = false;
    bool hasDialog = false;

private:
    void look()
    {
        hasConverted = true;
        for (const QWidget* const window : QApplication::topLevelWidgets())
            hasDialog |= qobject_cast<const GntConvertDialog*>(window) != nullptr;
    }

    QObject _context;
};

TEST_F(ConvertDialogState, is_what_the_menu_action_asks_with)
{
    kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
    kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::BaseResolution, true);
    {
        ModalAnswer question(Press("Cancel"));
        GntConverter::Exec_X(nullptr);
        ASSERT_TRUE(question.seen);
        EXPECT_TRUE(question.title.startsWith(QStringLiteral("Convert figure ")));
        EXPECT_TRUE(question.isModal);
    }
    EXPECT_EQ(ToStd(target->getLabel()), "Nova");
    const Watcher watcher;
    ModalAnswer question([](QWidget& window) {
        const auto* const name = window.findChild<QLineEdit*>(QStringLiteral("pledFullFigureMorphName"));
        EXPECT_EQ(ToStd(name->text()), "Vera converted to G9");
        Press("Convert")(window);
    });
    GntConverter::Exec_X(nullptr);
    ASSERT_TRUE(question.seen);
    EXPECT_EQ(ToStd(target->getLabel()), "Vera converted to G9");
    EXPECT_TRUE(watcher.hasConverted);
    EXPECT_FALSE(watcher.hasDialog);
    EXPECT_TRUE(isStored("morph_path_full"));
    EXPECT_TRUE(kst::daz::FindFloatProperty(*target, kst::daz::PropertyLocation::Any,
                                            "Vera converted to G9 Head", false));
    std::vector<std::unique_ptr<GntSuccessDialog>> successes;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (auto* const success = qobject_cast<GntSuccessDialog*>(window))
            successes.emplace_back(success);
    ASSERT_EQ(successes.size(), 1u);
    const QString told = successes[0]->findChild<QLabel*>(QStringLiteral("plblIntro"))->text();
    EXPECT_TRUE(told.contains(QRegularExpression(QStringLiteral("<p>Time taken: [0-9]+ seconds?</p>"))))
        << ToStd(told);
}

} // namespace
