// Morphs that were made in the desktop application and not saved.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzmorphdeltas.h>
#include <dzobject.h>
#include <dzscene.h>

namespace {

const char* const head = "Vera converted to G9 Head";
const char* const body = "Vera converted to G9 Body";

class DesktopMorphs : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        DzAppSettings settings(QStringLiteral("Kestrom's Gantrel"));
        for (const char* const key :
             {"save_last_content_library", "save_last_vendor_name", "save_last_product_name"})
            settings.removeValue(QLatin1String(key));
        dzApp->getContentMgr()->addContentDirectory(_library.path(), false);
        _options = smallLibrary();
        _options.contentFolders.push_back(_library.path().toStdString());
        start(_options);
    }
    /// A wide source, head and body.
    QWidget* convert()
    {
        DzFigure& source = openFigure(sourceFile);
        source.setLabel(QStringLiteral("Vera"));
        qobject_cast<DzMorph*>(source.getObject()->findModifier(QStringLiteral("Wide")))
            ->getValueChannel()
            ->setValue(1.0f);
        target = &openFigure(targetFile);
        click(source);
        click(*target, Qt::ControlModifier);
        ModalAnswer dialog([this](QWidget& window) {
            if (_isBase)
                window.findChild<QRadioButton*>(QStringLiteral("pRadioResolutionBase"))->setChecked(true);
            Press("Convert")(window);
        });
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        EXPECT_TRUE(dialog.seen);
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->objectName() == QLatin1String("SuccessDialog"))
                return widget;
        return nullptr;
    }
    /// Converts, and closes the product's dialog without saving.
    void convertWithoutSaving()
    {
        QWidget* const told = convert();
        ASSERT_NE(told, nullptr);
        told->close();
        EXPECT_TRUE(waitForNotice(body)) << notice().toStdString();
    }
    /// The line is brought up to date soon, not at once.
    static bool waitForNotice(const char* morph)
    {
        return QTest::qWaitFor(
            [morph] { return morph ? notice().contains(QLatin1String(morph)) : notice().isEmpty(); }, 5000);
    }
    static QString notice()
    {
        const auto* const bar = window().findChild<QStatusBar*>();
        const auto* const label = bar ? bar->findChild<QLabel*>() : nullptr;
        return label ? label->text() : QString();
    }
    /// In the library that is the test's own, as somebody named Vendor.
    std::function<void(QWidget&)> saveFrom(QStringList& listed, const QStringList& unticked = {}) const
    {
        return [this, &listed, unticked](QWidget& dialog) {
            EXPECT_EQ(dialog.objectName(), QLatin1String("SaveMorphsDialog"));
            auto& list = *dialog.findChild<QListWidget*>();
            for (int i = 0; i < list.count(); ++i) {
                listed.append(list.item(i)->text());
                if (unticked.contains(list.item(i)->text()))
                    list.item(i)->setCheckState(Qt::Unchecked);
            }
            dialog.findChild<QComboBox*>()->setCurrentText(_library.path());
            dialog.findChild<QLineEdit*>(QStringLiteral("Vendor"))->setText(QStringLiteral("Vendor"));
            SavePicture(dialog, "save-morphs");
            _done.reset(new ModalAnswer(Press("OK")));
            QTest::mouseClick(FindButton(dialog, "Save"), Qt::LeftButton);
        };
    }
    QStringList savedFiles() const
    {
        return QDir(_library.filePath(QStringLiteral("data/DAZ 3D/Genesis 9/Base/Morphs/Vendor/Product")))
            .entryList({QStringLiteral("*.dsf")}, QDir::Files, QDir::Name);
    }
    DzMorph* morph(const char* name) const
    {
        return qobject_cast<DzMorph*>(target->getObject()->findModifier(QLatin1String(name)));
    }

    bool _isBase = false; ///< what is converted is not subdivided
    DzFigure* target = nullptr;
    mutable std::unique_ptr<ModalAnswer> _done; ///< for the box that tells of the save
    QTemporaryDir _library;
    desktop::Options _options;
};

} // namespace

TEST_F(DesktopMorphs, are_told_of_until_they_are_saved)
{
    EXPECT_FALSE(entry("Save Morphs...")->isEnabled());
    convertWithoutSaving();
    EXPECT_TRUE(notice().contains(QLatin1String(head))) << notice().toStdString();
    SavePicture(window(), "desktop-unsaved-morphs");
    ASSERT_TRUE(entry("Save Morphs...")->isEnabled());
    QStringList listed;
    ModalAnswer dialog(saveFrom(listed));
    entry("Save Morphs...")->trigger();
    EXPECT_EQ(listed, QStringList({QLatin1String(head), QLatin1String(body)}));
    ASSERT_TRUE(_done && _done->seen);
    EXPECT_EQ(_done->icon, QMessageBox::Information) << _done->text.toStdString();
    EXPECT_EQ(savedFiles(), QStringList({QLatin1String(body) + QLatin1String(".dsf"),
                                         QLatin1String(head) + QLatin1String(".dsf")}));
    EXPECT_TRUE(waitForNotice(nullptr)) << notice().toStdString();
    EXPECT_FALSE(entry("Save Morphs...")->isEnabled());
}

TEST_F(DesktopMorphs, are_named_before_the_scene_goes)
{
    convertWithoutSaving();
    for (const char* const text : {"New", "Quit"}) {
        ModalAnswer question([](QWidget& box) {
            EXPECT_TRUE(qobject_cast<QMessageBox*>(&box)->informativeText().contains(QLatin1String(body)));
            SavePicture(box, "unsaved-scene-and-morphs");
            Press("Cancel")(box);
        });
        entry(text)->trigger();
        EXPECT_TRUE(question.seen) << text;
        EXPECT_TRUE(window().isVisible());
        EXPECT_NE(morph(head), nullptr);
    }
}

TEST_F(DesktopMorphs, are_saved_from_the_question_which_then_asks_about_the_rest)
{
    convertWithoutSaving();
    QStringList listed;
    std::unique_ptr<ModalAnswer> dialog, rest;
    ModalAnswer question([&](QWidget& box) {
        dialog.reset(new ModalAnswer([&](QWidget& window) {
            saveFrom(listed)(window);
            // The box that tells of the save stands between.
        }));
        Press("Save Morphs...")(box);
    });
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (_done && _done->seen && !rest)
            rest.reset(new ModalAnswer(Press("Discard")));
    });
    watch.start(1);
    entry("New")->trigger();
    EXPECT_EQ(savedFiles().size(), 2);
    ASSERT_TRUE(rest && rest->seen);
    EXPECT_EQ(rest->title, QLatin1String("Unsaved Scene"));
    EXPECT_FALSE(rest->buttons.contains(QStringLiteral("Save &Morphs...")));
    EXPECT_EQ(dzScene->getNumNodes(), 0);
}

TEST_F(DesktopMorphs, are_no_matter_when_the_scene_keeps_them)
{
    _isBase = true;
    convertWithoutSaving();
    const QString file = _library.filePath(QStringLiteral("Scene.duf"));
    {
        ModalAnswer dialog(TypeFile(file));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    {
        ModalAnswer nothing;
        ASSERT_TRUE(desktop->files().newScene());
        EXPECT_FALSE(nothing.seen) << nothing.text.toStdString();
    }
    EXPECT_TRUE(desktop->files().openFile(file));
    EXPECT_TRUE(QTest::qWaitFor([] { return entry("Save Morphs...")->isEnabled(); }, 5000))
        << "they can still get files of their own";
}

TEST_F(DesktopMorphs, are_asked_about_when_a_scene_keeps_only_their_base_shape)
{
    convertWithoutSaving();
    {
        ModalAnswer dialog(TypeFile(_library.filePath(QStringLiteral("Scene.duf"))));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    ModalAnswer question(Press("Discard"));
    EXPECT_TRUE(desktop->files().newScene());
    EXPECT_EQ(question.title, QLatin1String("Unsaved Morphs"));
}

TEST_F(DesktopMorphs, are_saved_without_those_that_are_gone)
{
    QWidget* const told = convert();
    ASSERT_NE(told, nullptr);
    ASSERT_NE(morph(head), nullptr);
    target->getObject()->removeModifier(morph(head));
    QStringList listed;
    ModalAnswer dialog(saveFrom(listed));
    entry("Save Morphs...")->trigger();
    EXPECT_EQ(listed, QStringList(QLatin1String(body)));
    EXPECT_EQ(savedFiles(), QStringList(QLatin1String(body) + QLatin1String(".dsf")));
}

TEST_F(DesktopMorphs, are_saved_one_at_a_time_and_the_place_is_proposed_again)
{
    convertWithoutSaving();
    QStringList listed;
    {
        ModalAnswer dialog(saveFrom(listed, {QLatin1String(head)}));
        entry("Save Morphs...")->trigger();
    }
    EXPECT_EQ(savedFiles(), QStringList(QLatin1String(body) + QLatin1String(".dsf")));
    EXPECT_FALSE(notice().contains(QLatin1String(body)));
    EXPECT_TRUE(notice().contains(QLatin1String(head)));
    QString vendor, folder;
    QStringList left;
    ModalAnswer dialog([&](QWidget& window) {
        vendor = window.findChild<QLineEdit*>(QStringLiteral("Vendor"))->text();
        folder = window.findChild<QComboBox*>()->currentText();
        left.append(window.findChild<QListWidget*>()->item(0)->text());
        Press("Cancel")(window);
    });
    entry("Save Morphs...")->trigger();
    EXPECT_EQ(vendor, QLatin1String("Vendor"));
    EXPECT_EQ(folder, _library.path());
    EXPECT_EQ(left, QStringList(QLatin1String(head)));
}

TEST_F(DesktopMorphs, stay_unsaved_when_their_place_cannot_be_written)
{
    convertWithoutSaving();
    std::unique_ptr<ModalAnswer> box;
    ModalAnswer dialog([&](QWidget& window) {
        window.findChild<QLineEdit*>(QStringLiteral("Vendor"))->setText(QStringLiteral("a/b"));
        box.reset(new ModalAnswer(Press("OK")));
        QTest::mouseClick(FindButton(window, "Save"), Qt::LeftButton);
        EXPECT_TRUE(window.isVisible());
        Press("Cancel")(window);
    });
    entry("Save Morphs...")->trigger();
    ASSERT_TRUE(box && box->seen);
    EXPECT_EQ(box->icon, QMessageBox::Warning);
    EXPECT_TRUE(box->text.contains(QStringLiteral("\"a/b\" cannot be the name of a VendorName folder")))
        << box->text.toStdString();
    EXPECT_TRUE(entry("Save Morphs...")->isEnabled());
}

TEST_F(DesktopMorphs, need_a_vendor_and_a_tick_to_be_saved)
{
    convertWithoutSaving();
    ModalAnswer dialog([](QWidget& window) {
        const QPushButton& save = *FindButton(window, "Save");
        auto& vendor = *window.findChild<QLineEdit*>(QStringLiteral("Vendor"));
        vendor.clear();
        EXPECT_FALSE(save.isEnabled());
        vendor.setText(QStringLiteral("Vendor"));
        EXPECT_TRUE(save.isEnabled());
        auto& list = *window.findChild<QListWidget*>();
        for (int i = 0; i < list.count(); ++i)
            list.item(i)->setCheckState(Qt::Unchecked);
        EXPECT_FALSE(save.isEnabled());
        Press("Cancel")(window);
    });
    entry("Save Morphs...")->trigger();
    EXPECT_TRUE(dialog.seen);
}
