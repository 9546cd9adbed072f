// Windows of languages that are written from right to left.
// SPDX-License-Identifier: MIT

#include "apps/desktop/choose_figures_dialog.h"
#include "apps/desktop/jobs/job_dialog.h"
#include "apps/desktop/preferences_dialog.h"
#include "apps/desktop/save_morphs_dialog.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzscene.h>

#include <algorithm>

namespace {

class MirroredTest : public DesktopTest {
protected:
    void SetUp() override
    {
        QApplication::setLayoutDirection(Qt::RightToLeft);
        DesktopTest::SetUp();
        restart(); // the panes take their sides when they are made
    }
    void TearDown() override
    {
        DesktopTest::TearDown();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        TestHost().reset();
    }
    static int leftOf(const QWidget& widget) { return widget.mapTo(&window(), QPoint()).x(); }
    static void show(QDialog& dialog, const char* picture)
    {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        EXPECT_EQ(dialog.layoutDirection(), Qt::RightToLeft);
        SavePicture(dialog, picture);
    }
};

TEST_F(MirroredTest, has_menus_tools_and_panes_the_other_way_round)
{
    window().resize(1280, 800);
    QCoreApplication::processEvents();
    const QMenuBar& bar = *window().menuBar();
    EXPECT_GT(bar.actionGeometry(bar.actions().first()).left(),
              bar.actionGeometry(bar.actions().last()).left());
    SavePicture(window(), "mirrored-start");
    DzFigure& figure = openFigure(sourceFile);
    figure.select();
    QCoreApplication::processEvents();
    EXPECT_LT(leftOf(pane("DzHierarchyPane")), leftOf(pane("DzContentLibraryPane")));
    SavePicture(window(), "mirrored-window");
}

TEST_F(MirroredTest, has_dialogs_the_other_way_round)
{
    desktop::PreferencesDialog preferences(&window(), {});
    show(preferences, "mirrored-preferences");
    EXPECT_GT(preferences.findChild<QListWidget*>(QStringLiteral("Pages"))->x(),
              preferences.findChild<QStackedWidget*>()->x());
    desktop::ChooseFiguresDialog choose(&window());
    show(choose, "mirrored-choose");
    desktop::JobDialog job(&window(), {});
    show(job, "mirrored-job");
    desktop::SaveMorphsDialog save(&window());
    show(save, "mirrored-save");
}

TEST_F(MirroredTest, converts)
{
    DzFigure& source = openFigure(sourceFile);
    qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")))
        ->getValueChannel()
        ->setValue(1.0f);
    DzFigure& target = openFigure(targetFile);
    dzScene->selectAllNodes(false);
    source.select();
    target.select();
    ModalAnswer dialog([](QWidget& convert) {
        SavePicture(convert, "mirrored-convert");
        QTest::mouseClick(convert.findChild<QPushButton*>(QStringLiteral("pbtnConvert")), Qt::LeftButton);
    });
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(dialog.seen);
    EXPECT_EQ(target.getLabel().toStdString(), source.getLabel().toStdString() + " converted to G9");
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto success = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && window->objectName() == QLatin1String("SuccessDialog");
    });
    ASSERT_NE(success, windows.end());
    EXPECT_EQ((*success)->layoutDirection(), Qt::RightToLeft);
    SavePicture(**success, "mirrored-success");
}

} // namespace
