// What is asked of the operating system.
// SPDX-License-Identifier: MIT

#include "ks_os.h"
#include "ks_string.h"
#include "tests/shared/throws.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

TEST(Os, sleeps_for_milliseconds_and_for_seconds)
{
    for (const unsigned milliseconds : {0u, 20u, 1001u}) {
        QElapsedTimer timer;
        timer.start();
        kst::os::Sleep(milliseconds);
        EXPECT_GE(timer.nsecsElapsed(), qint64(milliseconds) * 1000000);
    }
}

TEST(Os, has_a_folder_for_files_that_go)
{
    const std::string folder = kst::os::GetTempDir();
    EXPECT_TRUE(QFileInfo(ToQ(folder)).isDir());
    EXPECT_FALSE(kst::str::EndsWith(folder, "/"));
}

TEST(Os, names_the_file_browser)
{
    EXPECT_EQ(kst::os::GetWindowsExplorerString(), "macOS Finder");
}

TEST(FileNames, cannot_have_a_slash)
{
    std::string found;
    kst::os::ForEachInvalidFilenameCharacter("/a\\b/:c/", [&](char c) { found += c; });
    EXPECT_EQ(found, "///") << "repeats included";
    EXPECT_TRUE(kst::os::HasInvalidFilenameCharacters("a/b"));
    EXPECT_FALSE(kst::os::HasInvalidFilenameCharacters(""));
}

TEST(FileNames, are_refused_with_every_invalid_character_once)
{
    EXPECT_EQ(MessageOf([] { kst::os::ThrowIfFilenameHasInvalidCharacters("a/b"); }),
              "invalid character / in filename " + Quoted("a/b"));
    EXPECT_EQ(MessageOf([] { kst::os::ThrowIfFilenameHasInvalidCharacters("/a/{}"); }),
              "invalid character / in filename " + Quoted("/a/{}"));
}

TEST(FileNames, may_have_anything_else)
{
    for (const char* const name : {"", "a b", "a:b\\c*?\"<>|", "\xC3\xA4pfel", "\n"}) {
        EXPECT_FALSE(kst::os::HasInvalidFilenameCharacters(name)) << name;
        EXPECT_NO_THROW(kst::os::ThrowIfFilenameHasInvalidCharacters(name)) << name;
    }
}

/// Lets no program be found but those that a test makes, which write down how they were called.
class LaunchTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir(_folder.path()).mkpath(QStringLiteral("programs")));
        qputenv("PATH", programs().toUtf8());
        file = addFile("Items/My, file #1 \xC3\xA4%.duf");
    }
    void TearDown() override { qputenv("PATH", _path); }

    /// @param before  what it does before it writes
    void addProgram(const char* name, int exitCode, const QString& before = QString()) const
    {
        QFile script(programs() + QLatin1Char('/') + QLatin1String(name));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        const QString text = QStringLiteral("#!/bin/sh\n"
                                            "%4\n"
                                            "line=%1\n"
                                            "for argument in \"$@\"; do line=\"$line|$argument\"; done\n"
                                            "printf '%s\\n' \"$line\" >> '%2'\n"
                                            "exit %3\n")
                                 .arg(QLatin1String(name), recordFile())
                                 .arg(exitCode)
                                 .arg(before);
        script.write(text.toUtf8());
        script.close();
        ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    /// A name under which the system finds another program.
    void addLink(const char* name, const char* program) const
    {
        const QString slash(QLatin1Char('/'));
        ASSERT_TRUE(QFile::link(programs() + slash + QLatin1String(program),
                                programs() + slash + QLatin1String(name)));
    }

    std::string addFile(const char* relativePath) const
    {
        const QString path = _folder.filePath(QString::fromUtf8(relativePath));
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        return ToStd(path);
    }

    /// The calls so far, once there are as many as expected or a minute has passed.
    std::vector<std::string> calls(std::size_t expected) const
    {
        QElapsedTimer timer;
        timer.start();
        std::vector<std::string> lines = callsSoFar();
        while (lines.size() < expected && timer.elapsed() < 60000) {
            QThread::msleep(2);
            lines = callsSoFar();
        }
        return lines;
    }
    std::vector<std::string> callsSoFar() const
    {
        QFile record(recordFile());
        return record.open(QIODevice::ReadOnly)
                   ? kst::str::ExplodeVector(record.readAll().toStdString(), "\n", false, false)
                   : std::vector<std::string>();
    }

    std::string folder(const char* name) const { return ToStd(_folder.filePath(QLatin1String(name))); }

    /// How the file manager is asked; `url` is as it goes through the bus.
    static std::string busCall(const std::string& url)
    {
        return "dbus-send|--session|--print-reply|--reply-timeout=2000|--dest=org.freedesktop.FileManager1|"
               "/org/freedesktop/FileManager1|org.freedesktop.FileManager1.ShowItems|array:string:" +
               url + "|string:";
    }
    std::string fileUrl() const
    {
        return "file://" + folder("Items") + "/My%2C%20file%20%231%20%C3%A4%25.duf";
    }

    std::string file;

private:
    QString programs() const { return _folder.filePath(QStringLiteral("programs")); }
    QString recordFile() const { return _folder.filePath(QStringLiteral("record")); }

    QTemporaryDir _folder;
    const QByteArray _path = qgetenv("PATH");
};

TEST_F(LaunchTest, reveals_a_file_with_the_systems_opener)
{
    addProgram("open", 0);
    addProgram("dbus-send", 0);
    addProgram("xdg-open", 0);
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(1), std::vector<std::string>{"open|-R|" + file});
}

TEST_F(LaunchTest, does_not_ask_how_the_opener_ends)
{
    addProgram("open", 1);
    kst::os::LaunchExplorerOrThrow(folder("Items"));
    EXPECT_EQ(calls(1), std::vector<std::string>{"open|-R|" + folder("Items")});
}

TEST_F(LaunchTest, starts_nothing_for_a_file_that_is_missing)
{
    addProgram("open", 0);
    const std::string missing = folder("missing.duf");
    EXPECT_EQ(MessageOf([&] { kst::os::LaunchExplorerOrThrow(missing); }),
              "file " + Quoted(missing) + " does not exist");
    EXPECT_EQ(MessageOf([] { kst::os::LaunchExplorerOrThrow(""); }),
              "file " + Quoted("") + " does not exist");
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(1), std::vector<std::string>{"open|-R|" + file}) << "the first call on record";
}

TEST_F(LaunchTest, asks_the_desktops_file_manager_where_there_is_no_opener)
{
    addProgram("dbus-send", 0);
    addProgram("xdg-open", 0);
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(1), std::vector<std::string>{busCall(fileUrl())});
}

TEST_F(LaunchTest, opens_the_folder_when_the_file_manager_does_not_answer)
{
    addProgram("dbus-send", 1);
    addProgram("xdg-open", 0);
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(2), (std::vector<std::string>{busCall(fileUrl()), "xdg-open|" + folder("Items")}));
}

TEST_F(LaunchTest, opens_the_folder_when_nothing_else_is_there)
{
    addProgram("xdg-open", 0);
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(1), std::vector<std::string>{"xdg-open|" + folder("Items")});
}

TEST_F(LaunchTest, knows_the_desktops_own_opener_by_any_name)
{
    addProgram("xdg-open", 0);
    addProgram("dbus-send", 0);
    addLink("open", "xdg-open");
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(calls(1), std::vector<std::string>{busCall(fileUrl())}) << "it takes no options";
}

TEST_F(LaunchTest, does_not_wait_for_any_program)
{
    // No longer than a minute, should nobody let it go.
    const QString waiting = QStringLiteral("i=0; while [ ! -e '%1' ] && [ $i -lt 6000 ]; do /bin/sleep 0.01; "
                                           "i=$((i + 1)); done")
                                .arg(ToQ(folder("go")));
    addProgram("dbus-send", 1, waiting);
    addProgram("xdg-open", 0);
    kst::os::LaunchExplorerOrThrow(file);
    EXPECT_EQ(callsSoFar(), std::vector<std::string>{}) << "the file manager has not answered yet";
    addProgram("open", 0, waiting);
    kst::os::LaunchExplorerOrThrow(folder("Items"));
    EXPECT_EQ(callsSoFar(), std::vector<std::string>{});
    addFile("go");
    std::vector<std::string> lines = calls(3);
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (std::vector<std::string>{busCall(fileUrl()), "open|-R|" + folder("Items"),
                                               "xdg-open|" + folder("Items")}));
}

TEST_F(LaunchTest, is_content_when_no_program_is_there)
{
    EXPECT_NO_THROW(kst::os::LaunchExplorerOrThrow(file));
}

TEST_F(LaunchTest, finds_the_asset_editor_only_where_it_is_installed)
{
    const QString bundle = QStringLiteral("/Applications/Asset Editor.app");
    EXPECT_EQ(kst::os::FindAssetEditor(), QFileInfo::exists(bundle) ? ToStd(bundle) : "");
}

TEST_F(LaunchTest, opens_a_file_in_the_asset_editor_and_does_nothing_without_it)
{
    const std::string editor = kst::os::FindAssetEditor();
    addProgram("open", 0);
    addProgram("xdg-open", 0);
    kst::os::LaunchAssetEditorWithFileOrThrow(file);
    if (editor.empty())
        kst::os::LaunchExplorerOrThrow(file); // leaves a record, which is the first if there was none
    const std::string expected = editor.empty() ? "open|-R|" + file : "open|-a|" + editor + "|" + file;
    EXPECT_EQ(calls(1), std::vector<std::string>{expected});
}

} // namespace
