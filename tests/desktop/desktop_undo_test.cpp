// Undo and redo as a user of the desktop application has them.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/host/undo_scene.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <random>
#include <string>
#include <vector>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzundostack.h>

namespace {

class DesktopUndo : public DesktopTest {
protected:
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&window(), key, modifiers);
        QCoreApplication::processEvents();
    }
    static void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
    static void redo() { press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
    static std::string undoText() { return textOf("&Undo"); }
    static std::string redoText() { return textOf("&Redo"); }

private:
    static std::string textOf(const char* word)
    {
        for (const QAction* const action : window().findChildren<QAction*>())
            if (action->text().startsWith(QLatin1String(word)))
                return action->text().toStdString();
        for (const QAction* const menu : window().menuBar()->actions())
            for (const QAction* const action : menu->menu()->actions())
                if (action->text().startsWith(QLatin1String(word)))
                    return action->text().toStdString();
        return {};
    }
};

/// Goes any way through steps that can be undone, and knows what the scene was at each of them.
class StepWalk {
public:
    explicit StepWalk(unsigned seed) : _random(seed), _states{SceneText()} {}

    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(_random); }

    void note()
    {
        QCoreApplication::processEvents();
        const std::string now = SceneText();
        if (now == _states[_at])
            return; // what is as it was is no step
        ++_made;
        _states.resize(++_at);
        _states.push_back(now);
    }
    void goBack()
    {
        if (_at == 0)
            return;
        EXPECT_TRUE(dzUndoStack->undo());
        QCoreApplication::processEvents();
        EXPECT_EQ(SceneText(), _states[--_at]);
    }
    void goOn()
    {
        if (_at + 1 == _states.size())
            return;
        EXPECT_TRUE(dzUndoStack->redo());
        QCoreApplication::processEvents();
        EXPECT_EQ(SceneText(), _states[++_at]);
    }
    int made() const { return _made; } ///< steps, those too that were taken back and given up
    void goAllTheWay()
    {
        while (_at > 0 && !testing::Test::HasFailure())
            goBack();
        while (_at + 1 < _states.size() && !testing::Test::HasFailure())
            goOn();
    }

private:
    std::mt19937 _random;
    std::vector<std::string> _states;
    std::size_t _at = 0;
    int _made = 0;
};

/// One of the things that people do to a figure, each in one go.
void ChangeFigure(StepWalk& walk, DzSkeleton& figure)
{
    const auto number = float(1 + walk.below(90));
    switch (walk.below(6)) {
    case 0:
        figure.setLabel(QStringLiteral("Vera %1").arg(double(number)));
        return;
    case 1:
        return figure.setVisible(!figure.isVisible());
    case 2:
        return figure.getXPosControl()->setValue(number);
    case 3:
        return figure.getYRotControl()->setValue(number);
    case 4:
        if (auto* const wide =
                qobject_cast<DzMorph*>(figure.getObject()->findModifier(QStringLiteral("Wide"))))
            wide->getValueChannel()->setValue(number / 100);
        return;
    default:
        dzScene->removeNode(&figure);
    }
}

} // namespace

TEST_F(DesktopUndo, tells_a_story_by_keys)
{
    start();
    EXPECT_EQ(undoText(), "&Undo");
    EXPECT_FALSE(dzUndoStack->canUndo());
    const std::string empty = SceneText();
    DzFigure& figure = openFigure(sourceFile);
    const QString label = figure.getLabel();
    EXPECT_EQ(undoText(), "&Undo Add " + label.toStdString());
    const std::string loaded = SceneText();

    sceneItem(figure)->setText(0, QStringLiteral("Vera & Co"));
    QCoreApplication::processEvents();
    EXPECT_EQ(undoText(), "&Undo Rename Vera && Co");
    sceneItem(figure)->setCheckState(1, Qt::Unchecked);
    QCoreApplication::processEvents();
    EXPECT_EQ(undoText(), "&Undo Hide Vera && Co");
    click(figure);
    const std::string hidden = SceneText();
    press(Qt::Key_Delete);
    EXPECT_EQ(undoText(), "&Undo Delete Vera && Co");
    EXPECT_EQ(dzScene->getNumNodes(), 0);

    undo();
    EXPECT_EQ(SceneText(), hidden) << "with the selection";
    EXPECT_EQ(redoText(), "&Redo Delete Vera && Co");
    undo();
    undo();
    EXPECT_EQ(SceneText(), loaded);
    undo();
    EXPECT_EQ(SceneText(), empty);
    EXPECT_FALSE(window().isWindowModified()) << "all is as at the beginning";
    EXPECT_EQ(undoText(), "&Undo");
    for (int i = 0; i < 4; ++i)
        redo();
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_EQ(redoText(), "&Redo");
    EXPECT_TRUE(window().isWindowModified());
    undo();
    EXPECT_EQ(SceneText(), hidden);
}

TEST_F(DesktopUndo, takes_a_slider_that_is_dragged_back_in_one_step)
{
    start();
    DzFigure& figure = openFigure(sourceFile);
    click(figure);
    auto* const morph = qobject_cast<DzMorph*>(figure.getObject()->findModifier(QStringLiteral("Wide")));
    DzFloatSlider slider(&window(), QStringLiteral("Wide"));
    DzFloatProperty& dial = *morph->getValueControl();
    QObject::connect(&slider, &DzFloatSlider::editStart, [&] { dial.beginEdit(); });
    QObject::connect(&slider, &DzFloatSlider::editEnd, [&] { dial.finishEdit(); });
    QObject::connect(&slider, &DzFloatSlider::valueChanged, [&](float value) { dial.setValue(value); });
    slider.resize(300, 30);
    slider.show();
    const std::string before = SceneText();
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(40, 15));
    for (int x = 45; x < 140; x += 5) {
        QTest::mouseMove(&slider, QPoint(x, 15));
        QCoreApplication::processEvents();
    }
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(140, 15));
    QCoreApplication::processEvents();
    EXPECT_GT(dial.getValue(), 0.0f);
    EXPECT_EQ(undoText(), "&Undo Set Wide");
    undo();
    EXPECT_EQ(SceneText(), before);
}

TEST_F(DesktopUndo, takes_a_whole_conversion_back_and_does_it_again)
{
    start();
    DzFigure& source = openFigure(sourceFile);
    source.setLabel(QStringLiteral("Vera"));
    qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")))
        ->getValueChannel()
        ->setValue(1.0f);
    DzFigure& target = openFigure(targetFile);
    click(source);
    click(target, Qt::ControlModifier);
    const std::string before = SceneText();
    const int morphs = target.getObject()->getNumModifiers();
    ModalAnswer dialog(Press("Convert"));
    press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    ASSERT_TRUE(dialog.seen);
    ASSERT_GT(target.getObject()->getNumModifiers(), morphs);
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->objectName() == QLatin1String("SuccessDialog"))
            widget->close();
    QCoreApplication::processEvents();
    TestHost().purge();
    EXPECT_EQ(undoText().substr(0, 13), "&Undo Convert") << undoText();
    const std::string after = SceneText();
    window().activateWindow(); // no window manager does it here
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    undo();
    EXPECT_EQ(SceneText(), before);
    EXPECT_EQ(target.getObject()->getNumModifiers(), morphs);
    redo();
    EXPECT_EQ(SceneText(), after);
    undo();
    EXPECT_EQ(SceneText(), before);
}

TEST_F(DesktopUndo, goes_any_way_through_files_and_changes)
{
    start();
    for (unsigned seed = 1; seed <= 6 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        dzUndoStack->clear();
        StepWalk walk(seed);
        for (int step = 0; step < 60 && !HasFailure(); ++step) {
            const unsigned choice = walk.below(10);
            if (choice < 3) {
                walk.goBack();
            } else if (choice < 5) {
                walk.goOn();
            } else {
                const int figures = dzScene->getNumSkeletons();
                if (figures == 0 || (figures < 4 && walk.below(5) == 0))
                    openFigure(walk.below(2) == 0 ? sourceFile : targetFile);
                else
                    ChangeFigure(walk, *dzScene->getSkeleton(int(walk.below(unsigned(figures)))));
                walk.note();
            }
        }
        walk.goAllTheWay();
        EXPECT_GT(walk.made(), 10) << "else this shows little";
    }
}

TEST_F(DesktopUndo, begins_anew_with_a_new_scene)
{
    start();
    openFigure(sourceFile);
    EXPECT_TRUE(dzUndoStack->canUndo());
    ModalAnswer question(Press("Discard"));
    entry("New")->trigger();
    QCoreApplication::processEvents();
    EXPECT_FALSE(dzUndoStack->canUndo());
    EXPECT_EQ(undoText(), "&Undo");
}
