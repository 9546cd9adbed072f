// What somebody should know about files and what is in them.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace base {

enum class Severity {
    Note,
    Warning, ///< something was left out or taken otherwise, and the work went on
    Error    ///< the work could not be done
};

/// All texts are UTF-8.
struct Diagnostic {
    Severity severity = Severity::Warning;
    std::string file;  ///< absolute, or as it is referred to; empty where there is none
    std::string asset; ///< id or name of the thing within the file; empty for the file as a whole
    std::string what;  ///< a short lower-case phrase without a full stop
};

/// In the order in which they were met.
using Diagnostics = std::vector<Diagnostic>;

inline bool operator==(const Diagnostic& a, const Diagnostic& b)
{
    return a.severity == b.severity && a.file == b.file && a.asset == b.asset && a.what == b.what;
}
inline bool operator!=(const Diagnostic& a, const Diagnostic& b)
{
    return !(a == b);
}

/// "FILE: ASSET: what"; what is not known is left out.
inline std::string ToLine(const Diagnostic& diagnostic)
{
    std::string line;
    for (const std::string* const part : {&diagnostic.file, &diagnostic.asset})
        if (!part->empty())
            line += *part + ": ";
    return line + diagnostic.what;
}

inline const char* NameOf(Severity severity)
{
    return severity == Severity::Note ? "note" : severity == Severity::Warning ? "warning" : "error";
}

/// Of the sentence of an exception, which mostly begins with the file's name.
inline Diagnostic FromSentence(Severity severity, const std::string& file, const std::string& sentence)
{
    const std::string beginning = file + ": ";
    const bool namesFile = !file.empty() && sentence.compare(0, beginning.size(), beginning) == 0;
    return {severity, file, std::string(), namesFile ? sentence.substr(beginning.size()) : sentence};
}

/// Null for none.
inline const Diagnostic* FirstError(const Diagnostics& diagnostics)
{
    for (const Diagnostic& diagnostic : diagnostics)
        if (diagnostic.severity == Severity::Error)
            return &diagnostic;
    return nullptr;
}

} // namespace base
