// What a child writes.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

/// A nameless file that a child writes into; unlike a pipe it takes any amount without a reader.
class Capture {
public:
    Capture() : _file(std::tmpfile())
    {
        if (!_file)
            throw std::runtime_error("cannot make a temporary file");
    }
    ~Capture() { std::fclose(_file); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    int descriptor() const { return fileno(_file); }
    std::string text() const
    {
        std::rewind(_file);
        std::string text;
        char buffer[4096];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, _file))
            text.append(buffer, count);
        return text;
    }

private:
    std::FILE* _file;
};
