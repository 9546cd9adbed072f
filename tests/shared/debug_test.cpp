// Trace lines in the host's log.
// SPDX-License-Identifier: MIT

#include "shared/ks_debug.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <QFile>

namespace {

class DebugTest : public HostTest {
protected:
    /// What stands in the file without asking the host to write its buffer.
    static QString fileText()
    {
        QFile file(dzApp->getLogFilename());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
};

TEST_F(DebugTest, writes_each_line_at_once_behind_the_prefix)
{
    kst::Debug::Log("step {} of {}", 3, "nine");
    EXPECT_TRUE(fileText().contains(QLatin1String("KeGNT: step 3 of nine\n")))
        << fileText().toUtf8().constData();
}

TEST_F(DebugTest, tells_when_a_scope_is_entered_and_left_also_by_an_exception)
{
    EXPECT_EQ(MessageOf([] {
                  const kst::Debug scope("Loading {x}");
                  throw kst::Exception("stop");
              }),
              "stop");
    const QString text = fileText();
    const int entered = text.indexOf(QLatin1String("KeGNT: Entering Loading {x}"));
    const int left = text.indexOf(QLatin1String("KeGNT: Leaving Loading {x}"));
    EXPECT_GE(entered, 0);
    EXPECT_GT(left, entered);
}

} // namespace
