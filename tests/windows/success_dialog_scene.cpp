// A converted figure, with the dialog that tells of it.
// SPDX-License-Identifier: MIT

#include "tests/windows/success_dialog_scene.h"

#include "gnt_convert-figure.h"
#include "ks_string.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmorph.h>
#include <dzmorphdeltas.h>
#include <dzobject.h>
#include <dzshape.h>
#include <dzvertexmesh.h>

namespace {

DzAppSettings Store()
{
    return DzAppSettings(QLatin1String("Kestrom's Gantrel"));
}

template <class Widget>
Widget& Named(const QWidget& window, const char* name)
{
    return *window.findChild<Widget*>(QLatin1String(name));
}

} // namespace

void SuccessDialogTest::SetUp()
{
    HostTest::SetUp();
    for (const char* const key : {"winpos_dlg_success", "save_last_content_library", "save_last_vendor_name",
                                  "save_last_product_name"})
        Store().removeValue(QLatin1String(key));
    AddMiniLibrary();
    source = &LoadMini("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
    target = &LoadMini("People/Genesis 9/Genesis 9.duf");
    source->setLabel(QLatin1String("Vera"));
    target->setLabel(QLatin1String("Nova"));
    dzScene->selectAllNodes(false);
    source->select(true);
    target->select(true);
    params = GntConverter::FindSourceAndTargetInSceneSelected_X();
}

void SuccessDialogTest::TearDown()
{
    delete dialog.data();
    params.reset();
}

DzMorph& SuccessDialogTest::addMorph(const char* name)
{
    const int vertex = target->getObject()->getNumModifiers();
    auto* const deltas = new DzMorphDeltas;
    deltas->setTargetVertexCount(
        qobject_cast<DzVertexMesh*>(target->getObject()->getCurrentShape()->getGeometry())->getNumVertices());
    deltas->addDelta(vertex, DzVec3(0, 1, 0));
    auto* const morph = new DzMorph(deltas);
    morph->setName(QString::fromUtf8(name));
    morph->setLabel(QString::fromUtf8(name));
    morph->getValueChannel()->setMinMax(0.0f, 1.0f);
    EXPECT_EQ(target->getObject()->addModifier(morph), DZ_NO_ERROR);
    return *morph;
}

GntSuccessDialog& SuccessDialogTest::open(const std::vector<const char*>& names, const char* note)
{
    created.clear();
    for (const char* const name : names)
        created.push_back({GntFull, name, addMorph(name).getValueChannel()});
    return openAgain(note);
}

GntSuccessDialog& SuccessDialogTest::openAgain(const char* note)
{
    dialog = GntSuccessDialog::Create(nullptr, params, created, "12 seconds", note);
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.data()));
    return *dialog;
}

QLabel& SuccessDialogTest::intro() const
{
    return Named<QLabel>(*dialog, "plblIntro");
}

QGroupBox& SuccessDialogTest::morphGroup() const
{
    return *qobject_cast<QGroupBox*>(dialog->layout()->itemAt(1)->widget());
}

template <class Widget>
Widget& SuccessDialogTest::inRow(int row, int column) const
{
    auto& grid = *qobject_cast<QGridLayout*>(morphGroup().layout());
    return *qobject_cast<Widget*>(grid.itemAtPosition(row, column)->widget());
}

QCheckBox& SuccessDialogTest::box(int row) const
{
    return inRow<QCheckBox>(row, 0);
}

QPushButton& SuccessDialogTest::showButton(int row) const
{
    return inRow<QPushButton>(row, 2);
}

DzFloatSlider& SuccessDialogTest::slider(int row) const
{
    auto& grid = *qobject_cast<QGridLayout*>(morphGroup().layout());
    return *qobject_cast<DzFloatSlider*>(grid.itemAtPosition(row, 1)->layout()->itemAt(0)->widget());
}

QToolButton& SuccessDialogTest::dialButton(int row, const char* text) const
{
    auto& grid = *qobject_cast<QGridLayout*>(morphGroup().layout());
    const QLayout& layout = *grid.itemAtPosition(row, 1)->layout();
    for (int i = 1; i < layout.count(); ++i) {
        auto* const button = qobject_cast<QToolButton*>(layout.itemAt(i)->widget());
        if (button->text() == QLatin1String(text))
            return *button;
    }
    throw std::out_of_range(text);
}

DzFloatProperty& SuccessDialogTest::dial(int row) const
{
    return *created.at(static_cast<std::size_t>(row)).property;
}

QComboBox& SuccessDialogTest::library() const
{
    return Named<QComboBox>(*dialog, "pcboContentLibrary");
}

QLineEdit& SuccessDialogTest::vendor() const
{
    return Named<QLineEdit>(*dialog, "pledVendorName");
}

QLineEdit& SuccessDialogTest::product() const
{
    return Named<QLineEdit>(*dialog, "pledProductName");
}

QCheckBox& SuccessDialogTest::compress() const
{
    return Named<QCheckBox>(*dialog, "pchkCompressFiles");
}

QPushButton& SuccessDialogTest::saveButton() const
{
    return Named<QPushButton>(*dialog, "pbtnSaveMorphAssets");
}

bool SuccessDialogTest::canSave() const
{
    const bool enabled = saveButton().isEnabled();
    for (const QWidget* const control :
         std::initializer_list<const QWidget*>{&library(), &vendor(), &product(), &compress()})
        EXPECT_EQ(control->isEnabled(), enabled) << control->objectName().toStdString();
    return enabled;
}

QPushButton& SuccessDialogTest::closeButton() const
{
    return *FindButton(*dialog, "Close");
}

void SuccessDialogTest::clickBox(int row) const
{
    // The middle of a stretched box is beside its text.
    QTest::mouseClick(&box(row), Qt::LeftButton, {}, QPoint(8, box(row).height() / 2));
}

QString SuccessDialogTest::stored(const char* key)
{
    return Store().getStringValue(QLatin1String(key), QLatin1String("(nothing)"));
}

void SuccessDialogTest::store(const char* key, const QString& value)
{
    EXPECT_TRUE(Store().setStringValue(QLatin1String(key), value));
}
