// What is kept of morph files from one run to the next.
// SPDX-License-Identifier: MIT

#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "library/asset_library.h"
#include "openhost/diagnostics.h"
#include "tests/host/content_fixture.h"
#include "tests/host/hostile_disk.h"

#include <chrono>

#include <sqlite3.h>

#include <QCoreApplication>
#include <QProcess>

namespace {

namespace fs = std::filesystem;

/// Another program's view of the index.
class Database {
public:
    explicit Database(const fs::path& file) { EXPECT_EQ(sqlite3_open(file.c_str(), &_database), SQLITE_OK); }
    ~Database() { sqlite3_close(_database); }
    void run(const std::string& sql)
    {
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(_database, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
        sqlite3_free(error);
    }
    int count(const char* what)
    {
        int count = -1;
        const auto take = [](void* into, int, char** values, char**) {
            *static_cast<int*>(into) = std::atoi(values[0]);
            return 0;
        };
        sqlite3_exec(_database, (std::string("SELECT count(*) FROM ") + what).c_str(), take, &count, nullptr);
        return count;
    }

private:
    sqlite3* _database = nullptr;
};

/// Each load is that of a program that has just been started.
class MorphIndex : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        _formerCache = qgetenv("XDG_CACHE_HOME");
        keepIn(folder("cache"));
    }
    void TearDown() override
    {
        LibraryTest::TearDown();
        qputenv("XDG_CACHE_HOME", _formerCache);
    }
    static void keepIn(const fs::path& cache) { qputenv("XDG_CACHE_HOME", cache.c_str()); }

    fs::path index() const { return folder("cache") / "gantrel/morphs.sqlite"; }
    fs::path morphFile(const std::string& name) const
    {
        return folder("stock") / (mini::morphFolder + 1) / (name + ".dsf");
    }
    void setTime(const fs::path& file, std::chrono::seconds ago) const
    {
        fs::last_write_time(file, fs::file_time_type(_now - ago));
    }
    void write(const std::string& name, const std::string& text, std::chrono::seconds ago) const
    {
        WriteBytes(morphFile(name), text);
        setTime(morphFile(name), ago);
    }
    /// A control, as another program writes it.
    void writeDial(const std::string& name, const std::string& label,
                   std::chrono::seconds ago = std::chrono::hours(1)) const
    {
        write(
            name,
            R"({"file_version": "0.6.0.0", "modifier_library": [{"id": ")" + name +
                R"(", "parent": "/data/Acme/Mini/Base/Mini.dsf#Mini", "channel": {"id": "value", "label": ")" +
                label + R"("}}]})",
            ago);
    }
    DzFigure* load()
    {
        TestHost().reset();
        use(_library);
        return openMini();
    }
    /// Of a dial after another load; "none" for no dial.
    std::string labelOf(const char* name)
    {
        const DzFigure* const figure = load();
        const DzFloatProperty* const dial = figure ? DialOf(*figure, name) : nullptr;
        return dial ? dial->getLabel().toStdString() : "none";
    }
    base::Diagnostics metInLoading()
    {
        TestHost().reset();
        use(_library);
        const openhost::DiagnosticsCollector met(dzApp->diagnostics());
        EXPECT_NE(openMini(), nullptr);
        return met.all();
    }
    /// What is told of the index in another load.
    std::vector<std::string> toldOfIndex()
    {
        std::vector<std::string> told;
        for (const base::Diagnostic& diagnostic : metInLoading())
            if (diagnostic.file.find("morphs.sqlite") != std::string::npos) {
                EXPECT_EQ(diagnostic.severity, base::Severity::Note);
                told.push_back(diagnostic.what);
            }
        return told;
    }
    /// The dial's file says something else, and nobody can tell.
    void expectKept(const char* name, bool isKept)
    {
        const std::string before = ReadBytes(morphFile(name));
        const fs::file_time_type time = fs::last_write_time(morphFile(name));
        const std::string label = labelOf(name);
        std::string changed = before;
        changed.replace(changed.find(label), label.size(), std::string(label.size(), 'X'));
        WriteBytes(morphFile(name), changed);
        fs::last_write_time(morphFile(name), time);
        EXPECT_EQ(labelOf(name), isKept ? label : std::string(label.size(), 'X'));
        WriteBytes(morphFile(name), before);
        fs::last_write_time(morphFile(name), time);
    }

private:
    const fs::file_time_type _now = fs::file_time_type::clock::now();
    QByteArray _formerCache;
};

using std::chrono::hours;
using std::chrono::seconds;

} // namespace

TEST_F(MorphIndex, serves_files_that_have_not_changed)
{
    writeDial("Up", "Upwards");
    expectKept("Up", true);
    Database database(index());
    EXPECT_EQ(database.count("head"), 1);
    EXPECT_EQ(database.count("folder"), 1);
}

TEST_F(MorphIndex, gives_the_same_figure_as_the_files)
{
    mini::WriteMorph(mini::Morph("Wide", 1, {0, 2, 0}), _library);
    setTime(morphFile("Wide"), hours(1));
    for (int run = 0; run < 2; ++run) {
        DzFigure* const figure = load();
        ASSERT_NE(figure, nullptr);
        DialOf(*figure, "Wide")->setValue(0.5f);
        ExpectAt(VertexAt(*figure, 1), 0, 11, 0);
    }
}

TEST_F(MorphIndex, sees_a_file_of_the_same_size_and_another_time)
{
    writeDial("Up", "Upwards");
    EXPECT_EQ(labelOf("Up"), "Upwards");
    writeDial("Up", "Onwards", hours(2));
    EXPECT_EQ(labelOf("Up"), "Onwards");
    expectKept("Up", true);
}

TEST_F(MorphIndex, sees_a_file_of_the_same_time_and_another_size)
{
    writeDial("Up", "Upwards");
    EXPECT_EQ(labelOf("Up"), "Upwards");
    writeDial("Up", "Up and away");
    EXPECT_EQ(labelOf("Up"), "Up and away");
}

TEST_F(MorphIndex, sees_changes_within_a_run)
{
    writeDial("Up", "Upwards");
    ASSERT_NE(load(), nullptr);
    writeDial("Up", "Onwards", hours(2));
    const DzFigure* const second = openMini();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(DialOf(*second, "Up")->getLabel(), QStringLiteral("Onwards"));
}

TEST_F(MorphIndex, takes_no_file_that_has_just_changed)
{
    writeDial("Up", "Upwards", seconds(0));
    expectKept("Up", false);
}

TEST_F(MorphIndex, sees_files_come_and_go)
{
    writeDial("Up", "Upwards");
    writeDial("Down", "Downwards");
    EXPECT_EQ(labelOf("Down"), "Downwards");
    fs::remove(morphFile("Down"));
    writeDial("Left", "Leftwards");
    EXPECT_EQ(labelOf("Down"), "none");
    EXPECT_EQ(labelOf("Left"), "Leftwards");
    expectKept("Up", true);
    EXPECT_EQ(Database(index()).count("head"), 2);
}

TEST_F(MorphIndex, forgets_folders_that_are_gone_but_not_those_of_an_absent_disk)
{
    writeDial("Up", "Upwards");
    writeDial("../More/Down", "Downwards");
    ASSERT_NE(load(), nullptr);
    EXPECT_EQ(Database(index()).count("folder"), 2);
    fs::remove_all(morphFile("../More/Down").parent_path());
    ASSERT_NE(load(), nullptr);
    EXPECT_EQ(Database(index()).count("folder"), 1);
    EXPECT_EQ(Database(index()).count("head"), 1);
    fs::rename(_library, folder("absent"));
    TestHost().reset();
    use(_library);
    use(folder("other"));
    dson::WriteFigure(mini::Figure(), folder("other"));
    const fs::path character = mini::WriteCharacter(folder("other"));
    mini::WriteMorph(mini::Control("Left"), folder("other"));
    ASSERT_TRUE(open(character));
    EXPECT_EQ(Database(index()).count("folder"), 1);
}

TEST_F(MorphIndex, tells_what_was_met_in_a_file_as_the_file_does)
{
    writeDial("Up", "Upwards");
    write(
        "Odd",
        R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Odd", "parent": "#Mini", "channel": {"id": "value"},},)"
        R"({"id": "Odd", "parent": "/data/Acme/Mini/Base/Mini.dsf#Mini", "channel": {"id": "value"}}], "scene": {"materials": [{}]}})",
        hours(1));
    write("Broken", R"({"file_version": "0.6.0.0", "modifier_library": [{"id": )", hours(1));
    write("NoFile", R"({"modifiers": []})", hours(1));
    write("Alias",
          R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Alias", "parent": "#Mini", "channel":)"
          R"({"id": "value", "type": "alias", "target_channel": "Mini:#Nowhere?value"}}]})",
          hours(1));
    const base::Diagnostics first = metInLoading();
    EXPECT_EQ(Database(index()).count("head"), 5);
    const base::Diagnostics second = metInLoading();
    EXPECT_EQ(first, second);
    const auto tells = [&second](const char* text) {
        return std::any_of(second.begin(), second.end(), [text](const base::Diagnostic& diagnostic) {
            return base::ToLine(diagnostic).find(text) != std::string::npos;
        });
    };
    for (const char* const text :
         {"Odd.dsf: has 1 stray comma", "1 id is given more than once",
          "Broken.dsf: ", "NoFile.dsf: is not a DSON file", "1 alias names what is not installed"})
        EXPECT_TRUE(tells(text)) << text;
}

TEST_F(MorphIndex, tells_what_was_met_in_a_file_once_in_a_run)
{
    const std::string odd =
        R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Odd", "parent": "#Mini",}]})";
    write("Odd", odd, hours(1));
    ASSERT_NE(load(), nullptr);
    ASSERT_NE(openMini(), nullptr);
    const auto told = [this] { return log().count(QStringLiteral("Odd.dsf: has 1 stray comma")); };
    EXPECT_EQ(told(), 1);
    write("Odd", odd, hours(2));
    ASSERT_NE(openMini(), nullptr);
    EXPECT_EQ(told(), 2);
}

TEST_F(MorphIndex, takes_no_file_with_more_than_morphs)
{
    write(
        "Up",
        R"({"file_version": "0.6.0.0", "node_library": [{"id": "other"}], "modifier_library": [{"id": "Up",)"
        R"("parent": "/data/Acme/Mini/Base/Mini.dsf#Mini", "channel": {"id": "value", "label": "Upwards"}}]})",
        hours(1));
    expectKept("Up", false);
}

TEST_F(MorphIndex, is_made_anew_when_it_is_damaged)
{
    writeDial("Up", "Upwards");
    ASSERT_NE(load(), nullptr);
    fs::resize_file(index(), 5000);
    EXPECT_EQ(toldOfIndex().size(), 1u);
    EXPECT_TRUE(toldOfIndex().empty());
    expectKept("Up", true);
    WriteBytes(index(), std::string(9000, 'x'));
    EXPECT_EQ(toldOfIndex(), std::vector<std::string>{
                                 "the index of morphs was damaged and is made anew: file is not a database"});
    expectKept("Up", true);
}

TEST_F(MorphIndex, is_made_anew_when_something_in_it_has_changed)
{
    writeDial("Up", "Upwards");
    writeDial("Down", "Downwards");
    ASSERT_NE(load(), nullptr);
    for (const char* const change :
         {"bytes = CAST(replace(bytes, CAST('pwards' AS BLOB), CAST('pwords' AS BLOB)) AS BLOB)",
          "bytes = substr(bytes, 1, 100)", "bytes = x'00'"}) {
        Database(index()).run(std::string("UPDATE head SET ") + change);
        EXPECT_EQ(labelOf("Up"), "Upwards") << change;
        EXPECT_EQ(Database(index()).count("head"), 2) << change;
    }
    Database(index()).run("UPDATE head SET bytes = x'00'");
    EXPECT_EQ(toldOfIndex().size(), 1u);
    Database(index()).run("DROP TABLE head");
    EXPECT_EQ(toldOfIndex().size(), 1u);
    expectKept("Up", true);
}

TEST_F(MorphIndex, of_another_version_is_made_anew)
{
    writeDial("Up", "Upwards");
    ASSERT_NE(load(), nullptr);
    Database(index()).run("PRAGMA user_version=1; ALTER TABLE head ADD COLUMN more");
    EXPECT_TRUE(toldOfIndex().empty());
    expectKept("Up", true);
    EXPECT_EQ(Database(index()).count("head"), 1);
}

TEST_F(MorphIndex, is_done_without_while_another_program_writes_all_the_time)
{
    writeDial("Up", "Upwards");
    ASSERT_NE(load(), nullptr);
    writeDial("Down", "Downwards");
    {
        Database other(index());
        other.run("BEGIN IMMEDIATE");
        EXPECT_TRUE(toldOfIndex().empty());
        EXPECT_EQ(labelOf("Down"), "Downwards");
        other.run("COMMIT");
        EXPECT_EQ(other.count("head"), 1);
    }
    ASSERT_NE(load(), nullptr);
    EXPECT_EQ(Database(index()).count("head"), 2);
}

TEST_F(MorphIndex, is_done_without_where_nothing_can_be_written)
{
    writeDial("Up", "Upwards");
    for (const bool hasIndex : {false, true}) {
        fs::create_directories(index().parent_path());
        if (hasIndex) {
            ASSERT_NE(load(), nullptr);
        }
        EXPECT_EQ(fs::exists(index()), hasIndex);
        const ReadOnlyFolder readOnly(QString::fromStdString(index().parent_path().string()));
        if (hasIndex)
            fs::permissions(index(), fs::perms::owner_read);
        const std::vector<std::string> told = toldOfIndex();
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told.front().find("no index of morphs can be kept, so figures load more slowly: "), 0u);
        EXPECT_EQ(labelOf("Up"), "Upwards");
    }
}

TEST_F(MorphIndex, is_done_without_where_a_damaged_one_cannot_be_removed)
{
    writeDial("Up", "Upwards");
    ASSERT_NE(load(), nullptr);
    WriteBytes(index(), std::string(9000, 'x'));
    const ReadOnlyFolder readOnly(QString::fromStdString(index().parent_path().string()));
    EXPECT_EQ(toldOfIndex(),
              std::vector<std::string>{"the index of morphs is damaged and cannot be made anew, "
                                       "so figures load more slowly: file is not a database"});
    EXPECT_EQ(labelOf("Up"), "Upwards");
}

TEST_F(MorphIndex, is_told_of_once_where_there_is_no_place_for_it)
{
    writeDial("Up", "Upwards");
    WriteBytes(folder("file"), "");
    keepIn(folder("file"));
    TestHost().reset();
    use(_library);
    ASSERT_NE(openMini(), nullptr);
    writeDial("Down", "Downwards");
    ASSERT_NE(openMini(), nullptr);
    EXPECT_EQ(
        log().count(QStringLiteral("morphs.sqlite: no index of morphs can be kept, so figures load more "
                                   "slowly: Not a directory")),
        1)
        << log().toStdString();
}

TEST_F(MorphIndex, is_where_documents_are_kept_that_nobody_uses)
{
    writeDial("Up", "Upwards");
    writeDial("New", "New", seconds(0));
    const std::vector<std::string> files{morphFile("Up").string(), morphFile("New").string()};
    openhost::ContentPaths paths;
    paths.add(_library);
    openhost::AssetLibrary assets(paths);
    for (const int run : {1, 2}) {
        auto documents = assets.readAll(files);
        const std::weak_ptr<const dson::Document> up = documents[0], fresh = documents[1];
        EXPECT_EQ(assets.readAll(files), documents) << run;
        documents.clear();
        EXPECT_TRUE(up.expired()) << run;
        EXPECT_FALSE(fresh.expired()) << run;
    }
}

// The test below runs this one in several programs at once, on folders that it has made.
TEST_F(MorphIndex, answers_while_files_get_other_times)
{
    if (qEnvironmentVariableIsSet("INDEX_TEST_CACHE")) {
        keepIn(qgetenv("INDEX_TEST_CACHE").toStdString());
        _library = qgetenv("INDEX_TEST_LIBRARY").toStdString();
    } else {
        writeDial("Up", "Upwards");
        writeDial("Down", "Downwards");
    }
    for (int i = 0; i < 20; ++i) {
        fs::last_write_time(_library / "data/Acme/Mini/Base/Morphs/Acme/Shapes/Up.dsf",
                            fs::file_time_type::clock::now() - std::chrono::hours(5 + i));
        EXPECT_EQ(labelOf("Up"), "Upwards");
        EXPECT_EQ(labelOf("Down"), "Downwards");
    }
}

TEST_F(MorphIndex, is_for_several_programs_at_once)
{
    writeDial("Up", "Upwards");
    writeDial("Down", "Downwards");
    qputenv("INDEX_TEST_CACHE", folder("cache").c_str());
    qputenv("INDEX_TEST_LIBRARY", _library.c_str());
    QProcess programs[3];
    for (QProcess& program : programs)
        program.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--gtest_filter=MorphIndex.answers_while_files_get_other_times")});
    for (QProcess& program : programs) {
        ASSERT_TRUE(program.waitForFinished(60000));
        EXPECT_EQ(program.exitCode(), 0) << program.readAll().toStdString();
    }
    qunsetenv("INDEX_TEST_CACHE");
    qunsetenv("INDEX_TEST_LIBRARY");
    EXPECT_EQ(Database(index()).count("head"), 2);
    EXPECT_TRUE(toldOfIndex().empty());
}
