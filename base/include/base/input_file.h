// Reading files without being held up by them.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <filesystem>

namespace base {

/// A file that is read from its beginning. What is no plain file, such as a pipe, is waited for as long as
/// nobody has given anything; the wait can be cancelled, as all of this can.
class InputFile {
public:
    /// @param opening  what the text says when the file cannot be opened: "cannot read", or "cannot open"
    /// @throws IoError  names the file and the system's reason
    explicit InputFile(const std::filesystem::path& file, const char* opening = "cannot read");
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// @return how many bytes there were, at most `room`; 0 at the end only
    /// @throws IoError  as above
    std::size_t read(char* bytes, std::size_t room);
    /// Of a plain file; of others nothing is known before.
    std::size_t size() const { return _size; }

private:
    void open(const char* opening);
    void waitForBytes() const;

    std::filesystem::path _file;
    int _descriptor = -1;
    std::size_t _size = 0;
    bool _isPlain = true;
};

} // namespace base
