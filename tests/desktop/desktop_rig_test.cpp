// Joints that follow what is converted in the desktop application.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QtTest/QTest>

#include <dzbone.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzscene.h>

namespace {

class DesktopRig : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
    }
    /// A wide source, as the dialog proposes.
    void convert()
    {
        DzFigure& source = openFigure(sourceFile);
        source.setLabel(QStringLiteral("Vera"));
        qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")))
            ->getValueChannel()
            ->setValue(1.0f);
        target = &openFigure(targetFile);
        click(source);
        click(*target, Qt::ControlModifier);
        ModalAnswer dialog(Press("Convert"));
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        EXPECT_TRUE(dialog.seen);
    }
    /// Of the target's joints, how many have a centre or end that something drives.
    int drivenJoints() const
    {
        int count = 0;
        for (const DzBone* const bone : target->bones()) {
            bool isDriven = false;
            for (const char* const name : {"XOrigin", "YOrigin", "ZOrigin", "XEnd", "YEnd", "ZEnd"}) {
                const DzProperty* property = bone->findProperty(QLatin1String(name));
                if (!property)
                    property = bone->findPrivateProperty(QLatin1String(name));
                isDriven = isDriven || property->getNumControllers() > 0;
            }
            count += isDriven;
        }
        return count;
    }
    static QAction& choice() { return *entry("Joints Follow New Morphs"); }

    DzFigure* target = nullptr;
};

} // namespace

TEST_F(DesktopRig, is_left_alone_unless_somebody_wishes_it)
{
    EXPECT_TRUE(choice().isCheckable());
    EXPECT_FALSE(choice().isChecked());
    convert();
    EXPECT_EQ(drivenJoints(), 0);
}

TEST_F(DesktopRig, follows_a_conversion_when_the_entry_is_checked)
{
    choice().trigger();
    EXPECT_TRUE(choice().isChecked());
    convert();
    EXPECT_GT(drivenJoints(), 0);
}

TEST_F(DesktopRig, follows_no_more_when_the_check_is_taken_away)
{
    choice().trigger();
    choice().trigger();
    convert();
    EXPECT_EQ(drivenJoints(), 0);
}

TEST_F(DesktopRig, is_remembered_for_the_next_start)
{
    choice().trigger();
    desktop.reset();
    TestHost().reset();
    AddMiniLibrary();
    desktop.reset(new desktop::DesktopWindow(attendant));
    start();
    EXPECT_TRUE(choice().isChecked());
    convert();
    EXPECT_GT(drivenJoints(), 0);
}
