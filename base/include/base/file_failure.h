// What went wrong with a file, from sentences that name it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <string>

namespace base {

/// Of the sentence of an exception that begins with the file's name, or names it behind what could not be
/// done: "cannot read FILE: reason" is "cannot be read: reason" of the file.
inline Diagnostic FailureOfFile(Severity severity, const std::string& file, const std::string& sentence)
{
    struct Wording {
        const char *active, *passive;
    };
    constexpr Wording wordings[] = {{"cannot read ", "cannot be read"}, {"cannot open ", "cannot be opened"}};
    Diagnostic failure = FromSentence(severity, file, sentence);
    for (const Wording& wording : wordings) {
        const std::string beginning = wording.active + file + ": ";
        if (!file.empty() && failure.what.compare(0, beginning.size(), beginning) == 0)
            failure.what.replace(0, beginning.size() - 2, wording.passive);
    }
    return failure;
}

} // namespace base
