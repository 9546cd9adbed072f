// The box at the end of the error path, and its friendly sister.
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

class QWidget;

namespace kst {
namespace daz {

/// Shows a failure and blocks until the user closes the box.
/// @param parent  null for the host's dialog parent
/// @param log     also writes one line to the host's log
void CriticalBox(std::string_view heading, std::string_view message, QWidget* parent, bool log);

/// Tells what was done, in rich text as it stands, and blocks until the user closes the box.
/// @param parent  null for the host's dialog parent
void InfoBox(std::string_view heading, std::string_view message, QWidget* parent);

/// The rich text of a failure: the heading in bold, then the message, each made a sentence. Neither is
/// escaped.
std::string MakeBoxBody(std::string_view heading, std::string_view message);

/// The outermost handler: runs what the toolkit or the host called in, and shows whatever std::exception it
/// throws in the box, with a log line. Nothing else may leave it: any other exception, and a failure of the
/// box itself, ends the process.
/// @param heading  names the entry point, such as "Unhandled exception in button handler"
/// @param parent   null for the host's dialog parent
template <class Call>
void CallOutermost(std::string_view heading, QWidget* parent, Call&& call) noexcept
{
    try {
        std::forward<Call>(call)();
    } catch (const std::exception& error) {
        CriticalBox(heading, error.what(), parent, true);
    }
}

} // namespace daz
} // namespace kst
