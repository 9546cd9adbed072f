// A file that programs wait for.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// A file of our own that nobody can open as long as this lives: who tries waits. The system asks for it back
/// with a signal that says nothing new here.
class HeldFile {
public:
    explicit HeldFile(const std::string& path);
    ~HeldFile();
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    bool isWaitedFor() const;
    void letGo();

private:
    int _file;
};
