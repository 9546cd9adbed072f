// What scripts find in the host, as a chapter.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace manual {

class HeaderTexts;

/// Markdown of the functions, objects and classes of the running host, as its scripts see them.
QString ScriptReference(const HeaderTexts& texts);

} // namespace manual
