// Two figures to convert, with the dialog that asks about it.
// SPDX-License-Identifier: MIT

#include "tests/windows/convert_dialog_scene.h"

#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "ks_property-setting.h"
#include "ks_timer.h"
#include "tests/plugin/mini_scene.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBoxLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzbox3.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>

#include <stdexcept>

namespace {

const QLayout& RowOf(const GntConvertDialog& dialog, int row)
{
    return *dialog.findChild<QGridLayout*>(QStringLiteral("pgridMorphBases"))
                ->itemAtPosition(row, 1)
                ->layout();
}

} // namespace

void ConvertDialogTest::SetUp()
{
    HostTest::SetUp();
    for (const char* const key :
         {"winpos_convert-figure-dialog", "winpos_morph_path", "last_job_flags",
          "auto-adjust-proportional-height", "morph_path_full", "morph_path_head", "morph_path_body"})
        settings.removeValue(QLatin1String(key));
    AddMiniLibrary();
    source = &LoadMini("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
    target = &LoadMini("People/Genesis 9/Genesis 9.duf");
    source->setLabel(QLatin1String("Vera"));
    target->setLabel(QLatin1String("Nova"));
    kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Node, "YTranslate", true)
        ->setValue(5.0f);
    dzScene->selectAllNodes(false);
    source->select(true);
    target->select(true);
    params = GntConverter::FindSourceAndTargetInSceneSelected_X();
}

void ConvertDialogTest::TearDown()
{
    dialog.reset();
    params.reset();
}

GntConvertDialog& ConvertDialogTest::open(std::size_t activeMorphCount, const char* defaultMorphName)
{
    dialog.reset();
    dialog.reset(new GntConvertDialog(nullptr, *params, activeMorphCount, defaultMorphName, settings));
    dialog->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    return *dialog;
}

GntConvertDialog& ConvertDialogTest::openInNextRun()
{
    dialog.reset();
    params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    return open();
}

QString ConvertDialogTest::text(const char* lineEdit) const
{
    return widget<QLineEdit>(lineEdit).text();
}

void ConvertDialogTest::type(const char* lineEdit, const char* newText)
{
    QLineEdit& edit = widget<QLineEdit>(lineEdit);
    edit.clear();
    for (const QChar letter : QString::fromUtf8(newText))
        QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_unknown, letter, Qt::NoModifier);
}

void ConvertDialogTest::click(const char* checkOrRadioOrButton)
{
    QAbstractButton& button = widget<QAbstractButton>(checkOrRadioOrButton);
    // The middle of a stretched box is beside its text.
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

DzFloatSlider& ConvertDialogTest::slider(int row) const
{
    return *qobject_cast<DzFloatSlider*>(RowOf(*dialog, row).itemAt(0)->widget());
}

QToolButton& ConvertDialogTest::dialButton(int row, const char* name) const
{
    const QLayout& layout = RowOf(*dialog, row);
    for (int i = 1; i < layout.count(); ++i) {
        auto* const button = qobject_cast<QToolButton*>(layout.itemAt(i)->widget());
        if (button && button->accessibleName() == QLatin1String(name))
            return *button;
    }
    throw std::out_of_range(name);
}

DzFloatProperty& ConvertDialogTest::dial(int row) const
{
    const std::shared_ptr<kst::FloatPropertySetting> settingsByRow[] = {
        params->settingCloneShape, params->settingBaseFeminine, params->settingBaseMasculine,
        params->settingProportionHeight};
    return settingsByRow[row]->getProperty();
}

float ConvertDialogTest::top(const DzFigure& figure)
{
    return figure.getWSBoundingBox().getMax().m_y;
}

bool ConvertDialogTest::isMatched() const
{
    // One step of the dial moves the top by 0.85 mm.
    return top(*target) > top(*source) && top(*target) < top(*source) + 0.1f;
}

void ConvertDialogTest::waitForMatching()
{
    bool isOver = false;
    kst::Timer timer;
    timer.launchSingle(300, [&isOver] { isOver = true; });
    EXPECT_TRUE(QTest::qWaitFor([&isOver] { return isOver; }, 20000));
}

QToolButton& ConvertDialogTest::toolButton(const char* layoutName) const
{
    const auto* const layout = dialog->findChild<QBoxLayout*>(QLatin1String(layoutName));
    for (int i = 0; i < layout->count(); ++i)
        if (auto* const button = qobject_cast<QToolButton*>(layout->itemAt(i)->widget()))
            return *button;
    throw std::out_of_range(layoutName);
}

bool ConvertDialogTest::isStored(const char* key)
{
    return DzAppSettings(QStringLiteral("Kestrom's Gantrel")).containsValue(QLatin1String(key));
}
