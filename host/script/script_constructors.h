// Classes that scripts make of arguments.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// A factory that takes arguments, and gives null for those that do not fit.
class TakesArguments {
public:
    virtual ~TakesArguments() = default;
    /// As one would write them.
    virtual const char* arguments() const = 0;
};

} // namespace openhost
