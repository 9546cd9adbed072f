// Names in tool tips.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// The text so that a tool tip shows it letter for letter. Tool tips judge by themselves what is markup,
/// which names of files, nodes and dials may look like.
QString PlainTip(const QString& text);

} // namespace openhost
