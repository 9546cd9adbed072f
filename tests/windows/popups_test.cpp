// The windows that loading a file opens.
// SPDX-License-Identifier: MIT

#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "ks_filtered-save.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

class PopUpTest : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
        figure = openMini();
        ASSERT_NE(figure, nullptr);
        beyondLimits = writePose(R"([{"url": "name://@selection#Up:?value/value", "keys": [[0, 2.5]]}])");
    }

    static int countDForms()
    {
        int count = 0;
        for (int i = 0; i < dzScene->getNumNodes(); ++i)
            count += qobject_cast<DzDForm*>(dzScene->getNode(i)) != nullptr;
        return count;
    }

    DzFigure* figure = nullptr;
    std::filesystem::path beyondLimits;
};

TEST_F(PopUpTest, d_former_options_are_asked_before_anything_is_added)
{
    QString name;
    ModalAnswer answer([&](QWidget& window) {
        name = window.objectName();
        SavePicture(window, "d-former-options");
        EXPECT_EQ(countDForms(), 0);
        EXPECT_NE(FindButton(window, "Cancel"), nullptr);
        Press("Accept")(window);
    });
    EXPECT_TRUE(open(writeDForm(10, {1})));
    EXPECT_TRUE(answer.seen && answer.isModal);
    EXPECT_EQ(answer.title, QStringLiteral("D-Former Load Options"));
    EXPECT_EQ(name, QStringLiteral("DzDFormPresetLoadOptionsDlg"));
    EXPECT_NE(figure->getObject()->findModifier(QStringLiteral("D-Former_1")), nullptr);
}

TEST_F(PopUpTest, cancelled_d_former_options_change_nothing)
{
    const int nodes = dzScene->getNumNodes();
    ModalAnswer answer(Press("Cancel"));
    EXPECT_FALSE(open(writeDForm(10, {1})));
    EXPECT_TRUE(answer.seen);
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
    EXPECT_EQ(figure->getObject()->findModifier(QStringLiteral("D-Former_1")), nullptr);
}

TEST_F(PopUpTest, d_former_options_rename_and_replace)
{
    const auto preset = writeDForm(10, {1});
    const auto acceptAs = [](const char* name, bool replaces) {
        return [name, replaces](QWidget& window) {
            auto* const edit = window.findChild<QLineEdit*>();
            edit->clear();
            EXPECT_FALSE(FindButton(window, "Accept")->isEnabled());
            QTest::keyClicks(edit, QLatin1String(name));
            if (replaces)
                QTest::keyClick(window.findChild<QCheckBox*>(), Qt::Key_Space);
            Press("Accept")(window);
        };
    };
    for (int i = 0; i < 2; ++i) {
        const ModalAnswer answer(acceptAs("Mine", false));
        ASSERT_TRUE(open(preset));
    }
    EXPECT_EQ(countDForms(), 2);
    EXPECT_NE(figure->getObject()->findModifier(QStringLiteral("Mine")), nullptr);
    const int nodes = dzScene->getNumNodes();
    const ModalAnswer answer(acceptAs("Mine", true));
    ASSERT_TRUE(open(preset));
    // The second one was named anew when it entered the scene, so the first alone is replaced, with its
    // parts.
    EXPECT_EQ(countDForms(), 2);
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
}

TEST_F(PopUpTest, values_beyond_limits_are_asked_about_with_two_buttons)
{
    ModalAnswer keep(Press("Keep Limits"));
    EXPECT_TRUE(open(beyondLimits));
    EXPECT_EQ(keep.title, QStringLiteral("Preset Exceeds Limits"));
    EXPECT_EQ(keep.buttons, (QStringList{QStringLiteral("Turn Limits Off"), QStringLiteral("Keep Limits")}));
    EXPECT_TRUE(keep.text.contains(QStringLiteral("Up")));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 1.0f);
    ModalAnswer escape(PressKey(Qt::Key_Escape));
    EXPECT_TRUE(open(beyondLimits));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 1.0f);
    ModalAnswer turnOff(Press("Turn Limits Off"));
    EXPECT_TRUE(open(beyondLimits));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 2.5f);
}

TEST_F(PopUpTest, morph_files_are_replaced_only_when_that_is_confirmed)
{
    const auto save = [this] {
        return kst::FilteredSave::SaveMorphSupportAsset_X(*figure, folder("mine").string(), "Me", "Own",
                                                          {"Up"}, false, false);
    };
    const std::filesystem::path file = folder("mine") / "data/Acme/Mini/Base/Morphs/Me/Own/Up.dsf";
    std::filesystem::create_directories(file.parent_path());
    WriteBytes(file, "of another morph");
    for (const auto& refuse : {Press("Cancel"), PressKey(Qt::Key_Escape), PressKey(Qt::Key_Return)}) {
        ModalAnswer refusal([&](QWidget& window) {
            SavePicture(window, "replace-morph-files");
            refuse(window);
        });
        EXPECT_FALSE(save());
        EXPECT_EQ(refusal.title, QStringLiteral("Replace Morph Files"));
        EXPECT_TRUE(refusal.text.contains(QString::fromStdString(file.string())))
            << refusal.text.toStdString();
        EXPECT_EQ(ReadBytes(file), "of another morph");
    }
    ModalAnswer agreement(Press("Replace"));
    EXPECT_TRUE(save());
    EXPECT_EQ(ReadBytes(file).front(), '{');
    ModalAnswer nothing;
    EXPECT_TRUE(save()) << "its own file now";
    EXPECT_FALSE(nothing.seen);
}

TEST_F(PopUpTest, missing_files_are_listed_and_the_load_goes_on)
{
    const auto file = mini::WriteCharacter(
        _library, {{dson::MakeUri(mini::MorphInfo("None").id, "None"), "None", "", 1.0}}, "Otto");
    QString name;
    QStringList listed;
    ModalAnswer answer([&](QWidget& window) {
        name = window.objectName();
        SavePicture(window, "missing-files");
        const auto* const list = window.findChild<QListWidget*>();
        for (int i = 0; i < list->count(); ++i)
            listed.append(list->item(i)->text());
        window.close();
    });
    EXPECT_TRUE(open(file));
    EXPECT_EQ(name, QStringLiteral("MissingAssetsDialog"));
    EXPECT_EQ(answer.title, QStringLiteral("Missing Files"));
    EXPECT_EQ(listed, QStringList{QString::fromStdString(mini::MorphInfo("None").id)});
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("Otto")), nullptr);
}

TEST_F(PopUpTest, a_file_that_cannot_be_opened_is_named_with_the_reason)
{
    ModalAnswer missing(Press("OK"));
    EXPECT_FALSE(open(_library / "Nothing.duf"));
    EXPECT_EQ(missing.title, QStringLiteral("Error opening file"));
    EXPECT_TRUE(missing.text.endsWith(QStringLiteral("Nothing.duf: there is no such file")));
    WriteBytes(_library / "Broken.duf", "{");
    ModalAnswer broken(Press("OK"));
    EXPECT_FALSE(open(_library / "Broken.duf"));
    EXPECT_TRUE(broken.text.contains(QStringLiteral("Broken.duf")));
    WriteBytes(_library / "Notes.xyz", "text");
    ModalAnswer foreign(Press("OK"));
    EXPECT_FALSE(open(_library / "Notes.xyz"));
    EXPECT_TRUE(foreign.text.endsWith(QStringLiteral("Notes.xyz: no importer reads files of this kind")));
}

TEST_F(PopUpTest, repeated_formulas_are_told)
{
    dson::Modifier driver = mini::Control("Driver");
    driver.formulas.assign(2, dson::MakeDeltaAdd(mini::Dial("Up"), mini::Dial("Driver"), 0.25));
    mini::WriteMorph(driver, _library);
    ModalAnswer answer(Press("OK"));
    EXPECT_NE(openMini(), nullptr);
    EXPECT_EQ(answer.title, QStringLiteral("Duplicate Formulas Found"));
    EXPECT_TRUE(answer.text.contains(QString::fromStdString(mini::Dial("Up")))) << answer.text.toStdString();
}

TEST_F(PopUpTest, are_readable_at_any_font)
{
    dson::Modifier driver = mini::Control("Driver");
    driver.formulas.assign(2, dson::MakeDeltaAdd(mini::Dial("Up"), mini::Dial("Driver"), 0.25));
    mini::WriteMorph(driver, _library);
    const auto character = mini::WriteCharacter(
        _library, {{dson::MakeUri(mini::MorphInfo("None").id, "None"), "None", "", 1.0}}, "Otto");
    const auto preset = writeDForm(10, {1});
    std::vector<int> areas;
    for (const bool isLarge : {false, true}) {
        const std::unique_ptr<LargeFont> font(isLarge ? new LargeFont : nullptr);
        const auto look = [&](const char* name, const std::filesystem::path& file, int windows) {
            std::vector<std::unique_ptr<ModalAnswer>> answers;
            for (int i = 0; i < windows; ++i)
                answers.push_back(std::make_unique<ModalAnswer>([=, &areas](QWidget& window) {
                    SavePicture(window, (name + std::to_string(i) + (isLarge ? "-18pt" : "")).c_str());
                    areas.push_back(window.width() * window.height());
                    window.close();
                }));
            open(file);
            for (const auto& answer : answers)
                EXPECT_TRUE(answer->seen) << name;
        };
        look("popup-limits", beyondLimits, 1);
        look("popup-error", _library / "Nothing.duf", 1);
        look("popup-dform", preset, 1);
        look("popup-load", character, 2);
    }
    ASSERT_EQ(areas.size(), 10u);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_GT(areas[i + 5], areas[i]);
}

} // namespace
