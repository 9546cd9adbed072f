// Why the system refused something, in the program's language.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <system_error>

namespace base {

/// The system's text for one of its error numbers. English in every locale, as the sentences around it are.
std::string ReasonOf(int errorNumber);
std::string ReasonOf(const std::error_code& error);

} // namespace base
