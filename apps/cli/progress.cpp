// Progress on the terminal, and how long each stage took.
// SPDX-License-Identifier: MIT

#include "progress.h"

#include "base/cancellation.h"
#include "report.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

namespace {

double SecondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A line that the terminal breaks cannot be taken back as a whole.
std::string FitToTerminal(std::string line)
{
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || line.size() < size.ws_col)
        return line;
    std::size_t end = size.ws_col - 1u;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80)
        --end; // not within a character
    line.resize(end);
    return line;
}

} // namespace

Progress::Progress(bool wanted) : _isShown(wanted && !IsQuiet() && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress()
{
    if (!_stage.empty())
        clearLine();
}

void Progress::clearLine() const
{
    if (!_isShown)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
}

void Progress::stage(const std::string& name, const std::string& text)
{
    finish();
    base::ThrowIfCancelled();
    begin(name, text);
}

void Progress::begin(const std::string& name, const std::string& text)
{
    finish();
    _stage = name;
    _stageBegin = Clock::now();
    if (_listener)
        _listener(name);
    show((text.empty() ? name : text) + " ...");
}

void Progress::show(const std::string& text) const
{
    if (!_isShown)
        return;
    clearLine();
    std::fputs(FitToTerminal(text).c_str(), stderr);
    std::fflush(stderr);
}

void Progress::update(const std::string& text)
{
    base::ThrowIfCancelled();
    constexpr double readable = 0.2; // seconds
    if (!_isShown || SecondsSince(_shownAt) < readable)
        return;
    _shownAt = Clock::now();
    show(text);
}

void Progress::finish()
{
    if (_stage.empty())
        return;
    _seconds.emplace_back(_stage, SecondsSince(_stageBegin));
    _stage.clear();
    clearLine();
}

double Progress::totalSeconds() const
{
    return SecondsSince(_begin);
}

} // namespace cli
