// A conversion that asks before each step.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"
#include "tests/plugin/scripted_forms.h"

#include "dzprogress.h"
#include "gnt_actions.h"
#include "ks_exception.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QTimer>

namespace {

/// Answers the question about the next step: goes on as often as it is told, then cancels.
class StepAnswers : public QObject {
public:
    explicit StepAnswers(std::size_t goingOn) : _goingOn(goingOn) { qApp->installEventFilter(this); }

    std::vector<std::string> titles, texts;

private:
    // The newest filter comes first, so its answer comes before that of a host without display.
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = event->type() == QEvent::Show ? qobject_cast<QMessageBox*>(watched) : nullptr;
        if (box)
            QTimer::singleShot(0, box, [this, box] { answer(*box); });
        return QObject::eventFilter(watched, event);
    }

    void answer(QMessageBox& box)
    {
        const bool goesOn = texts.size() < _goingOn;
        titles.push_back(box.windowTitle().toStdString());
        texts.push_back(box.text().toStdString());
        for (QAbstractButton* const button : box.buttons())
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(goesOn ? "Continue" : "Cancel"))
                return button->click();
        box.reject();
    }

    std::size_t _goingOn;
};

constexpr std::size_t always = 1000;

const std::vector<std::string> questions{
    "Next step: Exporting source as OBJ",
    "Next step: Loading stock figure for morph conversion",
    "Next step: Exporting stock figure as OBJ for morph conversion",
    "Next step: Removing stock figure",
    "Next step: Loading stock figure OBJ again",
    "Next step: Creating converted morph",
    "Next step: Dialing up converted morph",
    "Next step: Loading temporary G9 for fit suit",
    "Next step: Exporting temporary G9 as OBJ for fit suit",
    "Next step: Removing temporary G9",
    "Next step: Loading fit suit OBJ again",
    "Next step: Running Transfer Utility to create morphs in fit suit OBJ",
    "Next step: Dialing up morphs in fit suit with transfers",
    "Next step: Exporting fit suit with transfers as OBJ again",
    "Next step: Adjusting target G9 before creating morphs",
    "Next step: Creating full figure morph",
    "Next step: Creating head morph",
    "Next step: Creating body morph",
};

class DebugSteps : public ConversionFixture {
protected:
    void SetUp() override
    {
        ConversionFixture::SetUp();
        forms.jobs = allJobs();
        forms.debugSteps = true;
    }

    static int boxes() { return LogText().count(QLatin1String("Critical error")); }

    ScriptedForms forms;
};

TEST_F(DebugSteps, ask_before_each_of_them)
{
    loadPair(genesis8Female);
    const StepAnswers answers(always);
    GntConverter::Exec_X(nullptr);
    EXPECT_EQ(answers.texts, questions);
    EXPECT_EQ(answers.titles, std::vector<std::string>(questions.size(), "Next step?"));
    ASSERT_TRUE(forms.success);
    EXPECT_EQ(forms.success->outcome.created.size(), 3u);
}

TEST_F(DebugSteps, ask_nothing_when_they_are_off)
{
    loadPair(genesis8Female);
    forms.debugSteps = false;
    const StepAnswers answers(0);
    GntConverter::Exec_X(nullptr);
    EXPECT_TRUE(answers.texts.empty());
}

TEST_F(DebugSteps, may_each_be_the_last_without_a_trace_on_figures_and_next_conversion)
{
    loadPair(genesis8Female);
    convert(allJobs());
    const MadeMorphs fresh = madeMorphs();
    for (std::size_t step = 0; step < questions.size(); ++step) {
        SCOPED_TRACE(questions[step]);
        loadPair(genesis8Female);
        const auto before = stateOfBoth();
        {
            const StepAnswers answers(step);
            EXPECT_THROW(GntConverter::Exec_X(nullptr), kst::CanceledException);
            EXPECT_EQ(answers.texts.size(), step + 1);
            EXPECT_EQ(answers.texts.back(), questions[step]);
        }
        EXPECT_FALSE(forms.success);
        EXPECT_EQ(stateOfBoth(), before);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(DzProgress::getDepth(), 0);
        deleteLeftOvers();
        selectBoth();
        convert(allJobs());
        EXPECT_EQ(madeMorphs(), fresh);
    }
}

TEST_F(DebugSteps, are_cancelled_without_a_box_from_the_menu_action)
{
    const int before = boxes();
    for (const std::size_t step : {std::size_t(0), std::size_t(9), questions.size() - 1}) {
        loadPair(genesis3Female);
        const StepAnswers answers(step);
        GntConvertFigureAction action;
        action.trigger();
        EXPECT_EQ(answers.texts.size(), step + 1) << "one more would be a box";
        EXPECT_FALSE(forms.success);
        EXPECT_EQ(source->getLabel(), QLatin1String("Vera"));
    }
    EXPECT_EQ(boxes(), before);
}

} // namespace
