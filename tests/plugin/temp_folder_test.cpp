// A conversion's temporary files in a folder of its own, when the user wants it so.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"
#include "tests/plugin/scripted_forms.h"

#include "dzappsettings.h"
#include "gnt_temp-folder.h"
#include "tests/shared/throws.h"

#include <QDir>
#include <QFile>

namespace {

/// Notes where files are exported to; refuses one of them.
class ExportWatch : public openhost::OperationWatch {
public:
    explicit ExportWatch(const char* refusedStem = nullptr) : _refusedStem(refusedStem) {}
    bool allow(openhost::Operation operation, const QString& detail) override
    {
        if (operation != openhost::Operation::Export)
            return true;
        exports.push_back(detail.left(detail.lastIndexOf(QLatin1Char('/'))));
        return !_refusedStem || !detail.contains(QLatin1String(_refusedStem));
    }
    std::vector<QString> exports; ///< their folders

private:
    const char* _refusedStem;
};

QStringList OwnFolders()
{
    return QDir(TestFolder()).entryList({QStringLiteral("gantrel-*")}, QDir::Dirs);
}

QStringList ObjFiles()
{
    return QDir(TestFolder()).entryList({QStringLiteral("*.obj")}, QDir::Files);
}

class TempFolderTest : public ConversionFixture {
protected:
    void SetUp() override
    {
        ConversionFixture::SetUp();
        for (const QString& file : ObjFiles())
            QFile::remove(TestFolder() + QLatin1Char('/') + file);
    }

    void TearDown() override { group.removeValue(key); }
    void wantOwnFolder() { group.setBoolValue(key, true); }

    DzAppSettings group{QStringLiteral("Kestrom's Gantrel")};
    const QString key{QStringLiteral("use-own-temp-folder")};
};

TEST_F(TempFolderTest, is_not_made_unless_the_user_wants_it)
{
    loadPair(genesis3Female);
    const ExportWatch watch;
    convert(GntJobFlag::Full);
    EXPECT_EQ(watch.exports, std::vector<QString>(5, TestFolder()));
    EXPECT_TRUE(OwnFolders().isEmpty());
    EXPECT_EQ(ObjFiles().size(), 5) << "the files stay";
}

TEST_F(TempFolderTest, takes_every_file_and_goes_with_them_after_a_conversion)
{
    loadPair(genesis3Female);
    wantOwnFolder();
    const ExportWatch watch;
    EXPECT_EQ(convert(allJobs()).size(), 3u);
    ASSERT_EQ(watch.exports.size(), 5u);
    const QString folder = watch.exports.front(), beginning = TestFolder() + QStringLiteral("/gantrel-");
    EXPECT_TRUE(folder.startsWith(beginning)) << folder.toStdString();
    EXPECT_EQ(folder.size(), beginning.size() + 8);
    EXPECT_EQ(watch.exports, std::vector<QString>(5, folder));
    EXPECT_TRUE(OwnFolders().isEmpty());
    EXPECT_TRUE(ObjFiles().isEmpty());
}

TEST_F(TempFolderTest, goes_after_a_failure_too)
{
    for (const char* const stem : {"tempg8-src1-", "tempg8-tgt-", "rigged-for-mlp-"}) {
        loadPair(genesis3Female);
        wantOwnFolder();
        const ExportWatch watch(stem);
        EXPECT_NE(MessageOf([&] { convert(GntJobFlag::Full); }).find("failed to export OBJ"),
                  std::string::npos);
        EXPECT_NE(watch.exports.at(0), TestFolder());
        EXPECT_TRUE(OwnFolders().isEmpty()) << stem;
    }
    EXPECT_TRUE(ObjFiles().isEmpty());
}

TEST_F(TempFolderTest, goes_when_the_user_cancels)
{
    ScriptedForms forms;
    loadPair(genesis3Female);
    wantOwnFolder();
    forms.debugSteps = true; // without display the question is answered with Cancel
    EXPECT_THROW(GntConverter::Exec_X(nullptr), kst::CanceledException);
    EXPECT_TRUE(OwnFolders().isEmpty());
    selectBoth();
    forms.goesOn = false;
    GntConverter::Exec_X(nullptr);
    EXPECT_TRUE(OwnFolders().isEmpty());
}

TEST_F(TempFolderTest, goes_when_there_is_nothing_to_convert)
{
    loadPair(genesis3Female);
    wantOwnFolder();
    dial(*source, "Wide").setValue(0.0f);
    dial(*source, "Bulge").setValue(0.0f);
    EXPECT_EQ(MessageOf([&] { convert(GntJobFlag::Full); }),
              "source figure " + Quoted("Vera") + " has no morphs dialed in; nothing to do");
    EXPECT_TRUE(OwnFolders().isEmpty());
}

TEST_F(TempFolderTest, tells_when_it_cannot_be_made_and_changes_nothing)
{
    QFile file(TestFolder() + QStringLiteral("/a file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    for (const QString& place : {file.fileName(), QStringLiteral("/no such folder")}) {
        loadPair(genesis3Female);
        wantOwnFolder();
        const auto before = stateOfBoth();
        qputenv("TMPDIR", place.toUtf8());
        const std::string message = MessageOf([&] { convert(GntJobFlag::Full); });
        qputenv("TMPDIR", TestFolder().toUtf8());
        // The older toolkit names any folder that the system does; the newer one names none that is missing.
        const auto isOfFolder = [&message](const std::string& folder) {
            return WithoutChance(QString::fromStdString(message)) ==
                   "failed to create temporary folder " + Quoted(folder);
        };
        EXPECT_TRUE(isOfFolder(place.toStdString() + "/gantrel-*") || isOfFolder("gantrel-*")) << message;
        EXPECT_EQ(stateOfBoth(), before);
    }
}

TEST_F(TempFolderTest, is_another_one_each_time)
{
    const GntTempFolder one, other;
    EXPECT_NE(one.getPath(), other.getPath());
    EXPECT_EQ(OwnFolders().size(), 2);
}

TEST_F(TempFolderTest, leaves_folders_of_others_and_says_so)
{
    QString path;
    {
        const GntTempFolder folder;
        path = QString::fromStdString(folder.getPath());
        ASSERT_TRUE(QDir(path).mkdir(QStringLiteral("another's")));
        ASSERT_TRUE(QFile(path + QStringLiteral("/own.obj")).open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(QDir(path).entryList(QDir::NoDotAndDotDot | QDir::AllEntries),
              QStringList{QStringLiteral("another's")});
    EXPECT_TRUE(LogText().contains(
        QString::fromStdString("KeGNT: failed to remove temporary folder " + Quoted(path.toStdString()))));
    EXPECT_TRUE(QDir(path).removeRecursively());
}

} // namespace
