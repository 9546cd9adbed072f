// What the host asks, and that it follows the answers.
// SPDX-License-Identifier: MIT

#include "openhost/attendant.h"

#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzcontentmgr.h"
#include "dzdformmodifier.h"
#include "dzexporter.h"
#include "dzexportmgr.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "tests/host/content_fixture.h"

#include <atomic>

namespace {

namespace fs = std::filesystem;

/// Keeps every question, and answers as it is told.
class Listener : public openhost::Attendant {
public:
    void tellMissingFiles(const QStringList& files) override
    {
        note("missing", files.join(QLatin1Char(' ')));
    }
    void tellOpenError(const QString& file, const QString& reason) override
    {
        note("error", QString::fromStdString(fs::path(file.toStdString()).filename().string()));
        EXPECT_TRUE(reason.contains(file)) << reason.toStdString();
    }
    void tellDuplicateFormulas(const QStringList& outputs) override
    {
        note("duplicates", outputs.join(QLatin1Char(' ')));
    }
    bool mayReplaceScene(const QString& file) override
    {
        note("replace", QString::fromStdString(fs::path(file.toStdString()).filename().string()));
        return agrees;
    }
    bool mayExceedLimits(const QStringList& dials) override
    {
        note("limits", dials.join(QLatin1Char(' ')));
        return agrees;
    }
    bool chooseDFormOptions(openhost::DFormLoadOptions& options) override
    {
        note("dform", options.name);
        options.name = QStringLiteral("Mine");
        return agrees;
    }
    bool chooseFileOptions(const QString& title, const std::vector<openhost::OptionRow>& rows,
                           DzFileIOSettings& options) override
    {
        note("options", title);
        EXPECT_FALSE(rows.empty());
        options.setFloatValue(QStringLiteral("Scale"), 2.0);
        return agrees;
    }
    std::optional<QString> chooseFileToSave(const QString& title, const QString&) override
    {
        note("save", title);
        return chosen;
    }

    std::vector<std::string> asked;
    bool agrees = true;
    std::optional<QString> chosen;

private:
    void note(const char* question, const QString& about)
    {
        asked.push_back(question + (' ' + about.toStdString()));
    }

    openhost::AttendantOverride _answering{*this};
};

/// Ends a load after so many steps.
class Ender : public openhost::Attendant {
public:
    explicit Ender(int after) : _after(after) {}
    void beforeReading() override
    {
        if (++steps > _after)
            throw std::runtime_error("ended");
    }
    std::atomic<int> steps{0};

private:
    int _after;
    openhost::AttendantOverride _answering{*this};
};

using Asked = std::vector<std::string>;

class Questions : public LibraryTest {
protected:
    bool pose(double up)
    {
        return open(writePose((R"([{"url": "name://@selection#Up:?value/value", "keys": [[0, )" +
                               fmt::format("{}", up) + "]]}]")
                                  .c_str()));
    }
    /// A quad whose first vertex is at (1, 0, 0).
    std::string writeObj() const
    {
        const fs::path file = folder("meshes") / "Quad.obj";
        WriteBytes(file, "v 1 0 0\nv 2 0 0\nv 2 1 0\nv 1 1 0\nf 1 2 3 4\n");
        return file.string();
    }

    Listener attendant;
};

} // namespace

TEST_F(Questions, files_that_are_missing_are_told_and_the_rest_is_loaded)
{
    EXPECT_TRUE(open(mini::WriteCharacter(
        _library, {{dson::MakeUri(mini::MorphInfo("None").id, "None"), "None", "", 1.0}}, "Otto")));
    EXPECT_EQ(attendant.asked, Asked{"missing " + mini::MorphInfo("None").id});
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("Otto")), nullptr);
}

TEST_F(Questions, a_file_that_cannot_be_opened_is_told_with_the_reason)
{
    EXPECT_FALSE(open(_library / "Nothing.duf"));
    WriteBytes(_library / "Broken.duf", "{");
    EXPECT_FALSE(open(_library / "Broken.duf"));
    EXPECT_EQ(attendant.asked, (Asked{"error Nothing.duf", "error Broken.duf"}));
}

TEST_F(Questions, a_load_ends_before_any_of_its_files_when_that_is_wanted)
{
    const auto write = [this](const char* name) { mini::WriteMorph(mini::Control(name), _library); };
    write("First");
    write("Second");
    {
        // Each is looked at, read and put into place.
        const Ender patient(1000);
        ASSERT_NE(openMini(), nullptr);
        EXPECT_EQ(patient.steps, 2 * 3);
    }
    const int nodes = dzScene->getNumNodes();
    write("Third");
    for (const int most : {0, 1, 3, 5}) {
        const Ender ender(most);
        EXPECT_EQ(openMini(), nullptr) << most;
        EXPECT_EQ(dzScene->getNumNodes(), nodes) << most;
    }
    EXPECT_NE(openMini(), nullptr);
}

TEST_F(Questions, repeated_formulas_are_told)
{
    dson::Modifier driver = mini::Control("Driver");
    driver.formulas.assign(2, dson::MakeDeltaAdd(mini::Dial("Up"), mini::Dial("Driver"), 0.25));
    mini::WriteMorph(driver, _library);
    EXPECT_NE(openMini(), nullptr);
    EXPECT_EQ(attendant.asked, Asked{"duplicates " + mini::Dial("Up")});
}

TEST_F(Questions, a_preset_stays_within_the_limits_of_dials_unless_they_may_be_exceeded)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    attendant.agrees = false;
    EXPECT_TRUE(pose(2.5));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 1.0f);
    attendant.agrees = true;
    EXPECT_TRUE(pose(2.5));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 2.5f);
    EXPECT_EQ(attendant.asked, (Asked{"limits Up", "limits Up"}));
}

TEST_F(Questions, a_d_former_is_added_as_wanted_or_not_at_all)
{
    const fs::path preset = writeDForm(10, {1});
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    attendant.agrees = false;
    EXPECT_FALSE(open(preset));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    attendant.agrees = true;
    EXPECT_TRUE(open(preset));
    EXPECT_NE(figure->getObject()->findModifier(QStringLiteral("Mine")), nullptr);
    EXPECT_EQ(attendant.asked, (Asked{"dform D-Former_1", "dform D-Former_1"}));
}

TEST_F(Questions, a_scene_takes_the_place_of_another_only_when_it_may)
{
    ASSERT_NE(openMini(), nullptr);
    const fs::path file = folder("scenes") / "Saved.duf";
    ASSERT_EQ(dzScene->saveScene(QString::fromStdString(file.string())), DZ_NO_ERROR);
    AddNode("Chair");
    DzContentMgr& content = *dzApp->getContentMgr();
    attendant.agrees = false;
    EXPECT_FALSE(content.openFile(QString::fromStdString(file.string()), false));
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("Chair")), nullptr);
    attendant.agrees = true;
    EXPECT_TRUE(content.openFile(QString::fromStdString(file.string()), false));
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("Chair")), nullptr);
    EXPECT_EQ(attendant.asked, (Asked{"replace Saved.duf", "replace Saved.duf"}));
    EXPECT_TRUE(open(file)) << "beside what is there nothing is replaced";
    EXPECT_EQ(attendant.asked.size(), 2u);
}

TEST_F(Questions, a_mesh_is_read_with_the_options_that_are_chosen_or_not_at_all)
{
    const QString file = QString::fromStdString(writeObj());
    attendant.agrees = false;
    EXPECT_FALSE(open(file.toStdString()));
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    attendant.agrees = true;
    ASSERT_TRUE(open(file.toStdString()));
    ASSERT_EQ(dzScene->getNumNodes(), 1);
    const float inFile = 1.0f, centimetresPerUnit = 2.0f;
    EXPECT_EQ(VertexAt(*dzScene->getNode(0), 0).m_x, inFile * centimetresPerUnit);
    EXPECT_EQ(attendant.asked, (Asked{"options OBJ Import Options", "options OBJ Import Options"}));
}

TEST_F(Questions, a_mesh_is_written_only_with_options_that_are_agreed_to)
{
    ASSERT_NE(openMini(), nullptr);
    const fs::path file = _library / "Out.obj";
    const std::unique_ptr<DzExporter> exporter(
        dzApp->getExportMgr()->findExporterByClassName(QStringLiteral("DzObjExporter")));
    attendant.agrees = false;
    EXPECT_EQ(exporter->writeFile(QString::fromStdString(file.string())), DZ_USER_CANCELLED_OPERATION);
    EXPECT_FALSE(fs::exists(file));
    attendant.agrees = true;
    EXPECT_EQ(exporter->writeFile(QString::fromStdString(file.string())), DZ_NO_ERROR);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(attendant.asked, (Asked{"options OBJ Export Options", "options OBJ Export Options"}));
}

TEST_F(Questions, a_scene_without_a_name_is_saved_where_it_is_wanted)
{
    ASSERT_NE(openMini(), nullptr);
    const fs::path file = folder("scenes") / "Chosen.duf";
    EXPECT_EQ(dzScene->saveScene(QString()), DZ_ILLEGAL_ARGUMENT_ERROR) << "nobody knows a name";
    attendant.chosen = QString();
    EXPECT_EQ(dzScene->saveScene(QString()), DZ_USER_CANCELLED_OPERATION);
    attendant.chosen = QString::fromStdString(file.string());
    EXPECT_EQ(dzScene->saveScene(QString()), DZ_NO_ERROR);
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(attendant.asked, (Asked{"save Scene", "save Scene", "save Scene"}));
}

TEST_F(Questions, go_to_the_former_attendant_again_when_another_is_gone)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    {
        Listener second;
        EXPECT_TRUE(pose(2.5));
        EXPECT_EQ(second.asked, Asked{"limits Up"}) << "the newest is asked";
    }
    DialOf(*figure, "Up")->setIsClamped(true);
    attendant.agrees = false;
    EXPECT_TRUE(pose(3.0));
    EXPECT_EQ(attendant.asked, Asked{"limits Up"});
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 1.0f);
}
