// Saving into places that do not take it: what is told, and that nothing is lost or left lying about.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/host/hostile_disk.h"
#include "tests/windows/dialog_use_scene.h"
#include "tests/windows/picture.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzmorph.h>
#include <dzobject.h>

namespace {

using kst::str::ToStd;

const char* const heading = "<p><b>Failed to save morph support assets.</b></p>\n<p>";

/// A converted figure, its morph checked, and two libraries: a bad one is chosen, and the test's own.
class SavingFails : public DialogUseTest {
protected:
    void SetUp() override
    {
        DialogUseTest::SetUp();
        bad = other.path() + QStringLiteral("/bad <library> & co");
        ASSERT_TRUE(QDir().mkpath(bad));
        dzApp->getContentMgr()->addContentDirectory(bad, false);
        dialog = convert(FullFigure("Vera Shape"));
        ASSERT_NE(dialog, nullptr) << ToStd(boxText);
        QTest::keyClick(&box(*dialog, 0), Qt::Key_Space);
        line("pledVendorName").setText(QStringLiteral("Acme"));
        choose(bad);
    }
    QLineEdit& line(const char* name) const { return named<QLineEdit>(*dialog, name); }
    void choose(const QString& library) const
    {
        auto& libraries = named<QComboBox>(*dialog, "pcboContentLibrary");
        ASSERT_GE(libraries.findText(library), 0);
        libraries.setCurrentIndex(libraries.findText(library));
    }
    /// The dialog is as it was, and saving goes well elsewhere.
    void expectSavesElsewhere() const
    {
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_TRUE(box(*dialog, 0).isChecked());
        choose(own());
        EXPECT_TRUE(save(*dialog).contains(QStringLiteral("The selected morph has been saved to ") + own()));
        EXPECT_TRUE(filesIn(own()).contains(
            QStringLiteral("data/DAZ 3D/Genesis 9/Base/Morphs/Acme/Product/Vera Shape.dsf")));
    }
    static std::string refusal(const char* reason)
    {
        return std::string(heading) + "Daz Studio asset IO manager reported: " + reason + "</p>";
    }
    /// The host tells no more; its log has the reason.
    static std::string failure() { return refusal("The operation failed."); }

    QTemporaryDir other;
    QString bad;
    GntSuccessDialog* dialog = nullptr;
};

TEST_F(SavingFails, in_a_library_that_lets_no_folder_be_made)
{
    QFile blocker(bad + QStringLiteral("/data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    EXPECT_EQ(ToStd(save(*dialog)), failure());
    EXPECT_EQ(filesIn(bad), QStringList{QStringLiteral("data")});
    EXPECT_EQ(blocker.size(), 0);
    expectSavesElsewhere();
}

TEST_F(SavingFails, in_a_library_for_reading_only)
{
    {
        const ReadOnlyFolder library(bad);
        ASSERT_FALSE(QDir(bad).mkpath(QStringLiteral("data")));
        EXPECT_EQ(ToStd(save(*dialog)), failure());
    }
    EXPECT_TRUE(QDir(bad).isEmpty());
    expectSavesElsewhere();
}

TEST_F(SavingFails, where_a_folder_has_the_place_of_the_file)
{
    const QString place =
        bad + QStringLiteral("/data/DAZ 3D/Genesis 9/Base/Morphs/Acme/Product/Vera Shape.dsf");
    ASSERT_TRUE(QDir().mkpath(place));
    EXPECT_EQ(ToStd(save(*dialog)), failure());
    for (const QString& file : filesIn(bad))
        ADD_FAILURE() << "left lying about: " << ToStd(file);
    expectSavesElsewhere();
}

TEST_F(SavingFails, on_a_full_disk)
{
    // From nothing at all to somewhere within the file.
    for (const rlim_t room : {0, 100, 1000}) {
        QString told;
        {
            const FullDisk full(room);
            told = save(*dialog);
        }
        EXPECT_EQ(ToStd(told), failure()) << room;
        for (const QString& file : filesIn(bad))
            ADD_FAILURE() << "left lying about: " << ToStd(file);
    }
    EXPECT_TRUE(save(*dialog).contains(QStringLiteral("has been saved to"))) << "with room again";
    expectSavesElsewhere();
}

TEST_F(SavingFails, on_a_full_disk_and_leaves_the_file_of_the_last_time_as_it_was)
{
    ASSERT_TRUE(save(*dialog).contains(QStringLiteral("has been saved to")));
    const QStringList files = filesIn(bad);
    ASSERT_FALSE(files.isEmpty());
    const auto content = [this, &files] {
        QByteArray all;
        for (const QString& name : files) {
            QFile file(bad + QLatin1Char('/') + name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            all += file.readAll();
        }
        return all;
    };
    const QByteArray before = content();
    {
        const FullDisk full(500);
        EXPECT_EQ(ToStd(save(*dialog)), failure());
    }
    EXPECT_EQ(filesIn(bad), files);
    EXPECT_EQ(content(), before);
}

TEST_F(SavingFails, in_a_library_that_is_gone_and_does_not_make_it_anew)
{
    ASSERT_TRUE(QDir(bad).removeRecursively());
    EXPECT_EQ(ToStd(save(*dialog)), refusal("The content library does not exist."));
    EXPECT_FALSE(QDir(bad).exists());
    expectSavesElsewhere();
}

TEST_F(SavingFails, without_a_vendor_or_a_product)
{
    for (const char* const name : {"", " "}) {
        line("pledVendorName").setText(QLatin1String(name));
        EXPECT_EQ(ToStd(save(*dialog)),
                  refusal("The vendor name is empty or cannot be the name of a folder."));
        line("pledVendorName").setText(QStringLiteral("Acme"));
        line("pledProductName").setText(QLatin1String(name));
        EXPECT_EQ(ToStd(save(*dialog)),
                  refusal("The product name is empty or cannot be the name of a folder."));
    }
    EXPECT_TRUE(filesIn(bad).isEmpty());
    line("pledProductName").setText(QStringLiteral("Product"));
    expectSavesElsewhere();
}

TEST_F(SavingFails, under_a_vendor_that_can_be_no_folder)
{
    line("pledVendorName").setText(QStringLiteral("../<Acme>"));
    EXPECT_EQ(ToStd(save(*dialog)), refusal("The vendor name is empty or cannot be the name of a folder."));
    line("pledVendorName").setText(QStringLiteral("Acme"));
    line("pledProductName").setText(QStringLiteral("Shapes/Heads"));
    EXPECT_EQ(ToStd(save(*dialog)), refusal("The product name is empty or cannot be the name of a folder."));
    line("pledProductName").setText(QStringLiteral("Product"));
    EXPECT_TRUE(filesIn(other.path()).isEmpty());
    line("pledVendorName").setText(QStringLiteral("Acme"));
    expectSavesElsewhere();
}

TEST_F(SavingFails, not_in_a_library_whose_name_reads_as_markup)
{
    EXPECT_EQ(ToStd(save(*dialog)),
              "<p><b>Morph support assets saved</b></p>\n<p>The selected morph has been saved to " +
                  ToStd(other.path()) + "/bad &lt;library&gt; &amp; co</p>");
}

} // namespace
