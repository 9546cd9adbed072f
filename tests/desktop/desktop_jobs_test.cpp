// The window of conversion jobs: what becomes of them, and of everything else meanwhile.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "apps/desktop/jobs/job_dialog.h"
#include "apps/desktop/jobs/jobs_window.h"
#include "tests/cli/cli_held_file.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QUrl>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>

#include <memory>

namespace {

using State = desktop::Job::State;

constexpr int longestMs = 60000;

QString Text(const char* text)
{
    return QString::fromUtf8(text);
}

class JobsTest : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
        QDir(library()).removeRecursively();
        QDir().mkpath(library());
        makeWindow();
    }
    void TearDown() override
    {
        jobs.reset();
        DesktopTest::TearDown();
    }

    void makeWindow(const QString& program = QStringLiteral(GANTREL_CLI))
    {
        jobs.reset();
        jobs.reset(new desktop::JobsWindow(
            nullptr, program, std::make_unique<desktop::JobStore>(TestFolder() + Text("/job store"))));
        queue().remove(all());
        queue().setContentFolders({dzApp->getContentMgr()->getContentDirectoryPath(0)});
    }
    desktop::JobQueue& queue() const { return jobs->queue(); }
    const desktop::Job& job(int row) const { return queue().jobs()[row]; }
    QVector<int> all() const
    {
        QVector<int> rows;
        for (int row = 0; row < queue().jobs().size(); ++row)
            rows.append(row);
        return rows;
    }

    static QString library() { return TestFolder() + Text("/saved by jobs"); }
    static QJsonObject cells(const char* name, const QString& source = pathOf(sourceFile))
    {
        return {
            {Text("source"), source},          {Text("target"), pathOf(targetFile)},
            {Text("name"), Text(name)},        {Text("dial"), QJsonArray{Text("Wide=1"), Text("Bulge=0.5")}},
            {Text("save-library"), library()}, {Text("vendor"), Text("Me")},
            {Text("product"), Text("Jobs")}};
    }
    void add(const QVector<QJsonObject>& rows) const
    {
        QVector<desktop::Job> added;
        for (const QJsonObject& row : rows) {
            desktop::Job one;
            one.cells = row;
            added.append(one);
        }
        queue().add(added);
    }
    void press(const char* name) const
    {
        auto& button = *jobs->findChild<QPushButton*>(QLatin1String(name));
        ASSERT_TRUE(button.isEnabled()) << name;
        button.click();
    }
    bool isEnabled(const char* name) const
    {
        return jobs->findChild<QPushButton*>(QLatin1String(name))->isEnabled();
    }
    void choose(int row) const { jobs->findChild<QTableView*>()->selectRow(row); }
    QPlainTextEdit& message() const { return *jobs->findChild<QPlainTextEdit*>(Text("JobMessage")); }
    bool waitForEnd() const
    {
        return QTest::qWaitFor(
            [this] { return !queue().isRunning() && (queue().count(State::Waiting) == 0); }, longestMs);
    }
    static QStringList saved()
    {
        return QDir(library() + Text("/data/DAZ 3D/Genesis 9/Base/Morphs/Me/Jobs"))
            .entryList({Text("*.dsf")}, QDir::Files, QDir::Name);
    }
    /// In place of the command line's.
    static QString writeProgram(const QString& commands)
    {
        static int number = 0;
        QFile script(TestFolder() + Text("/program %1").arg(++number));
        EXPECT_TRUE(script.open(QIODevice::WriteOnly | QIODevice::Truncate));
        script.write(("#!/bin/sh\n" + commands).toUtf8());
        script.close();
        EXPECT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        return script.fileName();
    }
    static QString writeTable(const QByteArray& text)
    {
        const QString folder = TestFolder() + Text("/tables");
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
        QFile file(folder + Text("/jobs.csv"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    std::unique_ptr<desktop::JobsWindow> jobs;
};

TEST_F(JobsTest, name_their_files_so_that_another_folder_does_not_matter)
{
    desktop::JobDialog dialog(nullptr, {QStringLiteral("Anna.duf")});
    dialog.setCells({{QStringLiteral("target"), QStringLiteral("G9.duf")},
                     {QStringLiteral("save-library"), QStringLiteral("out")}});
    for (const auto& [cell, name] : {std::pair{"target", "G9.duf"}, std::pair{"save-library", "out"}})
        EXPECT_EQ(dialog.cells().value(QLatin1String(cell)).toString(),
                  QDir::current().filePath(QLatin1String(name)));
}

TEST_F(JobsTest, are_done_one_after_the_other_also_behind_one_that_fails)
{
    add({cells("One"), cells("Two", TestFolder() + Text("/nowhere.duf")), cells("Three")});
    jobs->show();
    SavePicture(*jobs, "jobs-waiting");
    press("StartJobs");
    EXPECT_TRUE(queue().isRunning());
    ASSERT_TRUE(waitForEnd());
    SavePicture(*jobs, "jobs-done");
    EXPECT_EQ(job(0).state, State::Done);
    EXPECT_EQ(job(1).state, State::Failed);
    EXPECT_EQ(job(2).state, State::Done) << job(2).message.toStdString();
    EXPECT_TRUE(job(1).message.contains(Text("nowhere.duf"))) << job(1).message.toStdString();
    EXPECT_EQ(job(0).message.section(QLatin1Char('\n'), 0, 0), Text("One Head, One Body"));
    EXPECT_EQ(saved(), QStringList({Text("One Body.dsf"), Text("One Head.dsf"), Text("Three Body.dsf"),
                                    Text("Three Head.dsf")}));
    EXPECT_TRUE(QFile::exists(job(0).report));
    choose(1);
    EXPECT_FALSE(isEnabled("ShowJobReport"));
    EXPECT_EQ(message().toPlainText(), job(1).message);
    choose(0);
    EXPECT_TRUE(isEnabled("ShowJobReport"));
    const QString report = job(0).report;
    press("RemoveJobs");
    EXPECT_EQ(queue().jobs().size(), 2);
    EXPECT_FALSE(QFile::exists(report)) << "goes with its job";
}

TEST_F(JobsTest, that_are_cancelled_leave_nothing_and_can_be_begun_again)
{
    add({cells("One"), cells("Two")});
    HeldFile held(pathOf("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf").toStdString());
    press("StartJobs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return held.isWaitedFor(); }, longestMs));
    press("CancelJobs");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !queue().isRunning(); }, longestMs));
    held.letGo();
    EXPECT_EQ(job(0).state, State::Stopped);
    EXPECT_EQ(job(1).state, State::Waiting) << "nothing more is begun";
    EXPECT_EQ(saved(), QStringList());
    press("RetryJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(queue().count(State::Done), 2);
    EXPECT_EQ(saved().size(), 4);
}

TEST_F(JobsTest, replace_nothing_that_another_one_of_their_name_has_saved)
{
    QJsonObject other = cells("One");
    other.insert(Text("dial"), QJsonArray{Text("Bulge=1")});
    add({cells("One"), other});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    ASSERT_EQ(job(0).state, State::Done) << job(0).message.toStdString();
    EXPECT_EQ(job(1).state, State::Failed) << "replacing was not asked for";
    queue().retry({0});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).message, Text("It was done before, and nothing has changed since."));
    EXPECT_EQ(job(0).dials, QStringList({Text("One Head"), Text("One Body")}));
    queue().remove({0, 1});
    const QDir store(TestFolder() + Text("/job store"));
    for (const char* const folder : {"/tables", "/reports"})
        EXPECT_EQ(QDir(store.path() + QLatin1String(folder)).entryList(QDir::Files), QStringList())
            << "goes with its job";
}

TEST_F(JobsTest, that_fail_show_no_page_of_an_earlier_run)
{
    add({cells("One")});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    ASSERT_FALSE(job(0).report.isEmpty());
    QJsonObject wrong = cells("One");
    wrong.insert(Text("target"), Text("/nowhere.duf"));
    ASSERT_TRUE(queue().setCells(job(0).id, wrong));
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Failed);
    EXPECT_EQ(job(0).report, QString());
    EXPECT_FALSE(queue().setCells(Text("no such job"), wrong));
}

TEST_F(JobsTest, come_from_each_of_several_tables_and_leave_the_choice_alone)
{
    add({cells("Chosen")});
    choose(0);
    const QByteArray line = ("\nconvert,\"" + pathOf(sourceFile) + "\",\"" + pathOf(targetFile) + "\",\"" +
                             library() + "\",Me,Jobs,")
                                .toUtf8();
    const QByteArray names = "command,source,target,save-library,vendor,product,name";
    const QString first = writeTable(names + line + "First\n");
    const QString second = QFileInfo(first).path() + Text("/second.csv");
    QFile file(second);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(names + line + "Second\n");
    file.close();
    jobs->openTable(first, queue().contentOptions());
    jobs->openTable(second, queue().contentOptions());
    ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 3; }, longestMs));
    EXPECT_EQ(desktop::NameOf(job(1)), Text("First"));
    EXPECT_EQ(desktop::NameOf(job(2)), Text("Second"));
    EXPECT_TRUE(isEnabled("JobSettings")) << "the first one is chosen still";
}

TEST_F(JobsTest, come_from_dropped_files_and_what_is_left_out_is_told)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(pathOf(sourceFile)), QUrl::fromLocalFile(Text("/Notes.txt")),
                  QUrl(Text("https://example.org/Far.duf"))});
    QDragEnterEvent coming(QPoint(9, 9), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                           Qt::NoModifier);
    QDropEvent event(QPoint(9, 9), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    desktop::RememberJobCells(cells("not taken"));
    std::unique_ptr<ModalAnswer> settings;
    ModalAnswer box([&](QWidget& told) {
        settings = std::make_unique<ModalAnswer>(Press("OK"));
        QTest::mouseClick(FindButton(told, "OK"), Qt::LeftButton);
    });
    QCoreApplication::sendEvent(jobs.get(), &coming);
    QCoreApplication::sendEvent(jobs.get(), &event);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction) << "else the file would be deleted where it was";
    ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 1; }, longestMs));
    EXPECT_EQ(box.text, Text("Only figures (.duf, .dsf) and tables (.csv, .json) can be added, not "
                             "\u201CNotes.txt\u201D, \u201Chttps://example.org/Far.duf\u201D."));
    EXPECT_EQ(desktop::FileOf(job(0), "source"), pathOf(sourceFile));
}

TEST_F(JobsTest, stop_after_the_present_one_where_that_is_wanted)
{
    add({cells("One"), cells("Two")});
    HeldFile held(pathOf("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf").toStdString());
    press("StartJobs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return held.isWaitedFor(); }, longestMs));
    press("StopJobsAfter");
    held.letGo();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !queue().isRunning(); }, longestMs));
    QCoreApplication::processEvents();
    EXPECT_EQ(job(0).state, State::Done);
    EXPECT_EQ(job(1).state, State::Waiting);
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(1).state, State::Done);
}

TEST_F(JobsTest, tell_how_far_they_are)
{
    add({cells("One")});
    QList<int> told;
    QObject::connect(&queue(), &desktop::JobQueue::jobChanged, [&] {
        if (job(0).state == State::Running && job(0).percent >= 0)
            told.append(job(0).percent);
    });
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(told.isEmpty());
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

TEST_F(JobsTest, tell_each_step_as_it_comes)
{
    makeWindow(writeProgram("for step in 10 60; do\n"
                            "  echo \"progress: $step %  Step $step\" >&2\n"
                            "  while ! [ -e \"$0.$step\" ]; do sleep 0.01; done\n"
                            "done\n"));
    add({cells("One")});
    press("StartJobs");
    for (const int step : {10, 60}) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return job(0).percent == step; }, longestMs)) << step;
        EXPECT_EQ(job(0).step, Text("Step %1").arg(step));
        QFile sign(queue().program() + Text(".%1").arg(step));
        ASSERT_TRUE(sign.open(QIODevice::WriteOnly));
    }
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).message, Text("The process that converts said nothing."));
}

TEST_F(JobsTest, that_are_stopped_keep_what_the_program_said_then)
{
    const QString program = writeProgram(
        "trap 'echo \"{\\\"error\\\": \\\"Interrupted; 2 morphs are saved in /x.\\\"}\"; kill -9 $$' "
        "TERM\necho \"progress: Begun\" >&2\nwhile true; do sleep 0.01; done\n");
    const QString expected = Text("It was stopped.\nInterrupted; 2 morphs are saved in /x.");
    const auto begin = [&] {
        makeWindow(program);
        add({cells("One")});
        press("StartJobs");
        return QTest::qWaitFor([&] { return job(0).step == Text("Begun"); }, longestMs);
    };
    ASSERT_TRUE(begin());
    press("CancelJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).message, expected);
    ASSERT_TRUE(begin());
    queue().end();
    EXPECT_EQ(job(0).state, State::Stopped);
    EXPECT_EQ(job(0).message, expected) << "also at the end of the window";
}

TEST_F(JobsTest, that_fail_in_part_tell_what_is_saved)
{
    makeWindow(writeProgram(
        "cat <<'END'\n{\"results\": [{\"status\": \"failed\", \"error\": \"The page cannot be written.\",\n"
        "\"report\": {\"created\": [{\"name\": \"A\", \"label\": \"Smile\"}],\n"
        "\"skipped\": [{\"name\": \"B\", \"reason\": \"moves nothing\"}], \"warnings\": []}}]}\nEND\n"));
    add({cells("One")});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Failed);
    EXPECT_EQ(job(0).message, Text("The page cannot be written.\nSaved before that: Smile.\n"
                                   "B was left out: moves nothing."));
}

TEST_F(JobsTest, with_many_warnings_leave_the_buttons_where_they_are)
{
    QStringList warnings{Text("the first")};
    for (int i = 0; i < 300; ++i)
        warnings.append(Text("warning %1").arg(i));
    makeWindow(writeProgram("echo '{\"error\": \"" + warnings.join(Text("\\n")) + "\"}'\n"));
    add({cells("One")});
    jobs->show();
    const QSize before = jobs->size();
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    choose(0);
    QCoreApplication::processEvents();
    EXPECT_EQ(message().toPlainText(), warnings.join(QLatin1Char('\n')));
    EXPECT_EQ(jobs->size(), before);
    EXPECT_LT(jobs->minimumSizeHint().height(), before.height());
    EXPECT_GT(message().verticalScrollBar()->maximum(), 200) << "all of them can be read";
    EXPECT_TRUE(jobs->rect().contains(jobs->findChild<QPushButton*>(Text("StartJobs"))->geometry()));
    SavePicture(*jobs, "jobs-many-warnings");
}

TEST_F(JobsTest, whose_process_falls_are_failed_and_the_others_go_on)
{
    // The first call falls; the others do what they are asked.
    makeWindow(writeProgram("if mkdir \"$0.once\" 2>/dev/null; then kill -9 $$; fi\nexec '" +
                            Text(GANTREL_CLI) + "' \"$@\"\n"));
    add({cells("One"), cells("Two")});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Failed);
    EXPECT_EQ(job(0).message, Text("The process that converts came to an unexpected end."));
    EXPECT_EQ(job(1).state, State::Done) << job(1).message.toStdString();
}

TEST_F(JobsTest, say_that_the_program_which_converts_is_missing)
{
    for (const QString& program : {QString(), TestFolder() + Text("/no such program")}) {
        makeWindow(program);
        add({cells("One")});
        press("StartJobs");
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(job(0).state, State::Failed);
        EXPECT_TRUE(job(0).message.contains(program.isEmpty() ? Text("gantrel") : program))
            << job(0).message.toStdString();
    }
}

TEST_F(JobsTest, are_kept_with_what_became_of_them)
{
    add({cells("One"), cells("Two", TestFolder() + Text("/nowhere.duf")), cells("Three")});
    HeldFile held(pathOf("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf").toStdString());
    press("StartJobs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return held.isWaitedFor(); }, longestMs));
    queue().end();
    held.letGo();
    jobs.reset();
    const desktop::JobStore store(TestFolder() + Text("/job store"));
    QString trouble;
    const QVector<desktop::Job> kept = store.load(trouble);
    ASSERT_EQ(kept.size(), 3) << trouble.toStdString();
    EXPECT_EQ(kept[0].state, State::Stopped);
    EXPECT_EQ(kept[1].state, State::Waiting);
    EXPECT_EQ(kept[2].cells, cells("Three"));
}

TEST_F(JobsTest, come_from_a_batchs_table_beside_which_it_is_known_what_is_done)
{
    const QString table =
        writeTable(("source,target,name,dial,save-library,vendor,product\n\"" + pathOf(sourceFile) + "\",\"" +
                    pathOf(targetFile) + "\",Row,Wide=1,\"" + library() + "\",Me,Jobs\n")
                       .toUtf8());
    jobs->openTable(table, queue().contentOptions());
    ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 1; }, longestMs));
    EXPECT_EQ(desktop::NameOf(job(0)), Text("Row"));
    choose(0);
    EXPECT_FALSE(isEnabled("JobSettings"));
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Done) << job(0).message.toStdString();
    EXPECT_TRUE(QFile::exists(table + Text(".gantrel-batch")));
    queue().retry({0});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).message, Text("It was done before, and nothing has changed since."));
    QFile changed(table);
    ASSERT_TRUE(changed.open(QIODevice::Append));
    changed.write("\n\n");
    changed.close();
    queue().retry({0});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Failed);
    EXPECT_TRUE(job(0).message.contains(Text("open it again"))) << job(0).message.toStdString();
}

TEST_F(JobsTest, ask_for_what_the_rows_of_a_table_leave_open)
{
    const QString table =
        writeTable(("source,name,dial\n\"" + pathOf(sourceFile) + "\",Open,Wide=1\n").toUtf8());
    desktop::RememberJobCells(cells("not taken"));
    std::unique_ptr<ModalAnswer> settings;
    ModalAnswer box([&](QWidget& window) {
        settings = std::make_unique<ModalAnswer>(
            [](QWidget& dialog) { QTest::mouseClick(FindButton(dialog, "OK"), Qt::LeftButton); });
        QTest::mouseClick(FindButton(window, "Say What Rows Leave Open..."), Qt::LeftButton);
    });
    jobs->openTable(table, queue().contentOptions());
    ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 1; }, longestMs));
    EXPECT_TRUE(box.text.contains(Text("target"))) << box.text.toStdString();
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(job(0).state, State::Done) << job(0).message.toStdString();
    EXPECT_EQ(saved(), QStringList({Text("Open Body.dsf"), Text("Open Head.dsf")}));
}

TEST_F(JobsTest, give_a_batch_words_as_words_and_flags_as_flags)
{
    const QJsonObject open{{Text("vendor"), Text("yes")},
                           {Text("compress"), Text("yes")},
                           {Text("suffix"), QString()},
                           {Text("dial"), QJsonArray{Text("Wide=1"), Text("Odd;dial=1")}}};
    EXPECT_EQ(desktop::OptionsOf(open), QStringList({Text("--compress"), Text("--dial=Wide=1"),
                                                     Text("--dial=Odd;dial=1"), Text("--vendor=yes")}));
    const QString table = writeTable(("source,target,name,dial\n\"" + pathOf(sourceFile) + "\",\"" +
                                      pathOf(targetFile) + "\",Row,Wide=1\n")
                                         .toUtf8());
    QJsonObject all{
        {Text("product"), Text("yes")}, {Text("vendor"), Text("yes")}, {Text("save-library"), library()}};
    for (const char* const flag :
         {"accept-missing", "adjust-rig", "compress", "keep-temp", "overwrite", "register"})
        all.insert(QLatin1String(flag), Text("yes"));
    jobs->openTable(table, queue().contentOptions() + desktop::OptionsOf(all));
    ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 1; }, longestMs));
    for (auto cell = all.begin(); cell != all.end(); ++cell)
        EXPECT_EQ(job(0).cells.value(cell.key()), cell.value()) << cell.key().toStdString();
}

TEST_F(JobsTest, take_the_dials_of_their_source)
{
    desktop::RememberJobCells({});
    desktop::JobDialog dialog(nullptr, {QStringLiteral("Anna.duf")});
    dialog.setCells({{Text("target"), pathOf(targetFile)},
                     {Text("save-library"), library()},
                     {Text("vendor"), Text("Me")},
                     {Text("product"), Text("Jobs")},
                     {Text("dial"), QJsonArray{Text("Odd;dial=1")}}});
    auto& dials = *dialog.findChild<QPlainTextEdit*>(Text("SourceDials"));
    EXPECT_EQ(dials.toPlainText(), Text("Odd;dial=1"));
    EXPECT_TRUE(FindButton(dialog, "OK")->isEnabled());
    dials.setPlainText(Text("Wide"));
    EXPECT_FALSE(FindButton(dialog, "OK")->isEnabled()) << "no value";
    dials.setPlainText(Text("\n Wide=1\n\nBulge=50% "));
    EXPECT_EQ(dialog.cells().value(Text("dial")), QJsonArray({Text("Wide=1"), Text("Bulge=50%")}));
    FindButton(dialog, "OK")->click();
    EXPECT_FALSE(desktop::RememberedJobCells().contains(Text("dial"))) << "another figure has other dials";
    dials.clear();
    EXPECT_FALSE(dialog.cells().contains(Text("dial")));
    dialog.setCells({{Text("dial"), Text("A=1;B=2")}});
    EXPECT_EQ(dialog.cells().value(Text("dial")), QJsonArray({Text("A=1"), Text("B=2")}));
}

TEST_F(JobsTest, can_be_written_as_a_table_that_means_the_same)
{
    QJsonObject odd = cells("A \"name\", with ; all");
    odd.insert(Text("dial"), QJsonArray{Text("Wide=1"), Text("Bulge=0.5")});
    add({odd, cells("Plain")});
    for (const char* const suffix : {"csv", "json"}) {
        const QString table =
            writeTable(desktop::TableOf(queue().jobs(), Text("x.") + QLatin1String(suffix)));
        jobs->openTable(table, {});
        ASSERT_TRUE(QTest::qWaitFor([this] { return queue().jobs().size() == 4; }, longestMs)) << suffix;
        QJsonObject read = job(2).cells;
        read.remove(Text("command"));
        EXPECT_EQ(read, odd) << suffix;
        queue().remove({2, 3});
    }
    odd.insert(Text("dial"), QJsonArray{Text("Odd;dial=1")});
    ASSERT_TRUE(queue().setCells(job(0).id, odd));
    EXPECT_THROW(desktop::TableOf(queue().jobs(), Text("x.csv")), std::runtime_error);
    EXPECT_NO_THROW(desktop::TableOf(queue().jobs(), Text("x.json")));
}

TEST_F(JobsTest, are_added_with_settings_that_are_proposed_again)
{
    desktop::RememberJobCells({});
    ModalAnswer first([&](QWidget& dialog) {
        const auto line = [&dialog](const char* name) {
            return dialog.findChild<QLineEdit*>(QLatin1String(name));
        };
        EXPECT_FALSE(FindButton(dialog, "OK")->isEnabled()) << "no target";
        line("Target")->setText(pathOf(targetFile));
        line("Vendor")->setText(Text("Me"));
        line("Product")->setText(Text("Jobs"));
        SavePicture(dialog, "job-settings");
        QTest::mouseClick(FindButton(dialog, "OK"), Qt::LeftButton);
    });
    jobs->addSources({pathOf(sourceFile)});
    ASSERT_TRUE(first.seen);
    ModalAnswer second([](QWidget& dialog) { QTest::mouseClick(FindButton(dialog, "OK"), Qt::LeftButton); });
    jobs->addSources({pathOf(sourceFile), pathOf(targetFile)});
    ASSERT_EQ(queue().jobs().size(), 3);
    EXPECT_EQ(desktop::FileOf(job(2), "source"), pathOf(targetFile));
    EXPECT_EQ(desktop::FileOf(job(2), "target"), pathOf(targetFile));
    EXPECT_EQ(job(2).cells.value(Text("vendor")).toString(), Text("Me"));
}

TEST_F(JobsTest, keep_their_settings_when_they_begin_while_these_are_changed)
{
    const QString go = TestFolder() + Text("/go on");
    QFile::remove(go);
    makeWindow(writeProgram(Text("while [ ! -e '%1' ]; do sleep 0.01; done\n").arg(go)));
    add({cells("One"), cells("Two")});
    press("StartJobs");
    ASSERT_EQ(job(0).state, State::Running);
    choose(1);
    std::unique_ptr<ModalAnswer> box;
    ModalAnswer settings([&](QWidget& dialog) {
        dialog.findChild<QLineEdit*>(Text("Vendor"))->setText(Text("Somebody else"));
        QFile file(go);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_TRUE(QTest::qWaitFor([&] { return job(1).state != State::Waiting; }, longestMs));
        box = std::make_unique<ModalAnswer>();
        QTest::mouseClick(FindButton(dialog, "OK"), Qt::LeftButton);
    });
    press("JobSettings");
    ASSERT_TRUE(settings.seen && box && box->seen);
    EXPECT_EQ(box->text, Text("The job has begun meanwhile; its settings are as they were."));
    EXPECT_EQ(job(1).cells, cells("Two"));
    EXPECT_TRUE(waitForEnd());
}

TEST_F(JobsTest, ask_before_the_window_closes_while_one_runs)
{
    add({cells("One")});
    jobs->show();
    HeldFile held(pathOf("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf").toStdString());
    press("StartJobs");
    ASSERT_TRUE(QTest::qWaitFor([&] { return held.isWaitedFor(); }, longestMs));
    {
        ModalAnswer box(Press("Cancel"));
        jobs->close();
        EXPECT_TRUE(box.seen);
    }
    EXPECT_TRUE(jobs->isVisible());
    {
        ModalAnswer box(Press("Keep Running"));
        jobs->close();
    }
    EXPECT_FALSE(jobs->isVisible());
    EXPECT_TRUE(queue().isRunning());
    {
        ModalAnswer box(Press("Cancel"));
        EXPECT_FALSE(jobs->mayQuit());
    }
    {
        ModalAnswer box(Press("Stop and Quit"));
        EXPECT_TRUE(jobs->mayQuit());
    }
    held.letGo();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(jobs->mayQuit());
}

TEST_F(JobsTest, show_their_result_in_the_scene)
{
    QJsonObject into = cells("Shown");
    into.insert(Text("save-library"), dzApp->getContentMgr()->getContentDirectoryPath(0));
    into.insert(Text("overwrite"), Text("yes"));
    add({into});
    press("StartJobs");
    ASSERT_TRUE(waitForEnd());
    ASSERT_EQ(job(0).state, State::Done) << job(0).message.toStdString();
    choose(0);
    QObject::connect(jobs.get(), SIGNAL(resultWanted(QString, QStringList)), desktop.get(),
                     SLOT(openResult(QString, QStringList)));
    press("OpenJobResult");
    ASSERT_EQ(dzScene->getNumSkeletons(), 1);
    auto* const head =
        qobject_cast<DzMorph*>(dzScene->getSkeleton(0)->getObject()->findModifier(Text("Shown Head")));
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->getValueChannel()->getValue(), 1.0f);
    QDir(into.value(Text("save-library")).toString() + Text("/data/DAZ 3D/Genesis 9/Base/Morphs/Me"))
        .removeRecursively();
}

} // namespace
