// A conversion from the menu action's entry, its dialogs answered by a script.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "gnt_actions.h"
#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/plugin/scripted_forms.h"
#include "tests/shared/throws.h"

#include <stdexcept>

namespace {

class ExecTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        AddMiniLibrary();
        source = &LoadMini("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
        target = &LoadMini("People/Genesis 9/Genesis 9.duf");
        source->setLabel(QLatin1String("Vera"));
        kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
        dzScene->selectAllNodes(false);
        source->select(true);
        target->select(true);
    }

    static int boxes() { return LogText().count(QLatin1String("Critical error message box")); }

    ScriptedForms forms;
    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
};

using ExecDeathTest = ExecTest;

TEST_F(ExecTest, asks_converts_and_tells)
{
    forms.jobs = GntJobs(GntJobFlag::Head) | GntJobFlag::Body;
    GntConverter::Exec_X(nullptr);
    ASSERT_TRUE(forms.question && forms.success);
    EXPECT_EQ(forms.question->defaultMorphName, "Vera converted to G9");
    EXPECT_EQ(forms.question->activeMorphCount, 1u);
    EXPECT_EQ(&forms.question->params->figSource, source);
    EXPECT_EQ(forms.success->outcome.params, forms.question->params);
    ASSERT_EQ(forms.success->outcome.created.size(), 2u);
    EXPECT_EQ(forms.success->outcome.created[0].name, "Head");
    EXPECT_EQ(forms.success->outcome.created[1].name, "Body");
    EXPECT_EQ(forms.success->outcome.created[1].property->getPath(), QLatin1String("/G/Body"));
    EXPECT_FALSE(forms.success->elapsed.empty());
    EXPECT_TRUE(forms.success->note.empty());
    EXPECT_EQ(target->getLabel(), QLatin1String("Vera converted to G9"));
    EXPECT_EQ(source->getLabel(), QLatin1String("Vera"));
    EXPECT_TRUE(LogText().contains(QLatin1String("Entering GntConverter::exec_X()")));
    EXPECT_TRUE(LogText().contains(QLatin1String("Leaving GntConverter::exec_X()")));
}

TEST_F(ExecTest, changes_and_tells_nothing_when_the_user_does_not_want_to)
{
    forms.goesOn = false;
    const QString label = target->getLabel();
    const int nodes = dzScene->getNumNodes();
    GntConverter::Exec_X(nullptr);
    EXPECT_TRUE(forms.question);
    EXPECT_FALSE(forms.success);
    EXPECT_EQ(target->getLabel(), label);
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
}

TEST_F(ExecTest, tells_when_a_figure_went_while_the_user_was_asked)
{
    for (const bool isSource : {true, false}) {
        SetUp();
        forms.meanwhile = [this, isSource] {
            dzScene->removeNode(isSource ? source : target);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        const int nodes = dzScene->getNumNodes();
        EXPECT_EQ(MessageOf([] { GntConverter::Exec_X(nullptr); }),
                  "the source or the target figure is no longer in the scene");
        EXPECT_FALSE(forms.success);
        EXPECT_LT(dzScene->getNumNodes(), nodes) << "and nothing was loaded";
    }
}

TEST_F(ExecTest, asks_nothing_when_there_is_nothing_to_convert)
{
    kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(0.0f);
    EXPECT_EQ(MessageOf([] { GntConverter::Exec_X(nullptr); }),
              "source figure " + Quoted("Vera") + " has no morphs dialed in; nothing to do");
    EXPECT_FALSE(forms.question);
}

/// Loses the morph between the transfer and the dialing, as a host may.
class MorphLoser {
public:
    MorphLoser()
    {
        QObject::connect(&openhost::Events(), &openhost::HostEvents::progressTextShown, &_context,
                         [](const QString& text) {
                             if (text == QLatin1String("Dialing up morphs in fit suit with transfers"))
                                 lose();
                         });
    }

private:
    static void lose()
    {
        for (int i = 0; i < dzScene->getNumNodes(); ++i)
            if (DzObject* const object = dzScene->getNode(i)->getObject())
                if (DzModifier* const morph =
                        object->findModifier(QStringLiteral("Temporary high-res morph")))
                    morph->setName(QStringLiteral("Elsewhere"));
    }

    QObject _context;
};

TEST_F(ExecTest, names_morphs_that_were_not_there_after_the_transfer)
{
    const MorphLoser loser;
    GntConverter::Exec_X(nullptr);
    ASSERT_TRUE(forms.success);
    EXPECT_EQ(
        forms.success->note,
        "<p><b>Note:</b> The following morphs had non-zero values in the source figure but could not be "
        "found in the target figure created by the Transfer Utility:</p><ul><li><li>Temporary high-res "
        "morph (100.0%)</li></li></ul>");
}

TEST_F(ExecTest, says_nothing_more_when_a_step_is_cancelled)
{
    forms.debugSteps = true; // without display the question is answered with Cancel
    const int before = boxes();
    GntConvertFigureAction action;
    action.trigger();
    EXPECT_EQ(boxes(), before);
    EXPECT_FALSE(forms.success);
    EXPECT_EQ(source->getLabel(), QLatin1String("Vera")) << "restored";
}

TEST_F(ExecTest, shows_no_box_when_the_user_does_not_want_to)
{
    forms.goesOn = false;
    const int before = boxes();
    GntConvertFigureAction action;
    action.trigger();
    EXPECT_TRUE(forms.question);
    EXPECT_EQ(boxes(), before);
}

TEST_F(ExecTest, shows_a_failure_in_the_box_of_the_action)
{
    dzScene->selectAllNodes(false);
    const int before = boxes();
    GntConvertFigureAction action;
    action.trigger();
    EXPECT_EQ(boxes(), before + 1);
    EXPECT_TRUE(LogText().contains(QStringLiteral(
        "KeGNT: Critical error message box in Kestrom's Gantrel V" GANTREL_VERSION
        ": Could not convert figure: you must "
        "select two figures (a \u201Csource\u201D Genesis 8 or 8.1 and a \u201Ctarget\u201D Genesis 9) in "
        "the "
        "scene\n")));
}

TEST_F(ExecTest, asks_the_newest_forms_as_long_as_they_live)
{
    ScriptedForms outer;
    outer.goesOn = false;
    {
        ScriptedForms inner;
        inner.goesOn = false;
        GntConvertFigureAction().trigger();
        EXPECT_TRUE(inner.question);
        EXPECT_FALSE(outer.question);
    }
    GntConvertFigureAction().trigger();
    EXPECT_TRUE(outer.question);
}

/// Forms that fail in a way of their own.
template <class Failure>
class FailingForms : public GntForms {
public:
    explicit FailingForms(Failure failure) : _failure(failure) {}

private:
    std::unique_ptr<GntConvertForm> makeConvertForm(const GntConvertQuestion&) override { throw _failure; }
    void showSuccess(const GntSuccess&) override {}

    Failure _failure;
    const GntFormsOverride _override{*this};
};

TEST_F(ExecTest, shows_any_standard_exception_in_the_box)
{
    const FailingForms failing{std::length_error("too long")};
    const int before = boxes();
    GntConvertFigureAction().trigger();
    EXPECT_EQ(boxes(), before + 1);
    EXPECT_TRUE(
        LogText().contains(QStringLiteral("Critical error message box in Kestrom's Gantrel V" GANTREL_VERSION
                                          ": Could not convert figure: too long\n")));
}

TEST_F(ExecDeathTest, ends_the_process_on_what_is_no_standard_exception)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            const FailingForms failing{1};
            GntConvertFigureAction().trigger();
        },
        "terminate called");
}

} // namespace
