// Help texts and version texts as the user reads them.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace kst {
namespace daz {

/// Puts typographic quotes for %{ }% and `` '', and the plug-in title for %PLUGINNAME%. Nothing else changes.
/// @param text  UTF-8
std::string FormatHelp(std::string_view text);
QString FormatHelpQ(const QString& text);

std::string MakeVersionStringOnly();     ///< "V1.0.5"
std::string MakeExtendedVersionString(); ///< the version and the day it was built: "V1.0.5 (2023-06-22)"
/// What a window is about, behind a dash the plug-in title and the extended version.
/// @param title  UTF-8; null for the latter two alone
std::string MakeWindowTitle(const char* title);

} // namespace daz
} // namespace kst
