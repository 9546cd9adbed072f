// Saving from the success dialog.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/host/content_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"
#include "tests/windows/success_dialog_scene.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzmorph.h>
#include <dzobject.h>

#include <functional>
#include <iterator>
#include <optional>

namespace {

namespace fs = std::filesystem;
using kst::str::ToQ;
using kst::str::ToStd;

const char* const failureHeading = "<p><b>Failed to save morph support assets.</b></p>";

/// With a content library of its own as the first one.
class SuccessDialogSaveTest : public SuccessDialogTest {
protected:
    void SetUp() override
    {
        SuccessDialogTest::SetUp();
        dzApp->setCurrentAuthor(DzAuthor(QLatin1String("Ada"), QString(), QString()));
        DzContentMgr& content = *dzApp->getContentMgr();
        const QString mini = content.getContentDirectoryPath(0);
        content.removeAllContentDirectories();
        content.addContentDirectory(own(), false);
        content.addContentDirectory(mini, false);
    }
    void TearDown() override
    {
        dzApp->setCurrentAuthor(DzAuthor());
        SuccessDialogTest::TearDown();
    }

    QString own() const { return _folder.path(); }
    /// Where a saved morph lies in the own library.
    fs::path saved(const char* vendorName, const char* productName, const char* morph) const
    {
        return fs::path(ToStd(own())) / "data/DAZ 3D/Genesis 9/Base/Morphs" / vendorName / productName /
               (std::string(morph) + ".dsf");
    }
    /// Presses the button; the answer has what was told then.
    void save(std::optional<ModalAnswer>& answer) const
    {
        answer.emplace(Press("OK"));
        QTest::mouseClick(&saveButton(), Qt::LeftButton);
    }
    static void type(QLineEdit& line, const char* text)
    {
        line.selectAll();
        QTest::keyClicks(&line, ToQ(text));
    }

    /// Of a figure's morphs.
    static QList<DzFloatProperty*> dialsLabelled(const DzNode& figure, const char* label)
    {
        QList<DzFloatProperty*> found;
        for (int i = 0; i < figure.getObject()->getNumModifiers(); ++i) {
            const auto* const morph = qobject_cast<DzMorph*>(figure.getObject()->getModifier(i));
            if (morph && morph->getLabel() == ToQ(label))
                found.append(morph->getValueChannel());
        }
        return found;
    }

    std::optional<ModalAnswer> told;

private:
    QTemporaryDir _folder;
};

TEST_F(SuccessDialogSaveTest, offers_the_hosts_content_libraries_in_their_order)
{
    open({"Vera"});
    ASSERT_EQ(library().count(), 2);
    for (const int i : {0, 1})
        EXPECT_EQ(library().itemText(i), dzApp->getContentMgr()->getContentDirectoryPath(i));
    EXPECT_EQ(library().currentIndex(), 0);
}

TEST_F(SuccessDialogSaveTest, proposes_the_hosts_author_and_a_product_the_first_time)
{
    open({"Vera"});
    EXPECT_EQ(ToStd(vendor().text()), "Ada");
    EXPECT_EQ(ToStd(product().text()), "Product");
    EXPECT_FALSE(compress().isChecked());
}

TEST_F(SuccessDialogSaveTest, marks_names_that_saving_needs_and_that_are_missing)
{
    dzApp->setCurrentAuthor(DzAuthor());
    open({"Vera"});
    const auto isMarked = [this](const char* label) {
        return dialog->findChild<QLabel*>(QLatin1String(label))
            ->styleSheet()
            .contains(QLatin1String("#FF9933"));
    };
    EXPECT_TRUE(isMarked("plblVendorName"));
    EXPECT_EQ(ToStd(vendor().placeholderText()), "Needed to save");
    EXPECT_FALSE(isMarked("plblProductName"));
    SavePicture(*dialog, "success-no-vendor");
    clickBox(0);
    type(vendor(), "Zoe");
    EXPECT_FALSE(isMarked("plblVendorName"));
    type(product(), " ");
    EXPECT_TRUE(isMarked("plblProductName"));
}

TEST_F(SuccessDialogSaveTest, saves_one_morph_and_tells_where)
{
    open({"Vera"});
    clickBox(0);
    save(told);
    EXPECT_EQ(ToStd(told->title), "Kestrom's Gantrel V" GANTREL_VERSION);
    EXPECT_EQ(ToStd(told->text), "<p><b>Morph support assets saved</b></p>\n<p>The selected morph has been "
                                 "saved to " +
                                     ToStd(own()) + "</p>");
    EXPECT_EQ(told->icon, QMessageBox::Information);
    EXPECT_EQ(told->parent, dialog.data());
    EXPECT_EQ(ReadBytes(saved("Ada", "Product", "Vera")).front(), '{');
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(SuccessDialogSaveTest, saves_every_listed_morph_whatever_is_checked)
{
    open({"Vera Head", "Vera Body"});
    clickBox(1);
    save(told);
    EXPECT_TRUE(told->text.contains(QStringLiteral("<p>The 2 selected morphs have been saved to ")))
        << ToStd(told->text);
    EXPECT_TRUE(fs::exists(saved("Ada", "Product", "Vera Head")));
    EXPECT_TRUE(fs::exists(saved("Ada", "Product", "Vera Body")));
}

TEST_F(SuccessDialogSaveTest, writes_compressed_files_when_asked)
{
    open({"Vera"});
    clickBox(0);
    QTest::keyClick(&compress(), Qt::Key_Space);
    save(told);
    EXPECT_EQ(ReadBytes(saved("Ada", "Product", "Vera")).substr(0, 2), "\x1F\x8B");
}

TEST_F(SuccessDialogSaveTest, saves_by_the_keyboard_alone)
{
    open({"Vera"});
    QTest::keyClick(&box(0), Qt::Key_Space);
    told.emplace(PressKey(Qt::Key_Return));
    saveButton().setFocus();
    QTest::keyClick(&saveButton(), Qt::Key_Space);
    EXPECT_TRUE(told->seen);
    EXPECT_TRUE(fs::exists(saved("Ada", "Product", "Vera")));
}

TEST_F(SuccessDialogSaveTest, saves_a_morph_that_the_next_load_of_the_figure_finds)
{
    open({"J\xC3\xBCrgen & Zo\xC3\xAB"});
    clickBox(0);
    save(told);
    ASSERT_EQ(told->icon, QMessageBox::Information) << ToStd(told->text);
    DzFigure& next = LoadMini("People/Genesis 9/Genesis 9.duf");
    ASSERT_NE(&next, target);
    const QList<DzFloatProperty*> dials = dialsLabelled(next, "J\xC3\xBCrgen & Zo\xC3\xAB");
    ASSERT_EQ(dials.size(), 1);
    EXPECT_NE(dials[0], &dial(0));
}

TEST_F(SuccessDialogSaveTest, remembers_library_vendor_and_product_but_not_the_compression)
{
    open({"Vera"});
    clickBox(0);
    library().setCurrentIndex(1);
    type(vendor(), "Zoe");
    type(product(), "Shapes");
    QTest::keyClick(&compress(), Qt::Key_Space);
    const QString chosen = library().currentText();
    save(told);
    ASSERT_EQ(told->icon, QMessageBox::Information) << ToStd(told->text);
    EXPECT_EQ(stored("save_last_content_library"), chosen);
    EXPECT_EQ(ToStd(stored("save_last_vendor_name")), "Zoe");
    EXPECT_EQ(ToStd(stored("save_last_product_name")), "Shapes");
    delete dialog.data();
    openAgain();
    EXPECT_EQ(library().currentText(), chosen);
    EXPECT_EQ(ToStd(vendor().text()), "Zoe");
    EXPECT_EQ(ToStd(product().text()), "Shapes");
    EXPECT_FALSE(compress().isChecked());
}

TEST_F(SuccessDialogSaveTest, remembers_names_of_any_language)
{
    store("save_last_vendor_name", ToQ("\xC3\x84ngstr\xC3\xB6m"));
    store("save_last_product_name", ToQ("\xE5\xBD\xA2"));
    open({"Vera"});
    EXPECT_EQ(ToStd(vendor().text()), "\xC3\x84ngstr\xC3\xB6m");
    EXPECT_EQ(ToStd(product().text()), "\xE5\xBD\xA2");
    clickBox(0);
    save(told);
    EXPECT_TRUE(fs::exists(saved("\xC3\x84ngstr\xC3\xB6m", "\xE5\xBD\xA2", "Vera")));
}

TEST_F(SuccessDialogSaveTest, remembers_nothing_unless_it_saves)
{
    open({"Vera"});
    clickBox(0);
    type(vendor(), "Zoe");
    QTest::mouseClick(&closeButton(), Qt::LeftButton);
    EXPECT_EQ(ToStd(stored("save_last_vendor_name")), "(nothing)");
    EXPECT_EQ(ToStd(stored("save_last_content_library")), "(nothing)");
    EXPECT_EQ(ToStd(stored("save_last_product_name")), "(nothing)");
}

TEST_F(SuccessDialogSaveTest, shows_the_first_library_when_the_remembered_one_is_gone)
{
    store("save_last_content_library", QLatin1String("/no/longer/here"));
    open({"Vera"});
    EXPECT_EQ(library().currentIndex(), 0);
    EXPECT_EQ(library().findText(QLatin1String("/no/longer/here")), -1);
}

TEST_F(SuccessDialogSaveTest, tells_why_it_could_not_save_and_stays_open)
{
    open({"Vera"});
    clickBox(0);
    QFile blocker(own() + QLatin1String("/data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly)); // a file where a folder is needed
    save(told);
    EXPECT_EQ(told->icon, QMessageBox::Critical);
    EXPECT_EQ(ToStd(told->title), "Error \xE2\x80\x94 Kestrom's Gantrel V" GANTREL_VERSION);
    EXPECT_TRUE(told->text.startsWith(QLatin1String(failureHeading))) << ToStd(told->text);
    EXPECT_TRUE(told->text.contains(QStringLiteral("<p>Daz Studio asset IO manager reported: ")))
        << ToStd(told->text);
    EXPECT_EQ(told->parent, dialog.data());
    EXPECT_TRUE(dialog->isVisible());
    blocker.remove();
    save(told);
    EXPECT_EQ(told->icon, QMessageBox::Information);
}

TEST_F(SuccessDialogSaveTest, tells_when_no_library_is_there)
{
    dzApp->getContentMgr()->removeAllContentDirectories();
    open({"Vera"});
    EXPECT_EQ(library().count(), 0);
    clickBox(0);
    save(told);
    EXPECT_EQ(ToStd(told->text), std::string(failureHeading) +
                                     "\n<p>Daz Studio asset IO manager reported: The operation failed.</p>");
    EXPECT_TRUE(LogText().contains(QLatin1String("no content folder to save into is given")));
    EXPECT_TRUE(dialog->isVisible());
}

/// Notes what is stored when the host is asked to save, and refuses.
class StoredWhenSaving : public openhost::OperationWatch {
public:
    explicit StoredWhenSaving(std::function<std::string()> store) : _store(std::move(store)) {}
    bool allow(openhost::Operation operation, const QString&) override
    {
        if (operation == openhost::Operation::SaveAsset)
            seen.push_back(_store());
        return operation != openhost::Operation::SaveAsset;
    }
    std::vector<std::string> seen;

private:
    std::function<std::string()> _store;
};

TEST_F(SuccessDialogSaveTest, stores_its_fields_and_leaves_all_else_to_the_host)
{
    QTemporaryDir gone;
    dzApp->getContentMgr()->addContentDirectory(gone.path(), false);
    open({"Vera"});
    clickBox(0);
    library().setCurrentIndex(library().findText(gone.path()));
    ASSERT_TRUE(gone.remove());
    const StoredWhenSaving host([] {
        return ToStd(stored("save_last_content_library") + QLatin1Char('|') +
                     stored("save_last_vendor_name") + QLatin1Char('|') + stored("save_last_product_name"));
    });
    const std::string place = ToStd(gone.path()) + "|";
    const std::pair<const char*, const char*> names[] = {{"Zoe", "Shapes"}, {"", "Shapes"}, {" ", "Shapes"},
                                                         {"a/b", "Shapes"}, {"Zoe", ""},    {"Zoe", " "}};
    for (const auto& [vendorName, productName] : names) {
        vendor().setText(QLatin1String(vendorName));
        product().setText(QLatin1String(productName));
        save(told);
        EXPECT_EQ(ToStd(told->text),
                  std::string(failureHeading) +
                      "\n<p>Daz Studio asset IO manager reported: The operation failed.</p>");
        ASSERT_FALSE(host.seen.empty()) << "the host was not asked";
        EXPECT_EQ(host.seen.back(), place + vendorName + "|" + productName);
    }
    EXPECT_EQ(host.seen.size(), std::size(names));
}

TEST_F(SuccessDialogSaveTest, tells_when_a_listed_morph_is_gone)
{
    open({"Vera Head", "Vera Body"});
    clickBox(1);
    DzObject& object = *target->getObject();
    ASSERT_EQ(object.removeModifier(object.findModifier(QLatin1String("Vera Head"))), DZ_NO_ERROR);
    save(told);
    EXPECT_TRUE(told->text.startsWith(QLatin1String(failureHeading))) << ToStd(told->text);
    EXPECT_FALSE(fs::exists(saved("Ada", "Product", "Vera Body")));
}

TEST_F(SuccessDialogSaveTest, tells_when_the_figure_is_gone)
{
    open({"Vera"});
    clickBox(0);
    dzScene->clear();
    TestHost().purge();
    save(told);
    EXPECT_EQ(ToStd(told->text),
              std::string(failureHeading) + "\n<p>The target figure is no longer in the scene.</p>");
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(SuccessDialogSaveTest, remembers_its_fields_also_when_the_saving_fails)
{
    open({"Vera"});
    clickBox(0);
    type(vendor(), "Zoe");
    type(product(), "Shapes");
    dzScene->clear();
    TestHost().purge();
    save(told);
    EXPECT_EQ(told->icon, QMessageBox::Critical);
    EXPECT_EQ(stored("save_last_content_library"), own());
    EXPECT_EQ(ToStd(stored("save_last_vendor_name")), "Zoe");
    EXPECT_EQ(ToStd(stored("save_last_product_name")), "Shapes");
}

TEST_F(SuccessDialogSaveTest, tells_when_the_host_refuses_to_save)
{
    open({"Vera"});
    clickBox(0);
    Recorder recorder;
    recorder.refused = openhost::Operation::SaveAsset;
    save(told);
    EXPECT_TRUE(told->text.startsWith(QLatin1String(failureHeading))) << ToStd(told->text);
    EXPECT_EQ(recorder.lines, std::vector<std::string>{"saveAsset DzMorphSupportAssetFilter"});
}

} // namespace
