// What the host has to say, and who hears it.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"

#include "app/guard.h"
#include "base/cancellation.h"
#include "base/errors.h"
#include "base/file_failure.h"
#include "tests/host/host_fixture.h"

#include <QSignalSpy>

#include <new>

namespace {

using base::Diagnostic;
using base::Diagnostics;
using base::Severity;
using openhost::DiagnosticsCollector;

using DiagnosticsHubTest = HostTest;
using GuardHostCallTest = HostTest;

const Diagnostic bent{Severity::Warning, "/data/Up.dsf", "Up", "is bent"};

} // namespace

TEST(Diagnostic, reads_as_file_asset_and_what)
{
    EXPECT_EQ(base::ToLine(bent), "/data/Up.dsf: Up: is bent");
    EXPECT_EQ(base::ToLine({Severity::Error, "/data/Up.dsf", "", "is bent"}), "/data/Up.dsf: is bent");
    EXPECT_EQ(base::ToLine({Severity::Note, "", "Up", "is bent"}), "Up: is bent");
    EXPECT_EQ(base::ToLine({Severity::Note, "", "", "all is bent"}), "all is bent");
}

TEST(Diagnostic, equals_those_that_say_the_same_in_every_part)
{
    EXPECT_EQ(bent, (Diagnostic{Severity::Warning, "/data/Up.dsf", "Up", "is bent"}));
    EXPECT_NE(bent, (Diagnostic{Severity::Error, "/data/Up.dsf", "Up", "is bent"}));
    EXPECT_NE(bent, (Diagnostic{Severity::Warning, "/data/Down.dsf", "Up", "is bent"}));
    EXPECT_NE(bent, (Diagnostic{Severity::Warning, "/data/Up.dsf", "Down", "is bent"}));
    EXPECT_NE(bent, (Diagnostic{Severity::Warning, "/data/Up.dsf", "Up", "is gone"}));
}

TEST(Diagnostic, takes_the_file_off_the_beginning_of_a_sentence)
{
    EXPECT_EQ(base::FromSentence(Severity::Error, "/a.dsf", "/a.dsf: is empty"),
              (Diagnostic{Severity::Error, "/a.dsf", "", "is empty"}));
    EXPECT_EQ(base::FromSentence(Severity::Error, "/a.dsf", "cannot open /b.dsf"),
              (Diagnostic{Severity::Error, "/a.dsf", "", "cannot open /b.dsf"}));
    EXPECT_EQ(base::FromSentence(Severity::Error, "", ": is empty").what, ": is empty");
}

TEST(Diagnostic, of_a_file_that_cannot_be_read_names_it_once)
{
    const auto what = [](const char* sentence) {
        const Diagnostic failure = base::FailureOfFile(Severity::Error, "/a.dsf", sentence);
        EXPECT_EQ(failure.file, "/a.dsf");
        return failure.what;
    };
    EXPECT_EQ(what("cannot read /a.dsf: it is a folder"), "cannot be read: it is a folder");
    EXPECT_EQ(what("cannot open /a.dsf: it is locked"), "cannot be opened: it is locked");
    EXPECT_EQ(what("cannot read /a.dsf.gz: it is a folder"), "cannot read /a.dsf.gz: it is a folder");
    EXPECT_EQ(what("/a.dsf: is empty"), "is empty");
}

TEST(Diagnostic, of_which_the_first_error_is_found_among_warnings)
{
    const Diagnostic error{Severity::Error, "", "", "first"};
    EXPECT_EQ(base::FirstError({bent}), nullptr);
    const Diagnostics all{bent, error, {Severity::Error, "", "", "second"}};
    ASSERT_NE(base::FirstError(all), nullptr);
    EXPECT_EQ(*base::FirstError(all), error);
}

TEST_F(DiagnosticsHubTest, tells_every_reader_and_the_log)
{
    const DiagnosticsCollector first(dzApp->diagnostics()), second(dzApp->diagnostics());
    openhost::Report(bent);
    EXPECT_EQ(first.all(), Diagnostics{bent});
    EXPECT_EQ(second.all(), Diagnostics{bent});
    EXPECT_TRUE(LogText().endsWith(QLatin1String(" WARNING: /data/Up.dsf: Up: is bent\n")));
}

TEST_F(DiagnosticsHubTest, marks_the_log_s_lines_by_severity)
{
    openhost::Report({Severity::Error, "", "", "all is lost"});
    EXPECT_TRUE(LogText().endsWith(QLatin1String(" ERROR: all is lost\n")));
    openhost::Report({Severity::Note, "", "", "all is well"});
    EXPECT_TRUE(LogText().endsWith(QLatin1String(" all is well\n")));
    EXPECT_FALSE(LogText().endsWith(QLatin1String(": all is well\n")));
}

TEST_F(DiagnosticsHubTest, has_what_plug_ins_and_scripts_warn_of)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    dzApp->warning(QStringLiteral("take care"));
    dzApp->error(QStringLiteral("too late"));
    dzApp->log(QStringLiteral("nothing"));
    EXPECT_EQ(met.all(),
              (Diagnostics{{Severity::Warning, "", "", "take care"}, {Severity::Error, "", "", "too late"}}));
}

TEST_F(DiagnosticsHubTest, is_heard_by_those_alone_who_listen_at_the_time)
{
    openhost::Report(bent);
    const DiagnosticsCollector late(dzApp->diagnostics());
    EXPECT_TRUE(late.all().empty());
    {
        const DiagnosticsCollector gone(dzApp->diagnostics());
    }
    openhost::Report(bent);
    openhost::Report(bent);
    EXPECT_EQ(late.all(), Diagnostics{bent}); // each once
}

TEST_F(DiagnosticsHubTest, can_be_heard_through_a_queue)
{
    const QSignalSpy spy(&dzApp->diagnostics(), SIGNAL(reported(base::Diagnostic)));
    openhost::Report(bent);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<Diagnostic>(), bent);
}

TEST_F(GuardHostCallTest, lets_cancelled_work_pass_and_says_nothing)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    const auto work = []() -> bool { throw base::Cancelled(); };
    EXPECT_THROW(openhost::GuardHostCall({"/a.dsf"}, work), base::Cancelled);
    EXPECT_EQ(met.all(), Diagnostics());
}

TEST_F(GuardHostCallTest, ends_cancelled_work_where_no_exception_may_go_on)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    const openhost::ForeignFrames engine;
    EXPECT_FALSE(openhost::GuardHostCall({"/a.dsf"}, []() -> bool { throw base::Cancelled(); }));
    EXPECT_EQ(met.all(), Diagnostics());
}

TEST_F(GuardHostCallTest, gives_back_what_the_work_gives_and_says_nothing)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_EQ(openhost::GuardHostCall(
                  {"/a.dsf"}, [] { return 7; }, [](const auto&) { return 1; }),
              7);
    EXPECT_TRUE(openhost::GuardHostCall({"/a.dsf"}, [] { return true; }));
    EXPECT_TRUE(met.all().empty());
}

TEST_F(GuardHostCallTest, turns_what_is_thrown_into_the_call_s_own_answer)
{
    const auto throwing = [](const auto& error) { return [error]() -> DzError { throw error; }; };
    const openhost::ErrorCodes codes{DZ_UNABLE_TO_OPEN_FILE_ERROR, DZ_INVALID_FILE_ERROR};
    EXPECT_EQ(openhost::GuardHostCall({}, throwing(base::IoError("gone")), codes),
              DZ_UNABLE_TO_OPEN_FILE_ERROR);
    EXPECT_EQ(openhost::GuardHostCall({}, throwing(base::FormatError("bent")), codes), DZ_INVALID_FILE_ERROR);
    EXPECT_EQ(openhost::GuardHostCall({}, throwing(std::bad_alloc()), codes), DZ_INVALID_FILE_ERROR);
    EXPECT_FALSE(openhost::GuardHostCall({}, []() -> bool { throw base::Error("bent"); }));
}

TEST_F(GuardHostCallTest, reports_what_was_done_with_what_and_why_it_failed)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    openhost::GuardHostCall({"/a.dsf"}, []() -> bool { throw base::FormatError("/a.dsf: is bent"); });
    openhost::GuardHostCall({"/a.dsf", "Up", "cannot load the deltas", Severity::Warning},
                            []() -> bool { throw base::FormatError("/a.dsf: is bent"); });
    EXPECT_EQ(met.all(),
              (Diagnostics{{Severity::Error, "/a.dsf", "", "is bent"},
                           {Severity::Warning, "/a.dsf", "Up", "cannot load the deltas: is bent"}}));
}

TEST_F(GuardHostCallTest, tells_of_missing_memory_in_words)
{
    const DiagnosticsCollector met(dzApp->diagnostics());
    openhost::GuardHostCall({"/a.dsf"}, []() -> bool { throw std::bad_alloc(); });
    EXPECT_EQ(met.all(), (Diagnostics{{Severity::Error, "/a.dsf", "", "there is not enough memory"}}));
}
