// An environment variable for a while.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

/// Has the value until the end of the scope, for this process and those that it starts meanwhile.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const std::string& value) : _name(std::move(name))
    {
        if (const char* const former = std::getenv(_name.c_str()))
            _former = former;
        setenv(_name.c_str(), value.c_str(), 1);
    }
    ~ScopedVariable()
    {
        if (_former)
            setenv(_name.c_str(), _former->c_str(), 1);
        else
            unsetenv(_name.c_str());
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const std::string _name;
    std::optional<std::string> _former;
};
