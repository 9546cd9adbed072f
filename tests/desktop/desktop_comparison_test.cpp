// Two figures against each other: the difference in colours, and side by side.
// SPDX-License-Identifier: MIT

#include "apps/desktop/color_bar.h"
#include "apps/desktop/compared_figures.h"
#include "apps/desktop/comparison_panel.h"
#include "apps/desktop/difference_work.h"
#include "openhost/figure_area.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QKeyEvent>
#include <QLabel>
#include <QWheelEvent>
#include <QtTest/QTest>

#include <cmath>
#include <cstring>

#include <dz3dviewport.h>
#include <dzcamera.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpresentation.h>
#include <dzundostack.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>

namespace {

geometry::PolygonMesh Square(float height)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = 4;
    topology->addFace(std::vector<std::uint32_t>{0, 1, 2, 3});
    mesh.topology = topology;
    mesh.positions = {{0, height, 0}, {10, height, 0}, {10, height, 10}, {0, height, 10}};
    return mesh;
}

std::shared_ptr<const desktop::DifferenceQuestion> Question(float height)
{
    desktop::DifferenceQuestion question{{Square(0.0f)}, {Square(height)}};
    return std::make_shared<const desktop::DifferenceQuestion>(std::move(question));
}

class DesktopComparison : public DesktopTest {
protected:
    static Dz3DViewport& view() { return *window().getViewportMgr()->getActiveViewport()->get3DViewport(); }
    static QString numbers()
    {
        return view().findChild<QLabel*>(QStringLiteral("DifferenceNumbers"))->text();
    }
    static bool comesTo(const char* text)
    {
        return QTest::qWaitFor([text] { return numbers().startsWith(QLatin1String(text)); });
    }
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    static QColor colorAt(const QPoint& at) { return view().grab().toImage().pixelColor(at); }
    static DzFloatProperty& wide(DzFigure& figure)
    {
        return *qobject_cast<DzMorph*>(figure.getObject()->findModifier(QStringLiteral("Wide")))
                    ->getValueChannel();
    }
    /// Twice the same figure.
    void openTwo()
    {
        start();
        first = &openFigure(sourceFile);
        second = &openFigure(sourceFile);
        second->setLabel(QStringLiteral("Second"));
        settle();
    }
    DzFigure* first = nullptr;
    DzFigure* second = nullptr;
};

} // namespace

TEST(Difference, is_the_distance_to_the_nearest_of_the_other_surfaces)
{
    desktop::DifferenceQuestion question;
    question.from = {Square(0.0f), Square(3.0f)};
    question.to = {Square(1.0f), Square(9.0f)};
    const desktop::DifferenceAnswer answer = desktop::Measure(question);
    ASSERT_EQ(answer.distances.size(), 2u);
    for (const float distance : answer.distances[0])
        EXPECT_FLOAT_EQ(distance, 1.0f);
    for (const float distance : answer.distances[1])
        EXPECT_FLOAT_EQ(distance, 2.0f);
    EXPECT_NEAR(answer.summary.mean, 1.5, 1e-6);
    EXPECT_NEAR(answer.summary.max, 2.0, 1e-6);
    EXPECT_DOUBLE_EQ(answer.scale.topMm, 20.0);
}

TEST(Difference, counts_what_cannot_be_measured)
{
    desktop::DifferenceQuestion question{{Square(0.0f)}, {Square(1.0f)}};
    question.from[0].positions[2].x = NAN;
    EXPECT_EQ(desktop::Measure(question).unknown, 1u);
    EXPECT_NEAR(desktop::Measure(question).summary.max, 1.0, 1e-6);
    question.to.clear();
    EXPECT_EQ(desktop::Measure(question).unknown, 4u);
}

TEST(DifferenceWork, answers_the_newest_of_many_questions_last)
{
    desktop::DifferenceWork work;
    std::vector<double> heard;
    QObject::connect(&work, &desktop::DifferenceWork::answered,
                     [&heard](const std::shared_ptr<const desktop::DifferenceAnswer>& answer) {
                         heard.push_back(answer->summary.max);
                     });
    for (int i = 1; i <= 20; ++i)
        work.ask(Question(float(i)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !heard.empty() && heard.back() == 20.0; }));
    EXPECT_LE(heard.size(), 2u) << "what nobody waits for any more is left out";
    work.ask(Question(1.0f));
    work.drop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !work.isBusy(); }));
    EXPECT_EQ(heard.back(), 20.0);
}

TEST_F(DesktopComparison, takes_two_figures)
{
    start();
    EXPECT_FALSE(entry("Difference")->isEnabled());
    openFigure(sourceFile);
    settle();
    EXPECT_FALSE(entry("Difference")->isEnabled());
    EXPECT_FALSE(entry("Side by Side")->isEnabled());
    openFigure(targetFile);
    settle();
    EXPECT_TRUE(entry("Difference")->isEnabled());
    EXPECT_TRUE(entry("Side by Side")->isEnabled());
    EXPECT_FALSE(entry("Difference")->isChecked());
    EXPECT_EQ(view().findChild<QWidget*>(QStringLiteral("ComparisonPanel")), nullptr) << "no cost when off";
}

TEST_F(DesktopComparison, has_the_newer_generation_as_the_result_in_either_order)
{
    start();
    openFigure(targetFile);
    openFigure(sourceFile);
    settle();
    QTest::keyClick(&window(), Qt::Key_D, Qt::ControlModifier);
    const auto* const result = view().findChild<QComboBox*>(QStringLiteral("ComparedResult"));
    EXPECT_EQ(result->currentText().toStdString(), "Genesis 9");
    EXPECT_TRUE(QTest::qWaitFor([] { return numbers().startsWith(QLatin1String("Mean")); }));
    SavePicture(window(), "desktop-difference");
}

TEST_F(DesktopComparison, follows_a_dial_and_does_not_mind_where_the_figures_stand)
{
    openTwo();
    entry("Difference")->trigger();
    EXPECT_TRUE(comesTo("Mean 0.00 mm, p95 0.00 mm, max 0.00 mm")) << numbers().toStdString();
    wide(*second).setValue(1.0f);
    ASSERT_TRUE(QTest::qWaitFor([] { return !numbers().contains(QLatin1String("max 0.00 mm")); }));
    const QString changed = numbers();
    second->getXPosControl()->setValue(400.0f);
    QTest::qWait(100);
    EXPECT_EQ(numbers().toStdString(), changed.toStdString());
    wide(*second).setValue(0.0f);
    EXPECT_TRUE(comesTo("Mean 0.00 mm, p95 0.00 mm, max 0.00 mm")) << numbers().toStdString();
}

TEST_F(DesktopComparison, hears_nothing_of_a_figure_that_comes_back_after_it_ended)
{
    openTwo();
    entry("Difference")->trigger();
    ASSERT_TRUE(comesTo("Mean"));
    dzScene->selectAllNodes(false);
    second->select();
    QTest::keyClick(&window(), Qt::Key_Delete);
    settle();
    ASSERT_FALSE(entry("Difference")->isChecked());
    QTest::keyClick(&window(), Qt::Key_Z, Qt::ControlModifier);
    settle();
    ASSERT_EQ(dzScene->getNumSkeletons(), 2);
    dzScene->selectAllNodes(false);
    wide(*second).setValue(1.0f);
    const QImage plain = view().grab().toImage();
    QTest::qWait(100);
    EXPECT_EQ(view().grab().toImage(), plain) << "the surfaces keep their own colours";
}

TEST_F(DesktopComparison, measures_again_when_a_part_of_the_body_is_hidden_or_shown)
{
    openTwo();
    DzFigure& part = openFigure(targetFile);
    auto* const presentation = new DzPresentation;
    presentation->setType(QStringLiteral("Follower/Attachment/Head/Face/Eyes"));
    part.setPresentation(presentation);
    part.setFollowTarget(second);
    settle();
    entry("Difference")->trigger();
    ASSERT_TRUE(comesTo("Mean"));
    EXPECT_FALSE(numbers().contains(QLatin1String("max 0.00 mm"))) << numbers().toStdString();
    part.setVisible(false);
    EXPECT_TRUE(comesTo("Mean 0.00 mm, p95 0.00 mm, max 0.00 mm")) << numbers().toStdString();
    part.setVisible(true);
    EXPECT_TRUE(QTest::qWaitFor([] { return !numbers().contains(QLatin1String("max 0.00 mm")); }));
}

TEST_F(DesktopComparison, gives_no_numbers_where_nothing_was_measured)
{
    openTwo();
    desktop::ComparedFigures figures;
    desktop::ComparisonPanel panel(view(), figures);
    const auto* const text = panel.findChild<QLabel*>(QStringLiteral("DifferenceNumbers"));
    panel.showAnswer(desktop::Measure({{Square(0.0f)}, {}}));
    EXPECT_EQ(text->text().toStdString(), "4 vertices could not be measured, in grey.");
    panel.showAnswer(desktop::Measure({{}, {Square(0.0f)}}));
    EXPECT_EQ(text->text().toStdString(), "There is nothing to measure.");
    panel.showAnswer(desktop::Measure({{Square(0.0f)}, {Square(0.0f)}}));
    EXPECT_TRUE(text->text().startsWith(QLatin1String("Mean 0.00 mm"))) << text->text().toStdString();
}

TEST_F(DesktopComparison, never_shows_the_answer_about_one_source_as_that_of_another)
{
    openTwo();
    DzFigure& third = openFigure(sourceFile);
    wide(third).setValue(1.0f);
    settle();
    entry("Difference")->trigger();
    ASSERT_TRUE(comesTo("Mean 0.00 mm"));
    auto* const source = view().findChild<QComboBox*>(QStringLiteral("ComparedSource"));
    source->setFocus();
    QTest::keyClick(source, Qt::Key_End);
    ASSERT_EQ(source->currentIndex(), 2);
    EXPECT_TRUE(comesTo("The difference is being measured.")) << numbers().toStdString();
    ASSERT_TRUE(comesTo("Mean"));
    EXPECT_FALSE(numbers().contains(QLatin1String("max 0.00 mm"))) << numbers().toStdString();
}

TEST_F(DesktopComparison, takes_a_scale_and_tells_what_lies_beyond_it)
{
    openTwo();
    wide(*second).setValue(1.0f);
    entry("Difference")->trigger();
    auto* const top = view().findChild<QDoubleSpinBox*>(QStringLiteral("DifferenceScale"));
    ASSERT_TRUE(QTest::qWaitFor([] { return numbers().startsWith(QLatin1String("Mean")); }));
    EXPECT_FALSE(top->isEnabled());
    view().findChild<QCheckBox*>(QStringLiteral("DifferenceScaleAutomatic"))->setChecked(false);
    ASSERT_TRUE(top->isEnabled());
    top->setValue(0.015);
    EXPECT_EQ(top->value(), 0.015);
    top->setValue(0.01);
    EXPECT_TRUE(numbers().contains(QLatin1String("lie beyond the scale, in blue-green")))
        << numbers().toStdString();
    top->setValue(10000.0);
    EXPECT_TRUE(numbers().contains(QLatin1String("Nothing lies beyond the scale.")))
        << numbers().toStdString();
}

TEST_F(DesktopComparison, ends_with_a_figure_and_leaves_the_surfaces_own_colours)
{
    openTwo();
    const QImage before = view().grab().toImage();
    entry("Difference")->trigger();
    EXPECT_TRUE(comesTo("Mean"));
    EXPECT_NE(view().grab().toImage(), before);
    entry("Difference")->trigger();
    EXPECT_EQ(view().grab().toImage(), before);
    entry("Difference")->trigger();
    dzScene->removeNode(second);
    settle();
    EXPECT_FALSE(entry("Difference")->isChecked());
    EXPECT_FALSE(entry("Difference")->isEnabled());
    EXPECT_FALSE(view().findChild<QWidget*>(QStringLiteral("ComparisonPanel"))->isVisible());
}

TEST_F(DesktopComparison, lets_the_figures_be_chosen_and_swaps_them)
{
    openTwo();
    openFigure(targetFile);
    settle();
    entry("Side by Side")->trigger();
    auto* const source = view().findChild<QComboBox*>(QStringLiteral("ComparedSource"));
    const auto* const result = view().findChild<QComboBox*>(QStringLiteral("ComparedResult"));
    ASSERT_EQ(source->count(), 3);
    EXPECT_EQ(result->currentText().toStdString(), "Second");
    source->setFocus();
    QTest::keyClick(source, Qt::Key_Down);
    EXPECT_EQ(source->currentText().toStdString(), "Second");
    EXPECT_EQ(result->currentIndex(), 0) << "the two have changed places";
}

TEST_F(DesktopComparison, shows_each_figure_in_its_half_through_one_camera)
{
    openTwo();
    entry("View Buttons")->trigger(); // which lie over the right half
    entry("Side by Side")->trigger();
    settle();
    const QPoint left(view().width() / 4, view().height() / 2), right = left + QPoint(view().width() / 2, 0);
    EXPECT_EQ(view().findNodeAt(left), first);
    EXPECT_EQ(view().findNodeAt(right), second);
    view().getCamera()->orbit(40.0f, 10.0f);
    const QImage both = view().grab().toImage();
    const int half = both.width() / 2;
    // Without the boxes of what is selected and without the names, the two are the same picture.
    dzScene->selectAllNodes(false);
    const QImage clear = view().grab().toImage();
    const QRect middle(both.width() / 8, both.height() / 3, both.width() / 4, both.height() / 4);
    int different = 0;
    for (int y = middle.top(); y <= middle.bottom(); ++y)
        for (int x = middle.left(); x <= middle.right(); ++x) {
            const QColor a = clear.pixelColor(x, y), b = clear.pixelColor(x + half + both.width() % 2, y);
            different += std::abs(a.red() - b.red()) > 2;
        }
    // The figures stand 75 cm apart, where the floats of places have other last digits.
    EXPECT_LE(different, middle.width() * middle.height() / 100);
    SavePicture(window(), "desktop-side-by-side");
    entry("Side by Side")->trigger();
    settle();
    EXPECT_NE(view().grab().toImage(), clear);
}

TEST_F(DesktopComparison, keeps_clicks_on_the_panel_from_the_view_behind_it)
{
    openTwo();
    entry("Side by Side")->trigger();
    settle();
    auto* const panel = view().findChild<QWidget*>(QStringLiteral("ComparisonPanel"));
    click(*first);
    const DzVec3 place = view().getCamera()->getWSPos();
    QTest::mouseClick(panel, Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    QWheelEvent wheel(QPointF(3, 3), panel->mapToGlobal(QPoint(3, 3)), QPoint(), QPoint(0, 240), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(panel, &wheel);
    EXPECT_EQ(dzScene->getPrimarySelection(), first);
    EXPECT_LT((view().getCamera()->getWSPos() - place).length(), 1e-4f);
}

TEST_F(DesktopComparison, keeps_dialogs_from_the_whole_of_a_divided_view)
{
    openTwo();
    ASSERT_NE(openhost::FigureArea(view()), view().rect());
    entry("Side by Side")->trigger();
    EXPECT_EQ(openhost::FigureArea(view()), view().rect());
}

TEST_F(DesktopComparison, leaves_the_key_esc_of_its_panel_to_the_window)
{
    openTwo();
    entry("Side by Side")->trigger();
    auto* const panel = view().findChild<QWidget*>(QStringLiteral("ComparisonPanel"));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    escape.setAccepted(true);
    static_cast<QObject*>(panel)->event(&escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST(ColorBar, writes_its_end_in_full)
{
    desktop::ColorBar bar(nullptr);
    for (const auto& [end, text] :
         {std::pair(1000.0, "Colours from 0 to 1000 mm,"), std::pair(0.015, "Colours from 0 to 0.015 mm,"),
          std::pair(0.0075, "Colours from 0 to 0.0075 mm,"), std::pair(2.5, "Colours from 0 to 2.5 mm,")}) {
        bar.setTop(end);
        EXPECT_EQ(bar.accessibleName().left(int(std::strlen(text))).toStdString(), text);
    }
}

TEST_F(DesktopComparison, can_be_both_at_once)
{
    openTwo();
    wide(*second).setValue(1.0f);
    entry("Difference")->trigger();
    entry("Side by Side")->trigger();
    ASSERT_TRUE(comesTo("Mean"));
    dzScene->selectAllNodes(false);
    const QPoint left(view().width() / 4, view().height() / 3), right = left + QPoint(view().width() / 2, 0);
    EXPECT_NE(colorAt(left), colorAt(right));
    SavePicture(window(), "desktop-difference-side-by-side");
}
