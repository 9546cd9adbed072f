// Options for programs that may have been built with a sanitizer.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/base/scoped_variable.h"

#include <cstdlib>
#include <string>

/// Until the end of the scope, for programs that are started meanwhile, besides those that are given already.
class SanitizerOption {
public:
    explicit SanitizerOption(const std::string& option) : _options(name, given() + ':' + option) {}

private:
    static std::string given()
    {
        const char* const options = std::getenv(name);
        return options ? options : "";
    }
    static constexpr const char* name = "ASAN_OPTIONS";

    const ScopedVariable _options;
};
