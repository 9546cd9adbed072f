// Saves that fail, are refused or are asked for by scripts.
// SPDX-License-Identifier: MIT

#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "openhost/attendant.h"
#include "openhost/class_registry.h"
#include "tests/host/save_fixture.h"

#include <memory>

namespace {

namespace fs = std::filesystem;

/// Answers as it is told, and keeps the questions.
class Answers : public openhost::Attendant {
public:
    std::optional<QString> chooseFileToSave(const QString& asked, const QString& startingDir) override
    {
        title = asked;
        folder = startingDir;
        return file;
    }
    bool chooseFileOptions(const QString& asked, const std::vector<openhost::OptionRow>& offered,
                           DzFileIOSettings& options) override
    {
        title = asked;
        rows = offered;
        options.setBoolValue(QLatin1String("CompressOutput"), false);
        return isAccepted;
    }
    QString title, folder, file;
    std::vector<openhost::OptionRow> rows;
    bool isAccepted = false;

private:
    openhost::AttendantOverride _answering{*this};
};

class SaveManager : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        openMini();
    }
    static DzAssetIOMgr& manager() { return *dzApp->getAssetIOMgr(); }
    static DzAssetIOFilter* filter(const char* name)
    {
        return manager().getAssetFilter(manager().findAssetFilterIndex(QLatin1String(name)));
    }
    int saveAs(const QString& path, bool showOptions = false)
    {
        return manager().doSaveWithOptions(filter("DzSceneAssetFilter"), &_options, showOptions, path);
    }
    QString place(const char* name) const { return QString::fromStdString(file(name).string()); }

    DzFileIOSettings _options;
};

const char* const filterNames[] = {"DzSceneAssetFilter", "DzSceneSubsetAssetFilter", "DzWearablesAssetFilter",
                                   "DzPoseAssetFilter", "DzMorphSupportAssetFilter"};

} // namespace

TEST_F(SaveManager, finds_and_makes_every_filter_by_its_class_name)
{
    for (const char* const name : filterNames) {
        ASSERT_NE(filter(name), nullptr) << name;
        EXPECT_EQ(filter(name)->className(), QLatin1String(name));
        EXPECT_FALSE(filter(name)->getDescription().isEmpty());
        const DzClassFactory* const factory = openhost::FindBuiltInClassFactory(QLatin1String(name));
        ASSERT_NE(factory, nullptr) << name;
        const std::unique_ptr<QObject> made(factory->createInstance());
        EXPECT_NE(qobject_cast<DzAssetIOFilter*>(made.get()), nullptr);
    }
    EXPECT_EQ(manager().findAssetFilterIndex(QStringLiteral("DzNoFilter")), -1);
}

TEST_F(SaveManager, adds_a_missing_extension)
{
    EXPECT_EQ(saveAs(place("Plain")), 0);
    EXPECT_TRUE(fs::exists(file("Plain.duf")));
    EXPECT_EQ(saveAs(place("Upper.DUF")), 0);
    EXPECT_TRUE(fs::exists(file("Upper.DUF")));
}

TEST_F(SaveManager, never_waits_for_a_name_where_nobody_can_be_asked)
{
    EXPECT_EQ(saveAs(QString()), DZ_ILLEGAL_ARGUMENT_ERROR);
    Answers answers;
    answers.file = place("Asked.duf");
    _options.setBoolValue(QStringLiteral("RunSilent"), true);
    EXPECT_EQ(saveAs(QString()), DZ_ILLEGAL_ARGUMENT_ERROR);
    EXPECT_FALSE(fs::exists(file("Asked.duf")));
    EXPECT_EQ(manager().doSaveWithOptions(nullptr, &_options), DZ_ILLEGAL_ARGUMENT_ERROR);
}

TEST_F(SaveManager, asks_for_a_name_and_takes_no_for_an_answer)
{
    Answers answers;
    answers.file = QString();
    EXPECT_EQ(saveAs(QString()), DZ_USER_CANCELLED_OPERATION);
    EXPECT_EQ(answers.title, QStringLiteral("Scene"));
    EXPECT_EQ(answers.folder, QString::fromStdString(_library.string()) + QStringLiteral("/Scenes"));
    answers.file = place("Asked");
    EXPECT_EQ(saveAs(QString()), 0);
    EXPECT_TRUE(fs::exists(file("Asked.duf")));
}

TEST_F(SaveManager, asks_for_options_and_takes_no_for_an_answer)
{
    Answers answers;
    answers.isAccepted = false;
    EXPECT_EQ(saveAs(place("A.duf"), true), DZ_USER_CANCELLED_OPERATION);
    EXPECT_FALSE(fs::exists(file("A.duf")));
    EXPECT_EQ(answers.title, QStringLiteral("Scene Save Options"));
    ASSERT_EQ(answers.rows.size(), 1u);
    EXPECT_STREQ(answers.rows[0].key, "CompressOutput");
    answers.isAccepted = true;
    EXPECT_EQ(saveAs(place("A.duf"), true), 0);
    EXPECT_NE(ReadBytes(file("A.duf")).substr(0, 2), "\x1F\x8B");
    EXPECT_TRUE(filter("DzPoseAssetFilter")->getOptions(&_options, true, QString()));
    ASSERT_EQ(answers.rows.size(), 2u);
    EXPECT_STREQ(answers.rows[1].key, "SaveCurFrame");
    EXPECT_TRUE(_options.getBoolValue(QStringLiteral("SaveCurFrame")));
}

TEST_F(SaveManager, answers_options_with_the_defaults_where_nobody_can_be_asked)
{
    DzFileIOSettings options;
    EXPECT_TRUE(filter("DzSceneAssetFilter")->getOptions(&options, true, QString()));
    EXPECT_TRUE(options.getBoolValue(QStringLiteral("CompressOutput")));
    EXPECT_TRUE(filter("DzSceneAssetFilter")->showOptions());
}

TEST_F(SaveManager, keeps_a_file_that_cannot_be_replaced)
{
    ASSERT_EQ(saveAs(place("Kept.duf")), 0);
    const std::string before = ReadBytes(file("Kept.duf"));
    DialOf(*dzScene->getPrimarySelection(), "Up")->setValue(0.5f);
    fs::create_directory(folder("saved") / "Folder.duf");
    EXPECT_EQ(saveAs(place("Folder.duf")), DZ_UNABLE_TO_OPEN_FILE_ERROR);
    EXPECT_TRUE(log().contains(QStringLiteral("Folder.duf"))) << log().toStdString();
    WriteBytes(folder("blocked"), "a file, not a folder");
    EXPECT_EQ(saveAs(QString::fromStdString((folder("blocked") / "A.duf").string())),
              DZ_UNABLE_TO_OPEN_FILE_ERROR);
    dzScene->clear();
    EXPECT_EQ(saveAs(place("Kept.duf")), DZ_OPERATION_FAILED_ERROR) << "there is nothing to save";
    EXPECT_TRUE(log().contains(QStringLiteral("Kept.duf: the scene holds nothing to save")));
    EXPECT_EQ(ReadBytes(file("Kept.duf")), before);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder("saved")))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names.size(), 2u) << "nothing unfinished is left";
}

TEST_F(SaveManager, says_which_figure_it_misses)
{
    EXPECT_EQ(save("DzPoseAssetFilter", file("P.duf"), false, "Nobody"), DZ_OPERATION_FAILED_ERROR);
    EXPECT_TRUE(log().contains(QStringLiteral("P.duf: there is no figure Nobody")));
    EXPECT_EQ(save("DzWearablesAssetFilter", file("W.duf"), false, "Mini"), DZ_OPERATION_FAILED_ERROR);
    EXPECT_TRUE(log().contains(QStringLiteral("W.duf: Mini wears nothing")));
    dzScene->selectAllNodes(false);
    EXPECT_EQ(save("DzPoseAssetFilter", file("P.duf")), DZ_OPERATION_FAILED_ERROR);
    EXPECT_TRUE(log().contains(QStringLiteral("P.duf: no figure is selected")));
}

TEST_F(SaveManager, tells_of_each_save_and_asks_before_it)
{
    QStringList told;
    QObject context;
    QObject::connect(&manager(), &DzAssetIOMgr::assetSaveStarted, &context,
                     [&told](const QString& name) { told.append(QStringLiteral("started ") + name); });
    QObject::connect(&manager(), &DzAssetIOMgr::assetSaveFinished, &context,
                     [&told](const QString& name) { told.append(QStringLiteral("finished ") + name); });
    QObject::connect(&manager(), &DzAssetIOMgr::assetSaved, &context,
                     [&told] { told.append(QStringLiteral("saved")); });
    EXPECT_EQ(saveAs(place("Told")), 0);
    EXPECT_FALSE(manager().isWriting());
    EXPECT_EQ(told, (QStringList{QStringLiteral("started ") + place("Told.duf"),
                                 QStringLiteral("finished ") + place("Told.duf"), QStringLiteral("saved")}));
    Recorder recorder;
    recorder.refused = openhost::Operation::SaveAsset;
    EXPECT_EQ(saveAs(place("Refused.duf")), DZ_OPERATION_FAILED_ERROR);
    EXPECT_EQ(recorder.lines, (std::vector<std::string>{"saveAsset DzSceneAssetFilter"}));
    EXPECT_FALSE(fs::exists(file("Refused.duf")));
    EXPECT_EQ(told.size(), 3);
}

TEST_F(SaveManager, loads_by_content_into_an_empty_scene_or_beside_what_is_there)
{
    ASSERT_EQ(dzScene->saveScene(place("S")), 0);
    EXPECT_EQ(ReadBytes(file("S.duf")).substr(0, 2), "\x1F\x8B");
    ASSERT_EQ(dzScene->getNumNodes(), 3);
    bool wasReading = false;
    QObject context;
    QObject::connect(dzScene, &DzScene::sceneLoaded, &context,
                     [&wasReading] { wasReading = manager().isReading(); });
    EXPECT_EQ(dzScene->loadScene(place("S.duf"), DzScene::MergeFile), 0);
    EXPECT_TRUE(wasReading);
    EXPECT_FALSE(manager().isReading());
    EXPECT_EQ(dzScene->getNumNodes(), 6);
    EXPECT_EQ(dzScene->loadScene(place("S.duf"), DzScene::DefaultMethod), 0) << "a scene replaces";
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    EXPECT_EQ(save("DzSceneSubsetAssetFilter", file("Sub.duf")), 0);
    EXPECT_EQ(dzScene->loadScene(place("Sub.duf"), DzScene::DefaultMethod), 0) << "a part is added";
    EXPECT_EQ(dzScene->getNumNodes(), 6);
    EXPECT_EQ(dzScene->loadScene(place("Sub.duf"), DzScene::OpenNew), 0);
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}

TEST_F(SaveManager, keeps_the_scene_when_a_file_cannot_be_loaded)
{
    EXPECT_EQ(dzScene->loadScene(place("None.duf"), DzScene::OpenNew), DZ_FILE_NOT_FOUND_ERROR);
    WriteBytes(file("Bad.duf"), "not json");
    EXPECT_EQ(dzScene->loadScene(place("Bad.duf"), DzScene::OpenNew), DZ_INVALID_FILE_ERROR);
    EXPECT_EQ(dzScene->loadScene(place("Bad.duf"), DzScene::MergeFile), DZ_OPERATION_FAILED_ERROR);
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}
