// Running the program on a terminal, and what a person sees there.
// SPDX-License-Identifier: MIT

#include "cli_terminal.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The few things that a terminal does for this program: lines, carriage returns, colours, and clearing a
/// line's rest.
class Screen {
public:
    void show(const std::string& bytes)
    {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            if (bytes[i] == '\n')
                _lines.emplace_back();
            else if (bytes[i] == '\r')
                _column = 0;
            else if (bytes.compare(i, 3, "\x1b[K") == 0)
                clearRest(i);
            else if (bytes.compare(i, 2, "\x1b[") == 0)
                i = std::min(bytes.find('m', i), bytes.size()); // a colour
            else
                put(bytes[i]);
        }
    }

    std::vector<std::string> lines() const
    {
        std::vector<std::string> trimmed = _lines;
        for (std::string& line : trimmed)
            line.erase(line.find_last_not_of(' ') + 1);
        while (!trimmed.empty() && trimmed.back().empty())
            trimmed.pop_back();
        return trimmed;
    }
    std::size_t longestCleared() const { return _longestCleared; }

private:
    void clearRest(std::size_t& at)
    {
        _longestCleared = std::max(_longestCleared, _lines.back().size());
        _lines.back().resize(std::min(_lines.back().size(), _column));
        at += 2;
    }
    void put(char c)
    {
        std::string& line = _lines.back();
        line.resize(std::max(line.size(), _column + 1), ' ');
        line[_column++] = c;
    }

    std::vector<std::string> _lines{std::string()};
    std::size_t _column = 0, _longestCleared = 0;
};

std::string ReadToEnd(int terminal)
{
    std::string bytes;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(terminal, buffer, sizeof buffer);
        if (count > 0)
            bytes.append(buffer, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return bytes; // a terminal that nobody writes to any more ends with an error
    }
}

} // namespace

TerminalResult RunOnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                             const std::vector<std::pair<std::string, std::string>>& environment)
{
    std::vector<std::string> owned{GANTREL_PROGRAM};
    owned.insert(owned.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& argument : owned)
        argv.push_back(&argument[0]);
    argv.push_back(nullptr);

    winsize size{};
    size.ws_row = 24;
    size.ws_col = columns;
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child < 0)
        throw std::runtime_error("cannot open a pseudo terminal");
    if (child == 0) {
        unsetenv("NO_COLOR");
        setenv("TERM", "xterm", 1);
        for (const auto& [name, value] : environment)
            setenv(name.c_str(), value.c_str(), 1);
        execv(GANTREL_PROGRAM, argv.data());
        _exit(127);
    }
    TerminalResult result;
    result.bytes = ReadToEnd(terminal);
    close(terminal);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    Screen screen;
    screen.show(result.bytes);
    result.screen = screen.lines();
    result.longestCleared = screen.longestCleared();
    return result;
}
