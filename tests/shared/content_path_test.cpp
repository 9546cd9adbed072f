// Paths of content libraries.
// SPDX-License-Identifier: MIT

#include "dzapp.h"
#include "dzcontentmgr.h"
#include "ks_daz-helpers.h"
#include "ks_path-resolver.h"
#include "tests/host/host_fixture.h"

#include <QDir>
#include <QFile>

namespace {

class ContentPathTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        addFile("first/Props/Chair.duf");
        addFile("second/Props/Table.duf");
        addFile("second/data/cloud/1_4711/Props/Lamp.duf");
        for (const char* const directory : {"missing", "first", "second"})
            dzApp->getContentMgr()->addContentDirectory(folder.filePath(QLatin1String(directory)), false);
    }

    void addFile(const char* relative)
    {
        const QString path = folder.filePath(QLatin1String(relative));
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    std::string in(const char* relative) const
    {
        return folder.filePath(QLatin1String(relative)).toStdString();
    }

    QTemporaryDir folder;
};

TEST_F(ContentPathTest, go_from_relative_to_absolute_and_back)
{
    EXPECT_EQ(kst::daz::GetAbsolutePath_X("Props/Table.duf"), in("second/Props/Table.duf"));
    EXPECT_EQ(kst::daz::GetAbsolutePath_X("Props/Nope.duf"), "");
    EXPECT_EQ(kst::daz::GetDazRelativePath_X(in("second/Props/Table.duf")), "/Props/Table.duf");
    EXPECT_EQ(kst::daz::GetDazRelativePath_X(""), "");
    EXPECT_EQ(kst::daz::GetBaseDirectory_X(in("first/Props/Chair.duf")), in("first"));
    EXPECT_EQ(kst::daz::GetBaseDirectory_X("/elsewhere/Chair.duf"), "");
}

TEST_F(ContentPathTest, may_stand_in_import_folders)
{
    addFile("import/x.obj");
    dzApp->getContentMgr()->addImportDirectory(folder.filePath(QStringLiteral("import")));
    EXPECT_EQ(kst::daz::GetAbsolutePath_X("x.obj"), in("import/x.obj"));
    EXPECT_EQ(kst::daz::GetDazRelativePath_X(in("import/x.obj")), "/x.obj");
    EXPECT_EQ(kst::daz::GetBaseDirectory_X(in("import/x.obj")), in("import"));
}

TEST_F(ContentPathTest, are_resolved_in_the_hosts_order_past_directories_that_do_not_exist)
{
    const KsPathResolver resolver;
    std::string out = "before";
    EXPECT_EQ(resolver.resolve("", "Props/Table.duf", out), in("second/Props/Table.duf"));
    EXPECT_EQ(out, in("second/Props/Table.duf"));
    addFile("first/Props/Table.duf");
    EXPECT_EQ(resolver.resolve("", "Props/Table.duf", out), in("first/Props/Table.duf"));
    EXPECT_EQ(resolver.resolve("", "Props/Nope.duf", out), "");
    EXPECT_EQ(out, "");
}

TEST_F(ContentPathTest, are_looked_for_among_cloud_files_only_with_an_identifier)
{
    const KsPathResolver resolver;
    std::string out;
    EXPECT_EQ(resolver.resolve("", "Props/Lamp.duf", out), "");
    EXPECT_EQ(resolver.resolve("4711", "Props/Lamp.duf", out), in("second/data/cloud/1_4711/Props/Lamp.duf"));
    EXPECT_EQ(resolver.resolve("4712", "Props/Lamp.duf", out), "");
}

TEST_F(ContentPathTest, ignore_directories_that_come_into_being_later)
{
    const KsPathResolver resolver;
    addFile("missing/Props/Sofa.duf");
    std::string out;
    EXPECT_EQ(resolver.resolve("", "Props/Sofa.duf", out), "");
    EXPECT_EQ(KsPathResolver().resolve("", "Props/Sofa.duf", out), in("missing/Props/Sofa.duf"));
}

} // namespace
