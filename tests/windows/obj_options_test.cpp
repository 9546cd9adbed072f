// The options of OBJ files, set by a person.
// SPDX-License-Identifier: MIT

#include "dzcontentmgr.h"
#include "dzexporter.h"
#include "dzfileiosettings.h"
#include "dzimporter.h"
#include "ks_daz-managers.h"
#include "ks_obj-settings.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <memory>
#include <set>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QSpinBox>
#include <QTest>

namespace {

class ObjOptionsTest : public HostTest {
protected:
    ObjOptionsTest() { settings.loadBlenderDefaults(); }

    DzFileIOSettings& options() const { return settings.getDzFileIOSettings(); }

    kst::ObjExportSettings settings;
};

template <class Widget>
Widget& Find(QWidget& window, const char* key)
{
    auto* const widget = window.findChild<Widget*>(QLatin1String(key));
    EXPECT_NE(widget, nullptr) << key;
    return *widget;
}

/// The names of all widgets that stand for an option.
std::set<std::string> Keys(const QWidget& window)
{
    std::set<std::string> keys;
    for (const QWidget* const widget : window.findChildren<QWidget*>())
        if (qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QComboBox*>(widget) ||
            qobject_cast<const QAbstractSpinBox*>(widget))
            keys.insert(widget->objectName().toStdString());
    return keys;
}

std::set<std::string> Keys(const DzFileIOSettings& options)
{
    std::set<std::string> keys;
    for (int i = 0; i < options.getNumValues(); ++i)
        keys.insert(options.getKey(i).toStdString());
    // Not for a person to choose: a name for the choice itself, and whether to ask at all.
    keys.erase("Preset");
    keys.erase("RunSilent");
    return keys;
}

TEST_F(ObjOptionsTest, shows_every_option_of_an_export)
{
    std::set<std::string> shown;
    ModalAnswer answer([&](QWidget& window) {
        shown = Keys(window);
        EXPECT_EQ(Find<QDoubleSpinBox>(window, "Scale").value(), 50.0);
        EXPECT_EQ(Find<QSpinBox>(window, "FloatPrecision").value(), 8);
        EXPECT_EQ(Find<QComboBox>(window, "VertAxis").currentText(), QStringLiteral("Y"));
        EXPECT_TRUE(Find<QCheckBox>(window, "SelectedRootsOnly").isChecked());
        SavePicture(window, "obj-export-options");
    });
    EXPECT_FALSE(settings.showDialogOrThrow());
    EXPECT_EQ(answer.title, QStringLiteral("OBJ Export Options"));
    EXPECT_EQ(shown, Keys(options()));
}

TEST_F(ObjOptionsTest, takes_over_what_was_chosen)
{
    options().setStringValue(QStringLiteral("Mine"), QStringLiteral("kept"));
    const ModalAnswer answer([](QWidget& window) {
        Find<QDoubleSpinBox>(window, "Scale").setValue(2.5);
        Find<QComboBox>(window, "VertAxis").setCurrentText(QStringLiteral("Z"));
        Find<QComboBox>(window, "DepthAxis").setCurrentText(QStringLiteral("Y"));
        QTest::keyClick(&Find<QCheckBox>(window, "InvertDepthAxis"), Qt::Key_Space);
        Press("Accept")(window);
    });
    EXPECT_TRUE(settings.showDialogOrThrow());
    EXPECT_FALSE(settings.isUsingDefaults());
    EXPECT_EQ(settings.getScale(), 2.5f);
    EXPECT_EQ(options().getStringValue(QStringLiteral("VertAxis")), QStringLiteral("Z"));
    EXPECT_TRUE(options().getBoolValue(QStringLiteral("InvertDepthAxis")));
    EXPECT_EQ(options().getStringValue(QStringLiteral("Mine")), QStringLiteral("kept"));
}

TEST_F(ObjOptionsTest, leaves_everything_when_cancelled)
{
    const QString before = options().toString();
    const ModalAnswer answer([](QWidget& window) {
        Find<QDoubleSpinBox>(window, "Scale").setValue(2.5);
        Press("Cancel")(window);
    });
    EXPECT_FALSE(settings.showDialogOrThrow());
    EXPECT_TRUE(settings.isUsingDefaults());
    EXPECT_EQ(options().toString(), before);
}

TEST_F(ObjOptionsTest, keeps_the_digits_of_a_scale_that_it_does_not_show)
{
    settings.setScale(0.123456789f);
    const ModalAnswer answer(Press("Accept"));
    EXPECT_TRUE(settings.showDialogOrThrow());
    EXPECT_EQ(settings.getScale(), 0.123456789f);
}

TEST_F(ObjOptionsTest, shows_every_option_of_an_import)
{
    kst::ObjImportSettings import;
    import.loadBlenderDefaults();
    const std::unique_ptr<DzImporter> importer(&kst::daz::GetObjImporter_X());
    std::set<std::string> shown;
    ModalAnswer answer([&](QWidget& window) {
        shown = Keys(window);
        Press("Accept")(window);
    });
    EXPECT_TRUE(importer->getOptions(&import.getDzFileIOSettings(), true, QString()));
    EXPECT_EQ(answer.title, QStringLiteral("OBJ Import Options"));
    EXPECT_EQ(shown, Keys(import.getDzFileIOSettings()));
}

/// A file of one triangle.
QString TriangleFile(const char* name)
{
    const QString path = TestFolder() + QLatin1Char('/') + QLatin1String(name);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    return path;
}

std::unique_ptr<DzImporter> Importer()
{
    return std::unique_ptr<DzImporter>(&kst::daz::GetObjImporter_X());
}

TEST_F(ObjOptionsTest, are_asked_for_when_a_file_is_read_or_written_and_nobody_said_to_be_silent)
{
    const QString file = TriangleFile("asked.obj");
    {
        ModalAnswer answer(Press("Accept"));
        EXPECT_EQ(Importer()->readFile(file), DZ_NO_ERROR);
        EXPECT_TRUE(answer.seen);
        EXPECT_EQ(answer.title, QLatin1String("OBJ Import Options"));
    }
    const std::unique_ptr<DzExporter> exporter(&kst::daz::GetObjExporter_X());
    const QString copy = TestFolder() + QLatin1String("/asked-copy.obj");
    {
        ModalAnswer answer(Press("Accept"));
        EXPECT_EQ(exporter->writeFile(copy, &options()), DZ_NO_ERROR);
        EXPECT_TRUE(answer.seen);
        EXPECT_EQ(answer.title, QLatin1String("OBJ Export Options"));
    }
    EXPECT_TRUE(QFile::exists(copy));
}

TEST_F(ObjOptionsTest, are_not_asked_for_when_told_to_be_silent)
{
    const QString file = TriangleFile("silent.obj");
    ModalAnswer answer;
    DzFileIOSettings silent;
    silent.setIntValue(QLatin1String("RunSilent"), 1);
    EXPECT_EQ(Importer()->readFile(file, &silent), DZ_NO_ERROR);
    settings.loadBlenderDefaults();
    options().setIntValue(QLatin1String("RunSilent"), 1);
    const std::unique_ptr<DzExporter> exporter(&kst::daz::GetObjExporter_X());
    EXPECT_EQ(exporter->writeFile(TestFolder() + QLatin1String("/silent-copy.obj"), &options()), DZ_NO_ERROR);
    EXPECT_FALSE(answer.seen);
}

TEST_F(ObjOptionsTest, cancelled_leave_scene_and_files_alone_and_no_complaint)
{
    const QString file = TriangleFile("cancelled.obj");
    {
        ModalAnswer answer(Press("Cancel"));
        EXPECT_EQ(Importer()->readFile(file), DZ_USER_CANCELLED_OPERATION);
    }
    {
        ModalAnswer answer(Press("Cancel"));
        EXPECT_FALSE(dzApp->getContentMgr()->openFile(file, true));
        EXPECT_EQ(answer.title, QLatin1String("OBJ Import Options")) << "and no box about an error after it";
    }
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    const std::unique_ptr<DzExporter> exporter(&kst::daz::GetObjExporter_X());
    const QString copy = TestFolder() + QLatin1String("/cancelled-copy.obj");
    ModalAnswer answer(Press("Cancel"));
    EXPECT_EQ(exporter->writeFile(copy, &options()), DZ_USER_CANCELLED_OPERATION);
    EXPECT_FALSE(QFile::exists(copy));
}

TEST_F(ObjOptionsTest, are_not_asked_for_a_file_that_is_not_there)
{
    ModalAnswer answer;
    EXPECT_EQ(Importer()->readFile(TestFolder() + QLatin1String("/missing.obj")),
              DZ_UNABLE_TO_OPEN_FILE_ERROR);
    EXPECT_FALSE(answer.seen);
}

} // namespace
