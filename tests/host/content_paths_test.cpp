// Files in an ordered list of content directories.
// SPDX-License-Identifier: MIT

#include "dzcontentfolder.h"
#include "dzcontentmgr.h"
#include "library/content_paths.h"
#include "tests/host/content_fixture.h"

namespace {

namespace fs = std::filesystem;

class Paths : public testing::Test {
protected:
    fs::path root() const { return _folder.path().toStdString(); }
    void write(const char* path) const { WriteBytes(root() / path, path); }
    std::string resolved(const std::string& path) const
    {
        const fs::path found = _paths.resolve(path);
        return found.empty() ? "" : found.lexically_relative(root()).string();
    }
    std::vector<std::string> below(const char* folder, std::vector<fs::path>* duplicates = nullptr) const
    {
        std::vector<std::string> files;
        for (const fs::path& file : _paths.filesBelow(folder, ".dsf", duplicates))
            files.push_back(file.lexically_relative(root()).string());
        return files;
    }

    QTemporaryDir _folder;
    openhost::ContentPaths _paths;
};

} // namespace

TEST_F(Paths, the_first_directory_that_has_the_file_wins)
{
    write("a/data/x.dsf");
    write("b/data/x.dsf");
    write("b/data/y.dsf");
    for (const char* const directory : {"none", "a", "b", "a/"})
        _paths.add(root() / directory);
    EXPECT_EQ(_paths.directories().size(), 3u);
    EXPECT_EQ(resolved("/data/x.dsf"), "a/data/x.dsf");
    EXPECT_EQ(resolved("data/y.dsf"), "b/data/y.dsf");
    EXPECT_EQ(resolved("/data/z.dsf"), "");
    EXPECT_EQ(resolved("/data"), "");
    EXPECT_EQ(resolved(""), "");
    EXPECT_EQ(_paths.relativePath(root() / "b/data/../data/y.dsf"), "/data/y.dsf");
    EXPECT_EQ(_paths.relativePath(root() / "elsewhere"), "");
    EXPECT_EQ(_paths.relativePath(root() / "ab/y.dsf"), "");
}

TEST_F(Paths, case_does_not_matter_but_the_exact_spelling_comes_first)
{
    write("a/Data/DAZ 3D/One.DSF");
    write("a/data/Daz 3D/Two.dsf");
    write("a/data/Daz 3D/two.dsf");
    _paths.add(root() / "a");
    EXPECT_EQ(resolved("/DATA/daz 3d/one.dsf"), "a/Data/DAZ 3D/One.DSF");
    EXPECT_EQ(resolved("/data/daz 3d/one.dsf"), "a/Data/DAZ 3D/One.DSF");
    EXPECT_EQ(resolved("/Data/DAZ 3D/TWO.dsf"), "a/data/Daz 3D/Two.dsf");
    EXPECT_EQ(resolved("/Data/DAZ 3D/two.dsf"), "a/data/Daz 3D/two.dsf");
}

TEST_F(Paths, that_climb_out_name_nothing)
{
    write("outside.dsf");
    write("a/data/x.dsf");
    _paths.add(root() / "a");
    EXPECT_EQ(resolved("../outside.dsf"), "");
    EXPECT_EQ(resolved("/data/../../outside.dsf"), "");
    EXPECT_EQ(resolved("/data/../data/x.dsf"), "a/data/x.dsf"); // stays within
    EXPECT_EQ(resolved(std::string("data/x.dsf\0", 11)), "");
    EXPECT_TRUE(below("..").empty());
    EXPECT_TRUE(below("data/../..").empty());
}

TEST_F(Paths, files_below_a_folder_are_united_over_all_directories)
{
    for (const char* const file :
         {"a/data/Mini/Morphs/V/two.dsf", "a/data/Mini/Morphs/V/one.dsf", "b/Data/mini/MORPHS/v/Two.DSF",
          "b/Data/mini/MORPHS/W/three.dsf", "b/Data/mini/MORPHS/W/._three.dsf",
          "b/Data/mini/MORPHS/W/readme.txt", "b/data/Mini/Morphs/four.dsf", "c/data/Other/Morphs/five.dsf"})
        write(file);
    for (const char* const directory : {"a", "missing", "b", "c"})
        _paths.add(root() / directory);
    std::vector<fs::path> duplicates;
    EXPECT_EQ(below("/data/Mini/Morphs", &duplicates),
              (std::vector<std::string>{"b/data/Mini/Morphs/four.dsf", "a/data/Mini/Morphs/V/one.dsf",
                                        "a/data/Mini/Morphs/V/two.dsf", "b/Data/mini/MORPHS/W/three.dsf"}));
    EXPECT_EQ(duplicates, std::vector<fs::path>{root() / "b/Data/mini/MORPHS/v/Two.DSF"});
    EXPECT_TRUE(below("/data/None").empty());
}

class ContentManager : public LibraryTest {};

TEST_F(ContentManager, finds_files_and_directories)
{
    DzContentMgr& manager = *dzApp->getContentMgr();
    const QString stock = QString::fromStdString(_library.string());
    EXPECT_EQ(manager.getNumContentDirectories(), 1);
    EXPECT_EQ(manager.getContentDirectoryPath(0), stock);
    EXPECT_EQ(manager.getContentDirectoryPath(1), QString());
    EXPECT_EQ(manager.getContentDirectory(-1), nullptr);
    EXPECT_EQ(manager.getAbsolutePath(QStringLiteral("/People/mini.DUF"), false),
              stock + QStringLiteral("/People/Mini.duf"));
    EXPECT_EQ(manager.getAbsolutePath(QStringLiteral("/People/None.duf"), true), QString());
    EXPECT_EQ(manager.getRelativePath(stock + QStringLiteral("/People/Mini.duf"), true),
              QStringLiteral("/People/Mini.duf"));
    EXPECT_EQ(manager.getRelativePath(QStringLiteral("/elsewhere/x"), true), QStringLiteral("/elsewhere/x"));
    ASSERT_NE(manager.findBaseDirectory(stock + QStringLiteral("/data"), false), nullptr);
    EXPECT_EQ(manager.findBaseDirectory(stock + QStringLiteral("/data"), false)->getFullPath(), stock);
    EXPECT_EQ(manager.findBaseDirectory(QStringLiteral("/elsewhere"), false), nullptr);
    const QString other = QString::fromStdString(folder("other").string());
    manager.addImportDirectory(other);
    WriteBytes(folder("other") / "x.obj", "v 0 0 0\n");
    EXPECT_EQ(manager.getAbsolutePath(QStringLiteral("x.obj"), false), QString());
    EXPECT_EQ(manager.getAbsolutePath(QStringLiteral("x.obj"), true), other + QStringLiteral("/x.obj"));
    EXPECT_EQ(manager.getRelativePath(other + QStringLiteral("/x.obj"), false),
              other + QStringLiteral("/x.obj"));
    EXPECT_EQ(manager.getRelativePath(other + QStringLiteral("/x.obj"), true), QStringLiteral("/x.obj"));
    EXPECT_EQ(manager.findBaseDirectory(other + QStringLiteral("/x.obj"), false), nullptr);
    ASSERT_NE(manager.findBaseDirectory(other + QStringLiteral("/x.obj"), true), nullptr);
    EXPECT_EQ(manager.findBaseDirectory(other + QStringLiteral("/x.obj"), true)->getFullPath(), other);
    const QString above = QString::fromStdString(folder("other").parent_path().string());
    manager.addContentDirectory(above, false);
    EXPECT_EQ(manager.findBaseDirectory(other, true)->getFullPath(), above)
        << "content directories come first";
    manager.removeAllContentDirectories();
    EXPECT_EQ(manager.findBaseDirectory(other, true), nullptr);
    EXPECT_EQ(manager.getNumContentDirectories(), 0);
    EXPECT_EQ(manager.findFile(QStringLiteral("People/Mini.duf")), QString());
}
