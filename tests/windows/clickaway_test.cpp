// The watcher that answers the host's pop-ups.
// SPDX-License-Identifier: MIT

#include "dzdformmodifier.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "ks_clickaway.h"
#include "tests/host/content_fixture.h"
#include "tests/plugin/mini_library.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <vector>

namespace {

/// More than a tick ever takes, so that a watcher that does nothing fails a test and does not hang it.
constexpr int patience = 20000;

QDialog* Show(QDialog& dialog, const char* objectName, const char* title)
{
    dialog.setObjectName(QLatin1String(objectName));
    dialog.setWindowTitle(QLatin1String(title));
    dialog.show();
    return &dialog;
}

/// A dialog that notes which of its buttons was clicked.
class ButtonDialog : public QDialog {
public:
    explicit ButtonDialog(const QStringList& texts)
    {
        for (const QString& text : texts) {
            auto* const button = new QPushButton(text, this);
            connect(button, &QPushButton::clicked, [this, text] {
                clicked.append(text);
                close();
            });
        }
    }
    QStringList clicked;
};

/// Returns after the watchers made before have looked at the windows that are open now: a watcher made later
/// ticks later, and it has to tick twice.
void WaitForALook()
{
    const kst::Clickaway later(false);
    for (int look = 0; look < 2; ++look) {
        QDialog probe;
        Show(probe, "", "Error opening file");
        const auto count = later.handledCount(kst::Clickaway::OpenError);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return later.handledCount(kst::Clickaway::OpenError) > count; }, patience));
    }
}

class ClickawayTest : public LibraryTest {
protected:
    void TearDown() override { EXPECT_EQ(QApplication::activeModalWidget(), nullptr); }
};

using kst::Clickaway;

TEST_F(ClickawayTest, leaves_windows_alone_that_were_open_before_it)
{
    QDialog before;
    Show(before, "MissingAssetsDialog", "Missing Files");
    const Clickaway watcher(false);
    WaitForALook();
    EXPECT_TRUE(before.isVisible());
    EXPECT_EQ(watcher.handledCount(Clickaway::MissingFiles), 0u);
}

TEST_F(ClickawayTest, closes_and_counts_the_windows_that_it_knows)
{
    const Clickaway watcher(false);
    QDialog missing, error, duplicate;
    Show(missing, "MissingAssetsDialog", "Missing Files");
    Show(error, "", "Error opening file");
    Show(duplicate, "", "Duplicate Formulas Found");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return !missing.isVisible() && !error.isVisible() && !duplicate.isVisible(); }, patience));
    EXPECT_GE(watcher.handledCount(Clickaway::MissingFiles), 1u);
    EXPECT_GE(watcher.handledCount(Clickaway::OpenError), 1u);
    EXPECT_GE(watcher.handledCount(Clickaway::DuplicateFormulas), 1u);
}

TEST_F(ClickawayTest, goes_by_the_object_name_too)
{
    const Clickaway watcher(false);
    QDialog named, unnamed;
    Show(named, "MyBox", "Error opening file");
    Show(unnamed, "", "Missing Files");
    WaitForALook();
    EXPECT_TRUE(named.isVisible());
    EXPECT_TRUE(unnamed.isVisible());
}

TEST_F(ClickawayTest, presses_the_second_button_of_the_limits_question_or_on_demand_the_first)
{
    for (const bool first : {false, true}) {
        const Clickaway watcher(first);
        ButtonDialog question({QStringLiteral("One"), QStringLiteral("Two")});
        Show(question, "", "Preset Exceeds Limits");
        EXPECT_TRUE(QTest::qWaitFor([&] { return !question.isVisible(); }, patience));
        EXPECT_EQ(question.clicked.first().toStdString(), first ? "One" : "Two");
    }
}

TEST_F(ClickawayTest, counts_but_does_not_answer_a_limits_question_with_three_buttons)
{
    const Clickaway watcher(false);
    ButtonDialog question({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
    Show(question, "", "Preset Exceeds Limits");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return watcher.handledCount(Clickaway::PresetLimits) >= 2; }, patience));
    EXPECT_TRUE(question.isVisible());
    EXPECT_TRUE(question.clicked.isEmpty());
}

TEST_F(ClickawayTest, accepts_d_former_options_whose_title_only_begins_as_it_should)
{
    const Clickaway watcher(false);
    ButtonDialog options({QStringLiteral("Cancel"), QStringLiteral("Accept"), QStringLiteral("Accept all")});
    Show(options, "DzDFormPresetLoadOptionsDlg", "D-Former Load Options (2)");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !options.isVisible(); }, patience));
    EXPECT_EQ(options.clicked.first().toStdString(), "Accept");
    ButtonDialog lower({QStringLiteral("Accept")});
    Show(lower, "DzDFormPresetLoadOptionsDlg", "d-former load options");
    WaitForALook();
    EXPECT_TRUE(lower.isVisible());
}

TEST_F(ClickawayTest, counts_but_leaves_open_d_former_options_without_an_accept_button)
{
    const Clickaway watcher(false);
    ButtonDialog options({QStringLiteral("Accept all"), QStringLiteral("accept")});
    Show(options, "DzDFormPresetLoadOptionsDlg", "D-Former Load Options");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return watcher.handledCount(Clickaway::DFormOptions) >= 2; }, patience));
    EXPECT_TRUE(options.isVisible());
    EXPECT_TRUE(options.clicked.isEmpty());
}

TEST_F(ClickawayTest, changes_nothing_where_no_pop_up_opens)
{
    const Clickaway watcher(false);
    QDialog other;
    Show(other, "", "Something else");
    WaitForALook();
    EXPECT_TRUE(other.isVisible());
    // The look is waited for with a window that counts as an opening error.
    for (const Clickaway::Kind kind : {Clickaway::MissingFiles, Clickaway::DuplicateFormulas,
                                       Clickaway::PresetLimits, Clickaway::DFormOptions})
        EXPECT_EQ(watcher.handledCount(kind), 0u);
}

TEST_F(ClickawayTest, does_not_touch_a_window_that_went_while_another_was_handled)
{
    const Clickaway watcher(false);
    auto* const child = new QDialog;
    QDialog first;
    QObject::connect(&first, &QDialog::finished, [child] { delete child; });
    Show(first, "", "Duplicate Formulas Found");
    Show(*child, "", "Error opening file 2");
    child->setWindowTitle(QStringLiteral("Error opening file"));
    child->setObjectName(QString());
    const QPointer<QDialog> alive(child);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alive; }, patience));
}

TEST_F(ClickawayTest, lets_a_d_former_load_unattended)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    const auto preset = writeDForm(10, {1});
    const Clickaway watcher(false);
    EXPECT_TRUE(open(preset));
    EXPECT_GE(watcher.handledCount(Clickaway::DFormOptions), 1u);
    EXPECT_NE(figure->getObject()->findModifier(QStringLiteral("D-Former_1")), nullptr);
}

TEST_F(ClickawayTest, lets_the_head_split_preset_load_as_a_conversion_does)
{
    const auto library = folder("mini");
    WriteMiniLibrary(library);
    use(library);
    ASSERT_TRUE(open(library / "People/Genesis 9/Genesis 9.duf"));
    const DzNode* const figure = dzScene->getPrimarySelection();
    const auto watcher = std::make_unique<Clickaway>(false);
    EXPECT_TRUE(open(library / "People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf"));
    EXPECT_GE(watcher->handledCount(Clickaway::DFormOptions), 1u);
    const auto* const modifier =
        qobject_cast<DzDFormModifier*>(figure->getObject()->findModifier(QStringLiteral("D-Former_1")));
    ASSERT_NE(modifier, nullptr);
    EXPECT_NE(modifier->getInfluenceWeights(), nullptr);
}

TEST_F(ClickawayTest, answers_nothing_any_more_once_it_is_gone)
{
    std::make_unique<Clickaway>(false).reset();
    QDialog missing;
    Show(missing, "MissingAssetsDialog", "Missing Files");
    WaitForALook(); // of a watcher that came after the window
    EXPECT_TRUE(missing.isVisible());
}

TEST_F(ClickawayTest, answers_the_hosts_own_windows_from_within_their_event_loops)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    dson::Modifier driver = mini::Control("Driver");
    driver.formulas.assign(2, dson::MakeDeltaAdd(mini::Dial("Up"), mini::Dial("Driver"), 0.25));
    mini::WriteMorph(driver, _library);
    const auto character = mini::WriteCharacter(
        _library, {{dson::MakeUri(mini::MorphInfo("None").id, "None"), "None", "", 1.0}}, "Otto");
    const auto pose = writePose(R"([{"url": "name://@selection#Up:?value/value", "keys": [[0, 2.5]]}])");
    for (const bool first : {false, true}) {
        const Clickaway watcher(first);
        EXPECT_FALSE(open(_library / "Nothing.duf"));
        EXPECT_TRUE(open(character));
        DzNode* const figure = dzScene->getPrimarySelection();
        EXPECT_TRUE(open(pose));
        EXPECT_EQ(DialOf(*figure, "Up")->getValue(), first ? 2.5f : 1.0f);
        for (const Clickaway::Kind kind : {Clickaway::MissingFiles, Clickaway::OpenError,
                                           Clickaway::DuplicateFormulas, Clickaway::PresetLimits})
            EXPECT_GE(watcher.handledCount(kind), 1u) << kind;
    }
}

TEST_F(ClickawayTest, sees_windows_in_the_order_of_their_names_and_then_of_their_titles)
{
    QDialog last, second, first;
    Show(last, "Order b", "A");
    Show(second, "Order a", "B");
    Show(first, "Order a", "A");
    const kst::Snapshot snapshot;
    std::vector<const QWidget*> seen;
    for (const auto& window : snapshot.windows)
        if (window->objectName.startsWith(QStringLiteral("Order")))
            seen.push_back(window->widget);
    EXPECT_EQ(seen, (std::vector<const QWidget*>{&first, &second, &last}));
}

TEST_F(ClickawayTest, counts_windows_of_one_name_and_title_as_one)
{
    QDialog one, two, untitled;
    Show(one, "Twin", "Twins");
    Show(two, "Twin", "Twins");
    Show(untitled, "Untitled", "");
    const kst::Snapshot snapshot;
    int twins = 0;
    for (const auto& window : snapshot.windows) {
        twins += window->windowTitle == QStringLiteral("Twins");
        EXPECT_FALSE(window->windowTitle.isEmpty());
    }
    EXPECT_EQ(twins, 1);
}

} // namespace
