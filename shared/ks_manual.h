// Opening a plug-in's manual.
// SPDX-License-Identifier: MIT

#pragma once

namespace kst {
namespace daz {

/// Shows the PDF file "Plugins/<name>/<name> Manual.pdf" of the host's documentation folder in the system's
/// viewer. Throws nothing: a file that does not exist is told of in the critical box, with a log line. GUI
/// thread only.
/// @param manualName  UTF-8, the name of folder and file
void OpenPluginManual(const char* manualName) noexcept;

} // namespace daz
} // namespace kst
