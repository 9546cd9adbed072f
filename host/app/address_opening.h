// Showing files and addresses with the system's own programs.
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

namespace openhost {

/// Hands the address to the program that the user's system has for it. For a PDF file without such a program
/// the page of the same name takes its place, if it lies beside; where nothing shows the file, the attendant
/// is told.
void OpenAddress(const QUrl& url);

} // namespace openhost
