// Conversions that scripts ask for.
// SPDX-License-Identifier: MIT

#pragma once

namespace cli {

class HostSession;

/// While it lives, scripts have the function convert(source, target, options) for figures of the session's
/// scene. One at a time.
class ScriptConversions {
public:
    /// @param mayOverwrite  also without being asked to by the options
    ScriptConversions(HostSession& session, bool mayOverwrite);
    ~ScriptConversions();
    ScriptConversions(const ScriptConversions&) = delete;
    ScriptConversions& operator=(const ScriptConversions&) = delete;
};

} // namespace cli
