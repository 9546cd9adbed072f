// The box at the end of the error path.
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

class QWidget;

namespace kst {
namespace daz {

/// Shows a failure and blocks until the user closes the box.
/// @param parent  null for the host's dialog parent
/// @param log     also writes one line to the host's log
void CriticalBox(std::string_view heading, std::string_view message, QWidget* parent, bool log);

} // namespace daz
} // namespace kst
