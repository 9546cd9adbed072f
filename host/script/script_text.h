// The code of scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace openhost {

/// The file's text.
/// @throws base::IoError  it cannot be read, or not by scripts
QString ReadScript(const QString& file);

/// Why an engine cannot be given a code, and where.
struct CodeFault {
    int line = 0; ///< from 1
    QString what;
};
std::optional<CodeFault> FindFault(const QString& code);

} // namespace openhost
