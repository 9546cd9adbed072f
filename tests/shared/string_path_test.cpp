// Parts and spelling of paths.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace kst::str;

namespace {

TEST(Paths, join_a_folder_and_a_name_with_one_slash)
{
    EXPECT_EQ(MakePath("/tmp", "a.obj"), "/tmp/a.obj");
    EXPECT_EQ(MakePath("/tmp/", "a.obj"), "/tmp/a.obj");
    EXPECT_EQ(MakePath("", "a.obj"), "a.obj");
    EXPECT_EQ(MakePath("/tmp", "/a.obj"), "/tmp//a.obj") << "the name's own slash stays";
    EXPECT_EQ(MakePathQ(ToQ("/tmp"), ToQ("a.obj")), ToQ("/tmp/a.obj"));
}

TEST(Paths, lose_one_leading_slash)
{
    EXPECT_EQ(RemoveLeadingSlash("/a/b"), "a/b");
    EXPECT_EQ(RemoveLeadingSlash("//a"), "/a");
    EXPECT_EQ(RemoveLeadingSlash("a/"), "a/");
    EXPECT_EQ(RemoveLeadingSlash(""), "");
}

TEST(Paths, get_the_native_separator_for_every_backslash)
{
    EXPECT_EQ(NativePath("C:\\a\\b/c"), "C:/a/b/c");
    EXPECT_EQ(NativePathQ(ToQ("a\\b")), ToQ("a/b"));
}

TEST(Paths, keep_backslashes_where_they_are_no_separators)
{
    EXPECT_EQ(ForwardSlashes("a\\b/c"), "a\\b/c");
    EXPECT_EQ(ForwardSlashesQ(ToQ("a\\b/c")), ToQ("a\\b/c"));
}

TEST(Paths, part_at_the_last_slash)
{
    const std::string path = "/a/b/c.tar.gz";
    EXPECT_EQ(GetDirAndFilenames(path),
              std::make_pair(std::string_view("/a/b"), std::string_view("c.tar.gz")));
    EXPECT_EQ(GetDirname(path), "/a/b");
    EXPECT_EQ(GetFilename(path), "c.tar.gz");
    EXPECT_EQ(GetFilename(path).data(), path.data() + 5) << "a view into the path";
    EXPECT_EQ(GetDirnameQ(ToQ(path)), ToQ("/a/b"));
    EXPECT_EQ(GetDirname("/a"), "");
    EXPECT_EQ(GetDirname("/a/"), "/a");
    EXPECT_EQ(GetFilename("/a/"), "");
}

TEST(Paths, are_all_file_name_without_a_slash)
{
    EXPECT_EQ(GetDirAndFilenames("a.b"), std::make_pair(std::string_view(), std::string_view("a.b")));
    EXPECT_EQ(GetDirname("a.b"), "");
    EXPECT_EQ(GetFilename("a.b"), "a.b");
}

TEST(Paths, have_the_extension_behind_the_file_names_last_dot)
{
    EXPECT_EQ(GetExtension("/a/b.tar.gz"), "gz");
    EXPECT_EQ(GetFilestem("/a/b.tar.gz"), "b.tar");
    EXPECT_EQ(GetExtension("/a/b"), "");
    EXPECT_EQ(GetFilestem("/a/b"), "b");
    EXPECT_EQ(GetExtension("/a/b."), "");
    EXPECT_EQ(GetFilestem("/a/b."), "b");
    EXPECT_EQ(GetExtension(".hidden"), "hidden");
    EXPECT_EQ(GetFilestem(".hidden"), "");
}

TEST(Paths, have_no_extension_in_a_folders_name)
{
    EXPECT_EQ(GetExtension("/a.b/c"), "");
    EXPECT_EQ(GetFilestem("/a.b/c"), "c");
}

class CaseCorrectPathTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char* const file : {"People/Genesis 9/Vera.duf", "People/.Hidden.duf", "props/Chair.duf",
                                       "props/CHAIR.DUF", "\xC3\x84pfel/Rot.duf"}) {
            const QString path = folder.filePath(QString::fromUtf8(file));
            ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
            ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        }
        ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere"), folder.filePath(QStringLiteral("Broken"))));
    }

    /// What is appended to an empty text; with a "?" behind it when not all was found.
    std::string corrected(std::string_view relativePath) const
    {
        std::string out;
        const bool found = CaseCorrectPath(ToStd(folder.path()), relativePath, out);
        return found ? out : out + "?";
    }

    QTemporaryDir folder;
};

TEST_F(CaseCorrectPathTest, takes_the_spelling_on_disk)
{
    EXPECT_EQ(corrected("PEOPLE/genesis 9/vera.DUF"), "People/Genesis 9/Vera.duf");
    EXPECT_EQ(corrected("people"), "People") << "folders are entries too";
    EXPECT_EQ(corrected("people/.hidden.duf"), "People/.Hidden.duf");
    EXPECT_EQ(corrected("broken"), "Broken") << "a link to nothing is an entry";
}

TEST_F(CaseCorrectPathTest, skips_empty_components)
{
    EXPECT_EQ(corrected("/people//genesis 9/"), "People/Genesis 9");
    EXPECT_EQ(corrected(""), "");
    EXPECT_EQ(corrected("/"), "");
}

TEST_F(CaseCorrectPathTest, prefers_what_is_there_as_written)
{
    EXPECT_EQ(corrected("PROPS/CHAIR.DUF"), "props/CHAIR.DUF");
    EXPECT_EQ(corrected("PROPS/Chair.duf"), "props/Chair.duf");
}

TEST_F(CaseCorrectPathTest, compares_letters_beyond_ascii)
{
    EXPECT_EQ(corrected("\xC3\xA4PFEL/rot.duf"), "\xC3\x84pfel/Rot.duf");
}

TEST_F(CaseCorrectPathTest, stops_at_the_first_component_that_is_missing)
{
    EXPECT_EQ(corrected("people/nobody/vera.duf"), "People?");
    EXPECT_EQ(corrected("people/genesis 9/vera.duf/more"), "People/Genesis 9/Vera.duf?");
    EXPECT_EQ(corrected("nobody"), "?");
}

TEST_F(CaseCorrectPathTest, matches_no_dots)
{
    EXPECT_EQ(corrected("."), "?");
    EXPECT_EQ(corrected("People/.."), "People?");
}

TEST_F(CaseCorrectPathTest, appends_to_what_is_there)
{
    std::string out = "library:";
    EXPECT_TRUE(CaseCorrectPath(ToStd(folder.path()) + "/", "people/GENESIS 9", out));
    EXPECT_EQ(out, "library:People/Genesis 9");
}

TEST_F(CaseCorrectPathTest, finds_nothing_in_a_folder_that_does_not_exist)
{
    std::string out;
    EXPECT_FALSE(CaseCorrectPath(ToStd(folder.path()) + "/missing", "a", out));
    EXPECT_EQ(out, "");
}

} // namespace
