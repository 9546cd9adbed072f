// Trace lines in the host's log.
// SPDX-License-Identifier: MIT

#include "ks_debug.h"
#include "ks_exception.h"
#include "ks_gui.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <QFile>

#include <thread>

namespace {

class DebugTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dzApp->flushLogBuffer();
        _before = fileText().size();
    }

    /// The lines that the test brought into the file, without asking the host to write its buffer.
    QStringList newLines() const { return fileText().mid(_before).split(QLatin1Char('\n')); }

    /// What stands in the file without asking the host to write its buffer.
    static QString fileText()
    {
        QFile file(dzApp->getLogFilename());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private:
    int _before = 0;
};
using AssertionDeathTest = HostTest;

TEST_F(DebugTest, writes_each_line_at_once_behind_the_prefix)
{
    kst::Debug::Log("step {} of {}", 3, "nine");
    ASSERT_EQ(newLines().size(), 2) << fileText().toStdString();
    EXPECT_TRUE(newLines().first().endsWith(QLatin1String("KeGNT: step 3 of nine")));
    kst::Debug::Log("next");
    ASSERT_EQ(newLines().size(), 3) << fileText().toStdString();
    EXPECT_TRUE(newLines().at(1).endsWith(QLatin1String("KeGNT: next")));
}

TEST_F(DebugTest, writes_a_plain_text_with_its_braces_and_a_formatted_one_without)
{
    kst::Debug::Log("no {} here");
    EXPECT_TRUE(newLines().first().endsWith(QLatin1String("KeGNT: no {} here")));
    kst::Debug::Log("{} and {}", std::string("\xC3\xA4"), std::string_view("{}"));
    EXPECT_TRUE(newLines().at(1).endsWith(QString::fromUtf8("KeGNT: \xC3\xA4 and {}")));
}

TEST_F(DebugTest, tells_when_a_scope_is_entered_and_left)
{
    {
        const kst::Debug scope("Running Transfer Utility");
        ASSERT_EQ(newLines().size(), 2) << "it is written before the work begins";
    }
    ASSERT_EQ(newLines().size(), 3);
    EXPECT_TRUE(newLines().at(0).endsWith(QLatin1String("KeGNT: Entering Running Transfer Utility")));
    EXPECT_TRUE(newLines().at(1).endsWith(QLatin1String("KeGNT: Leaving Running Transfer Utility")));
}

TEST_F(DebugTest, tells_when_a_scope_is_left_by_an_exception)
{
    EXPECT_EQ(MessageOf([] {
                  const kst::Debug scope("Loading {x}");
                  throw kst::Exception("stop");
              }),
              "stop");
    ASSERT_EQ(newLines().size(), 3);
    EXPECT_TRUE(newLines().at(0).endsWith(QLatin1String("KeGNT: Entering Loading {x}")));
    EXPECT_TRUE(newLines().at(1).endsWith(QLatin1String("KeGNT: Leaving Loading {x}")));
}

TEST_F(DebugTest, keeps_the_name_of_a_scope_as_its_own)
{
    std::string name = "first";
    {
        const kst::Debug scope(name);
        name = "other";
    }
    EXPECT_TRUE(newLines().at(1).endsWith(QLatin1String("KeGNT: Leaving first")));
}

TEST_F(AssertionDeathTest, ends_the_process_when_widgets_are_touched_from_another_thread)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(std::thread(kst::gui::AssertGuiThread).join(),
                 "ks_gui.*AssertGuiThread.*QThread::currentThread\\(\\) == "
                 "QCoreApplication::instance\\(\\)->thread\\(\\)");
}

TEST_F(AssertionDeathTest, lets_the_gui_thread_pass)
{
    kst::gui::AssertGuiThread();
}

} // namespace
