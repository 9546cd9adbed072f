// What a subcommand tells on stdout: one JSON object, or the same for people.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace cli {

using Json = nlohmann::ordered_json;

/// Whoever reads standard output has gone, as `head` does when it has enough.
class OutputClosed : public std::runtime_error {
public:
    OutputClosed() : std::runtime_error("nobody reads standard output any more") {}
};

/// @throws OutputClosed        as above
/// @throws std::runtime_error  the text cannot be written
void WriteOutput(std::string_view text);
/// For what others wrote to stdout.
/// @param formerReason         the errno with which they failed to, where it is known
/// @throws OutputClosed        as above
/// @throws std::runtime_error  some of it could not be written
void EndOutput(int formerReason = 0);

/// As one JSON object, or as aligned lines: underscores in keys become spaces, objects are indented, lists of
/// objects become tables. Text that is not UTF-8 is written with replacement characters.
/// @throws std::runtime_error  the text cannot be written
void WriteReport(const Json& report, bool asJson);
std::string ReportText(const Json& report);

/// From now on, for the whole process: neither progress nor warnings nor summaries.
void BeQuiet();
bool IsQuiet();
/// From now on, for the whole process: standard output has a file, and what people are told goes to stderr.
void GiveOutputAway();
/// No progress from now on, for the whole process: a log has its place, and one line would end up in the
/// other.
void LeaveOutProgress();
bool HasProgress();
/// A report of what has been done, which a command is not there to print: not for people when it is quiet.
/// @throws std::runtime_error  as above
void WriteSummary(const Json& summary, bool asJson);
void WriteSummary(const std::string& text);
/// The same of a run that may be a dry one, whose report is all that it is there for.
void WriteResult(const Json& report, bool asJson, bool isDryRun);

/// Adds the list "warnings", a line each; as JSON also "diagnostics", with severity, file, asset and what
/// apart. Each stands there once; notes do not.
void AddDiagnostics(Json& report, const base::Diagnostics& diagnostics, bool asJson);

class Progress;
/// Of each stage and in all.
Json SecondsOf(const Progress& progress);
/// The most that this process has had.
double PeakMemoryMebibytes();

/// To stderr, a line each and each once, unless it is quiet; notes do not. For commands whose output is
/// something else.
void TellWarnings(const base::Diagnostics& diagnostics);

/// Told with an error, should an exception end its life. What it refers to must outlive it.
class KeptForError {
public:
    explicit KeptForError(const base::Diagnostics& met);
    ~KeptForError();
    KeptForError(const KeptForError&) = delete;
    KeptForError& operator=(const KeptForError&) = delete;

private:
    const base::Diagnostics& _met;
    int _exceptions;
};

/// What was kept, which is forgotten.
base::Diagnostics TakeKeptForError();

/// One JSON object with the "error" and the diagnostics that were kept for it. Silent where it cannot be
/// written: stderr has the sentence.
void WriteError(const std::string& sentence);

/// An error that the report on stdout has already.
class ReportedError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// To so many decimals, since single-precision values have no more to tell.
double Rounded(double value, int decimals);
constexpr double millimetresPerCentimetre = 10.0;

} // namespace cli
