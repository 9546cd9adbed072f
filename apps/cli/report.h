// What a subcommand tells on stdout: one JSON object, or the same for people.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace cli {

using Json = nlohmann::ordered_json;

/// @throws std::runtime_error  the text cannot be written
void WriteOutput(const std::string& text);

/// As one JSON object, or as aligned lines: underscores in keys become spaces, objects are indented, lists of
/// objects become tables. Text that is not UTF-8 is written with replacement characters.
/// @throws std::runtime_error  the text cannot be written
void WriteReport(const Json& report, bool asJson);
std::string ReportText(const Json& report);

/// Adds the list "warnings", a line each; as JSON also "diagnostics", with severity, file, asset and what
/// apart. Each stands there once; notes do not.
void AddDiagnostics(Json& report, const base::Diagnostics& diagnostics, bool asJson);

/// To so many decimals, since single-precision values have no more to tell.
double Rounded(double value, int decimals);
constexpr double millimetresPerCentimetre = 10.0;

} // namespace cli
