// One user's way from two figures to a saved morph, by mouse and keys; the product comes as a module.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzplugin.h>
#include <dzpluginmgr.h>

namespace {

class DesktopStory : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        _library = TestFolder() + QStringLiteral("/saved library");
        ASSERT_TRUE(QDir().mkpath(_library));
    }

    desktop::Options withLibrary() const
    {
        desktop::Options options = smallLibrary();
        options.contentFolders.push_back(_library.toStdString());
        return options;
    }

    /// From the menu, its name typed.
    DzFigure& openFigure(const char* file)
    {
        ModalAnswer dialog(TypeFile(pathOf(file)));
        entry("Open...")->trigger();
        EXPECT_TRUE(dialog.seen);
        window().activateWindow(); // no window manager does it here
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    /// To its largest value, with its slider in the Parameters pane.
    static void turnUp(DzFloatProperty& property)
    {
        DzPane& parameters = pane("DzParametersPane");
        EXPECT_TRUE(QMetaObject::invokeMethod(&parameters, "jumpToProperty", Q_ARG(DzProperty*, &property)));
        QCoreApplication::processEvents();
        for (DzFloatSlider* const slider : parameters.findChildren<DzFloatSlider*>())
            if (slider->isVisible() && slider->getLabel() == property.getLabel())
                QTest::keyClick(slider, Qt::Key_End);
        EXPECT_EQ(property.getValue(), property.getMax());
    }
    static DzMorph* morphOf(const DzFigure& figure, const char* name)
    {
        return qobject_cast<DzMorph*>(figure.getObject()->findModifier(QString::fromUtf8(name)));
    }
    /// Both figures, the source labelled Vera and shaped, selected by clicks.
    void loadBoth()
    {
        source = &openFigure(sourceFile);
        source->setLabel(QStringLiteral("Vera"));
        click(*source);
        turnUp(*morphOf(*source, "Wide")->getValueChannel());
        target = &openFigure(targetFile);
        click(*source);
        click(*target, Qt::ControlModifier);
    }
    static void pressShortcut()
    {
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        QCoreApplication::processEvents();
    }
    template <class Widget>
    static Widget& named(QWidget& dialog, const char* name)
    {
        auto* const widget = dialog.findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    static QWidget* windowTitled(const char* title)
    {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->windowTitle().contains(QLatin1String(title)))
                return widget;
        return nullptr;
    }
    static void press(QWidget& dialog, const char* text)
    {
        QPushButton* const button = FindButton(dialog, text);
        ASSERT_NE(button, nullptr) << text;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    /// Chooses the full figure alone, names it and starts.
    static void acceptFullFigure(QWidget& dialog)
    {
        // What was chosen the last time is remembered.
        for (const char* const box :
             {"pchkCreateFullFigureMorph", "pchkCreateHeadMorph", "pchkCreateBodyMorph"}) {
            auto& check = named<QCheckBox>(dialog, box);
            if (check.isChecked() != (&check == &named<QCheckBox>(dialog, "pchkCreateFullFigureMorph")))
                QTest::keyClick(&check, Qt::Key_Space);
        }
        auto& name = named<QLineEdit>(dialog, "pledFullFigureMorphName");
        name.selectAll();
        QTest::keyClicks(&name, QStringLiteral("Vera Shape"));
        QTest::mouseClick(&named<QPushButton>(dialog, "pbtnConvert"), Qt::LeftButton);
    }
    static std::vector<std::string> labelsInScene()
    {
        std::vector<std::string> labels;
        for (int i = 0; i < dzScene->getNumNodes(); ++i)
            if (!dzScene->getNode(i)->getNodeParent())
                labels.push_back(dzScene->getNode(i)->getLabel().toStdString());
        return labels;
    }

    QString _library;
    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
};

} // namespace

TEST_F(DesktopStory, from_two_figures_to_a_saved_morph_that_another_run_finds)
{
    start(withLibrary());
    ASSERT_NE(dzApp->getPluginMgr()->findPlugin(QStringLiteral("Kestrom's Gantrel")), nullptr);
    loadBoth();
    {
        ModalAnswer dialog(acceptFullFigure);
        pressShortcut();
        ASSERT_TRUE(dialog.seen);
        EXPECT_TRUE(dialog.title.contains(QStringLiteral("Convert figure"))) << dialog.title.toStdString();
    }
    EXPECT_EQ(target->getLabel(), QStringLiteral("Vera converted to G9"));
    EXPECT_EQ(source->getLabel(), QStringLiteral("Vera"));
    DzMorph* const made = morphOf(*target, "Vera Shape");
    ASSERT_NE(made, nullptr);

    QWidget* const success = windowTitled("Conversion complete");
    ASSERT_NE(success, nullptr);
    auto* const slider = success->findChild<DzFloatSlider*>();
    ASSERT_NE(slider, nullptr);
    QTest::keyClick(slider, Qt::Key_End);
    EXPECT_EQ(made->getValueChannel()->getValue(), 1.0f);
    press(*success, "Show in Parameters");
    QCoreApplication::processEvents();
    EXPECT_FALSE(pane("DzParametersPane").visibleRegion().isEmpty());
    SavePicture(window(), "desktop-converted");

    for (QCheckBox* const box : success->findChildren<QCheckBox*>())
        if (box->text() == QStringLiteral("Vera Shape"))
            QTest::keyClick(box, Qt::Key_Space);
    auto& library = named<QComboBox>(*success, "pcboContentLibrary");
    ASSERT_GE(library.findText(_library), 0);
    library.setCurrentIndex(library.findText(_library));
    auto& vendor = named<QLineEdit>(*success, "pledVendorName");
    vendor.clear();
    QTest::keyClicks(&vendor, QStringLiteral("Acme"));
    {
        ModalAnswer box(Press("OK"));
        press(*success, "Save morph assets");
        EXPECT_TRUE(box.text.contains(QStringLiteral("The selected morph has been saved to")))
            << box.text.toStdString();
    }
    press(*success, "Close");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(windowTitled("Conversion complete"), nullptr);

    desktop.reset();
    TestHost().reset();
    AddMiniLibrary();
    desktop.reset(new desktop::DesktopWindow(attendant));
    start(withLibrary());
    DzFigure& fresh = openFigure(targetFile);
    DzMorph* const found = morphOf(fresh, "Vera Shape");
    ASSERT_NE(found, nullptr) << LogText().toStdString();
    EXPECT_EQ(found->getValueChannel()->getPath(), QStringLiteral("/Gantrel"));
    const DzBox3 before = fresh.getWSBoundingBox();
    click(fresh);
    turnUp(*found->getValueChannel());
    EXPECT_NE(fresh.getWSBoundingBox().getMax().m_x, before.getMax().m_x);
}

TEST_F(DesktopStory, with_a_cancelled_dialog_changes_nothing_and_shows_no_box)
{
    start(withLibrary());
    loadBoth();
    const std::vector<std::string> labels = labelsInScene();
    {
        ModalAnswer dialog(PressKey(Qt::Key_Escape));
        pressShortcut();
        EXPECT_TRUE(dialog.seen);
    }
    EXPECT_EQ(labelsInScene(), labels);
    EXPECT_EQ(windowTitled("Conversion complete"), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(DesktopStory, at_subdivided_resolution_makes_a_morph_at_the_source_s_level)
{
    start(withLibrary());
    loadBoth();
    ModalAnswer dialog([](QWidget& window) {
        EXPECT_TRUE(named<QGroupBox>(window, "pgrpResolution").isVisible());
        QTest::mouseClick(&named<QRadioButton>(window, "pRadioResolutionSubd"), Qt::LeftButton);
        acceptFullFigure(window);
    });
    pressShortcut();
    ASSERT_TRUE(dialog.seen);
    EXPECT_NE(morphOf(*target, "Vera Shape"), nullptr) << LogText().toStdString();
    QWidget* const success = windowTitled("Conversion complete");
    ASSERT_NE(success, nullptr);
    success->close();
}

TEST_F(DesktopStory, that_fails_tells_why_in_one_box)
{
    start(withLibrary());
    loadBoth();
    morphOf(*source, "Wide")->getValueChannel()->setValue(0.0f);
    ModalAnswer box(Press("OK"));
    pressShortcut();
    ASSERT_TRUE(box.seen);
    EXPECT_TRUE(box.text.contains(QStringLiteral("Could not convert figure"))) << box.text.toStdString();
    EXPECT_TRUE(
        box.text.contains(QStringLiteral("has no morphs dialed in; nothing to do"), Qt::CaseInsensitive))
        << box.text.toStdString();
}
