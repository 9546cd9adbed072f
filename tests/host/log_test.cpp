// What is in the log's file while the host runs.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"
#include "tests/host/host_fixture.h"

#include <QFile>
#include <QtTest>

namespace {

class Log : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dzApp->flushLogBuffer();
    }
    /// Without asking the host to write what it holds back.
    static bool isInFile(const char* text)
    {
        QFile file(dzApp->getLogFilename());
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(text);
    }
};

} // namespace

TEST_F(Log, has_a_warning_and_an_error_at_once)
{
    dzApp->warning(QStringLiteral("bends too far"));
    EXPECT_TRUE(isInFile("WARNING: bends too far\n"));
    dzApp->error(QStringLiteral("breaks"));
    EXPECT_TRUE(isInFile("ERROR: breaks\n"));
}

TEST_F(Log, has_what_came_before_a_warning_with_it)
{
    dzApp->log(QStringLiteral("bends a little"));
    openhost::Report({base::Severity::Note, {}, {}, "bends more"});
    EXPECT_FALSE(isInFile("bends more")) << "a line for itself is not worth a write";
    openhost::Report({base::Severity::Warning, {}, {}, "bends most"});
    EXPECT_TRUE(isInFile("bends a little\n"));
    EXPECT_TRUE(isInFile("bends more\n"));
}

TEST_F(Log, has_every_line_soon_though_nothing_follows_it)
{
    dzApp->log(QStringLiteral("rests"));
    const auto isThere = [] { return isInFile("rests\n"); };
    EXPECT_TRUE(QTest::qWaitFor(isThere, 20000)); // a second; a busy machine takes longer
    dzApp->log(QStringLiteral("rests again"));
    EXPECT_TRUE(QTest::qWaitFor([] { return isInFile("rests again\n"); }, 20000));
}
