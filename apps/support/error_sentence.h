// Errors as one sentence.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace app {

/// The text on one line, with a full stop. The first letter becomes upper case unless a file or another name
/// begins the text, such as "body.obj:3: face names ..." or "morph.dsf: is not valid JSON".
std::string ErrorSentence(const std::string& text);

} // namespace app
