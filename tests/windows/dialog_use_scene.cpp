// Whole conversions through the product's own dialogs.
// SPDX-License-Identifier: MIT

#include "tests/windows/dialog_use_scene.h"

#include "gnt_actions.h"
#include "ks_daz-helpers.h"
#include "ks_string.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QGridLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzfacetmesh.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmorph.h>
#include <dzobject.h>

#include <algorithm>

namespace {

void Enter(QWidget& dialog, const char* job, const Wish::Row& row)
{
    const auto part = [&](const char* before, const char* after) {
        return QLatin1String(before) + QLatin1String(job) + QLatin1String(after);
    };
    auto& check = *dialog.findChild<QCheckBox*>(part("pchkCreate", "Morph"));
    if (check.isChecked() != row.isWanted)
        QTest::keyClick(&check, Qt::Key_Space);
    // Long texts are set at once: a key for each letter takes too long under the sanitizers.
    if (!row.name.isNull())
        dialog.findChild<QLineEdit*>(part("pled", "MorphName"))->setText(row.name);
    if (!row.path.isNull())
        dialog.findChild<QLineEdit*>(part("pled", "MorphPath"))->setText(row.path);
}

QGridLayout& MorphGrid(const QWidget& dialog)
{
    return *qobject_cast<QGridLayout*>(dialog.layout()->itemAt(1)->widget()->layout());
}

std::vector<DzVec3> Positions(DzFigure& figure)
{
    figure.finalize(true);
    const auto* const mesh = qobject_cast<DzVertexMesh*>(figure.getObject()->getCachedGeom());
    std::vector<DzVec3> all;
    for (int i = 0; i < mesh->getNumVertices(); ++i)
        all.push_back(mesh->getVertex(i));
    return all;
}

} // namespace

Wish FullFigure(const char* name)
{
    Wish wish;
    wish.full.isWanted = true;
    wish.full.name = kst::str::ToQ(name);
    return wish;
}

void DialogUseTest::SetUp()
{
    HostTest::SetUp();
    DzAppSettings settings(QStringLiteral("Kestrom's Gantrel"));
    for (const char* const key :
         {"winpos_convert-figure-dialog", "winpos_morph_path", "winpos_dlg_success", "last_job_flags",
          "auto-adjust-proportional-height", "morph_path_full", "morph_path_head", "morph_path_body",
          "save_last_content_library", "save_last_vendor_name", "save_last_product_name"})
        settings.removeValue(QLatin1String(key));
    AddMiniLibrary();
    dzApp->getContentMgr()->addContentDirectory(own(), false);
    source = &LoadMini("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf");
    target = &LoadMini("People/Genesis 9/Genesis 9.duf");
    source->setLabel(QStringLiteral("Vera"));
    morphOf(*source, QStringLiteral("Wide"))->getValueChannel()->setValue(1.0f);
}

void DialogUseTest::TearDown()
{
    QList<QPointer<GntSuccessDialog>> dialogs;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<GntSuccessDialog*>(window))
            dialogs.append(dialog);
    for (const QPointer<GntSuccessDialog>& dialog : dialogs)
        delete dialog;
}

GntSuccessDialog* DialogUseTest::convert(const Wish& wish)
{
    boxText.clear();
    const QWidgetList before = QApplication::topLevelWidgets();
    selectOnly({source, target});
    bool isAsked = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (QWidget* const window = QApplication::activeModalWidget())
            note(*window, wish, isAsked);
    });
    watch.start(1);
    GntConvertFigureAction().trigger();
    EXPECT_TRUE(isAsked || !boxText.isEmpty());
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<GntSuccessDialog*>(window); dialog && !before.contains(window))
            return dialog;
    return nullptr;
}

void DialogUseTest::note(QWidget& window, const Wish& wish, bool& isAsked)
{
    if (auto* const box = qobject_cast<QMessageBox*>(&window)) {
        boxText = box->text();
        box->done(QMessageBox::Ok);
        return;
    }
    // The progress is shown in a modal window too.
    if (isAsked || window.objectName() != QLatin1String("ConvertFigureDialog"))
        return;
    isAsked = true;
    if (wish.before)
        wish.before(window);
    Enter(window, "FullFigure", wish.full);
    Enter(window, "Head", wish.head);
    Enter(window, "Body", wish.body);
    if (wish.after)
        wish.after(window);
    QTest::mouseClick(FindButton(window, "Convert"), Qt::LeftButton);
    if (window.isVisible()) {
        ADD_FAILURE() << "the dialog does not convert";
        window.close();
    }
}

void DialogUseTest::selectOnly(std::initializer_list<DzFigure*> figures)
{
    dzScene->selectAllNodes(false);
    for (DzFigure* const figure : figures)
        figure->select(true);
}

DzMorph* DialogUseTest::morphOf(const DzFigure& figure, const QString& name)
{
    return qobject_cast<DzMorph*>(figure.getObject()->findModifier(name));
}

int DialogUseTest::countMorphs(const DzFigure& figure)
{
    int count = 0;
    for (int i = 0; i < figure.getObject()->getNumModifiers(); ++i)
        count += qobject_cast<DzMorph*>(figure.getObject()->getModifier(i)) ? 1 : 0;
    return count;
}

float DialogUseTest::reach(DzFigure& figure, DzFloatProperty& dial)
{
    const float present = dial.getValue();
    dial.setValue(0.0f);
    const std::vector<DzVec3> neutral = Positions(figure);
    dial.setValue(1.0f);
    const std::vector<DzVec3> moved = Positions(figure);
    dial.setValue(present);
    float longest = 0.0f;
    for (std::size_t i = 0; i < neutral.size(); ++i)
        longest = std::max(longest, static_cast<float>((moved[i] - neutral[i]).length()));
    return longest;
}

QAbstractButton& DialogUseTest::box(const QWidget& dialog, int row)
{
    return *qobject_cast<QAbstractButton*>(MorphGrid(dialog).itemAtPosition(row, 0)->widget());
}

DzFloatSlider& DialogUseTest::slider(const QWidget& dialog, int row)
{
    return *qobject_cast<DzFloatSlider*>(
        MorphGrid(dialog).itemAtPosition(row, 1)->layout()->itemAt(0)->widget());
}

QString DialogUseTest::save(QWidget& dialog)
{
    ModalAnswer answer(Press("OK"));
    QTest::mouseClick(&named<QPushButton>(dialog, "pbtnSaveMorphAssets"), Qt::LeftButton);
    return answer.text;
}

void DialogUseTest::type(QLineEdit& line, const QString& text)
{
    line.selectAll();
    QTest::keyClicks(&line, text);
}

QStringList DialogUseTest::filesIn(const QString& folder)
{
    QStringList files;
    QDirIterator all(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext())
        files << QDir(folder).relativeFilePath(all.next());
    files.sort();
    return files;
}
