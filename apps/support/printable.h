// Texts from anywhere, for a terminal.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace app {

/// With control characters as escapes, such as \n, \x00 and \x1b: names in files hold any, which would cut a
/// message off, break its line or command the terminal. Those of UTF-8 are meant as well.
std::string Printable(const std::string& text);

} // namespace app
