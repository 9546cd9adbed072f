// What is said of arguments that the parser refuses.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace cli {

/// The parser's sentences about how many values, or which of two options, are wanted, in other words; others
/// as they are.
std::string DescribeCount(const CLI::ParseError& error);

/// A phrase as those of all errors. Of a subcommand or an option that there is not, it names the one that may
/// have been meant.
/// @param program  as it is after the parse that failed
std::string DescribeWrongUse(const CLI::App& program, const CLI::ParseError& error);

} // namespace cli
