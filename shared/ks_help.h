// Help texts and version texts as the user reads them.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace kst {
namespace daz {

/// Puts typographic quotes for %{ }% and `` '', and the plug-in title for %PLUGINNAME%.
std::string FormatHelp(std::string_view text);
QString FormatHelpQ(const QString& text);

std::string MakeVersionStringOnly(); ///< "V1.0.5"

} // namespace daz
} // namespace kst
