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
        for (const std::string& file : _paths.filesBelow(folder, ".dsf", duplicates))
            files.push_back(fs::path(file).lexically_relative(root()).string());
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

TEST_F(Paths, products_of_the_cloud_are_parts_of_their_directory_behind_what_it_holds_itself)
{
    for (const char* const file :
         {"a/data/cloud/1_20/data/x.dsf", "a/Data/Cloud/1_10/data/x.dsf", "a/data/cloud/1_20/data/y.dsf",
          "a/data/cloud/2_10/data/z.dsf", "a/data/cloud/1_/data/z.dsf", "b/data/x.dsf", "b/data/y.dsf",
          "b/data/cloud/1_20/data/v.dsf", "c/data/x.dsf", "c/data/cloud/1_20/data/x.dsf",
          "c/data/cloud/1_9/data/Mini/One.dsf", "b/data/cloud/1_20/DATA/mini/one.dsf", "c/data/Mini/Two.dsf"})
        write(file);
    _paths.add(root() / "c");
    EXPECT_EQ(resolved("/data/x.dsf"), "c/data/x.dsf");
    _paths.clear();
    for (const char* const directory : {"a", "b", "c"})
        _paths.add(root() / directory);
    EXPECT_EQ(resolved("/data/X.dsf"), "a/data/cloud/1_20/data/x.dsf");
    EXPECT_EQ(resolved("/data/y.dsf"), "a/data/cloud/1_20/data/y.dsf");
    EXPECT_EQ(resolved("/data/v.dsf"), "b/data/cloud/1_20/data/v.dsf");
    EXPECT_EQ(resolved("/data/z.dsf"), "");
    std::vector<fs::path> duplicates;
    EXPECT_EQ(below("/data/Mini", &duplicates),
              (std::vector<std::string>{"b/data/cloud/1_20/DATA/mini/one.dsf", "c/data/Mini/Two.dsf"}));
    EXPECT_EQ(duplicates, std::vector<fs::path>{root() / "c/data/cloud/1_9/data/Mini/One.dsf"});
    EXPECT_EQ(_paths.relativePath(root() / "b/data/cloud/1_20/data/v.dsf"), "/data/v.dsf");
    EXPECT_EQ(_paths.relativePath(root() / "a/data/cloud/2_10/data/z.dsf"), "/data/cloud/2_10/data/z.dsf");
    EXPECT_EQ(*_paths.directoryOf(root() / "b/data/cloud/1_20/data/v.dsf"), root() / "b");
}

TEST_F(Paths, what_a_link_alone_leads_to_is_found_and_what_several_lead_to_is_found_once)
{
    write("a/morphs/plain.txt");
    write("a/elsewhere/shape.dsf");
    fs::create_symlink(root() / "a/morphs/plain.txt", root() / "a/morphs/named.dsf");
    fs::create_symlink(root() / "a/elsewhere/shape.dsf", root() / "a/morphs/one.dsf");
    fs::create_symlink(root() / "a/elsewhere/shape.dsf", root() / "a/morphs/three.dsf");
    fs::create_symlink(root() / "a/elsewhere", root() / "a/morphs/two");
    _paths.add(root() / "a");
    EXPECT_EQ(below("morphs"), (std::vector<std::string>{"a/morphs/named.dsf", "a/morphs/one.dsf"}));
    fs::rename(root() / "a/morphs/two", root() / "a/morphs/a");
    EXPECT_EQ(below("morphs"), (std::vector<std::string>{"a/morphs/a/shape.dsf", "a/morphs/named.dsf"}));
}

TEST_F(Paths, linked_folders_are_entered_once_and_circles_are_cut)
{
    for (const char* const file : {"a/data/Mini/Morphs/V/one.dsf", "elsewhere/Shared/two.dsf",
                                   "elsewhere/Shared/Deep/three.dsf", "a/data/Mini/Mini.dsf"})
        write(file);
    const fs::path morphs = root() / "a/data/Mini/Morphs";
    fs::create_directory_symlink(root() / "elsewhere/Shared", morphs / "A"); // before the folder itself
    fs::create_directory_symlink(root() / "elsewhere/Shared", morphs / "Again");
    fs::create_directory_symlink(morphs, root() / "elsewhere/Shared/Back"); // a circle of two
    fs::create_directory_symlink(morphs / "V", morphs / "A V");             // the same once more
    fs::create_directory_symlink(root() / "a/data/Mini", morphs / "V/Up");  // above all of them
    fs::create_directory_symlink(root() / "nowhere", morphs / "Dangling");
    fs::create_symlink(morphs / "V/one.dsf", morphs / "0.dsf");
    fs::create_symlink(root() / "elsewhere/single.dsf", morphs / "single.dsf");
    write("elsewhere/single.dsf");
    _paths.add(root() / "a");
    std::vector<fs::path> duplicates;
    EXPECT_EQ(below("/data/Mini/Morphs", &duplicates),
              (std::vector<std::string>{"a/data/Mini/Morphs/A/Deep/three.dsf", "a/data/Mini/Morphs/A/two.dsf",
                                        "a/data/Mini/Morphs/single.dsf", "a/data/Mini/Morphs/V/one.dsf"}));
    EXPECT_TRUE(duplicates.empty());
    fs::rename(root() / "a/data/Mini/Morphs", root() / "elsewhere/Moved");
    fs::create_directory_symlink(root() / "elsewhere/Moved/V", root() / "a/data/Mini/Morphs");
    EXPECT_EQ(below("/data/Mini/Morphs"), std::vector<std::string>{"a/data/Mini/Morphs/one.dsf"});
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

TEST_F(Paths, one_look_at_many_files_reads_each_folder_once)
{
    write("a/One.dsf");
    openhost::FolderListings once(openhost::FolderListings::Keeping::ForGood), asTheyChange;
    const auto found = [this](openhost::FolderListings& listings, const char* name) {
        return openhost::FindIgnoringCase(listings, root() / "a", name).filename().string();
    };
    for (openhost::FolderListings* const listings : {&once, &asTheyChange})
        EXPECT_EQ(found(*listings, "ONE.dsf"), "One.dsf");
    write("a/Two.dsf");
    EXPECT_EQ(found(once, "TWO.dsf"), "");
    EXPECT_EQ(found(asTheyChange, "TWO.dsf"), "Two.dsf");
}
