// A process of our own program that works on rows of a batch.
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace cli {

/// Started at once, in a group of its own, so that Ctrl+C reaches it only through us. It ends with what it
/// was told last, or by itself when we have gone.
class BatchProcess {
public:
    /// @param arguments  of the program
    /// @throws std::runtime_error  the system starts none
    explicit BatchProcess(const std::vector<std::string>& arguments);
    /// Lets it come to its end, and waits for that.
    ~BatchProcess();
    BatchProcess(const BatchProcess&) = delete;
    BatchProcess& operator=(const BatchProcess&) = delete;

    /// One that has ended shows at the next read.
    void writeLine(const std::string& line) const;
    int descriptor() const { return _reading; } ///< for poll()
    /// Takes what has come, waiting for something.
    /// @return false at the end: it has ended, or closed its side
    bool read();
    /// A whole line of what was read, without its end.
    std::optional<std::string> nextLine();

    void askToEnd() const;
    void kill() const;
    /// "the worker ended by signal 9", or with a code. It has ended.
    std::string waitForEnd();

private:
    void closeLines();

    pid_t _process = 0;
    int _writing = -1, _reading = -1;
    std::string _bytes;
};

} // namespace cli
