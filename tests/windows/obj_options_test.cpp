// The options of OBJ files, set by a person.
// SPDX-License-Identifier: MIT

#include "dzfileiosettings.h"
#include "dzimporter.h"
#include "shared/ks_daz-managers.h"
#include "shared/ks_obj-settings.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <memory>
#include <set>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
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

} // namespace
