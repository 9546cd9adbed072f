// Progress on the terminal, and how long each stage took.
// SPDX-License-Identifier: MIT

#include "apps/cli/progress.h"

#include "apps/cli/interrupt.h"

#include <cstdio>
#include <unistd.h>

namespace cli {

namespace {

double SecondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

Progress::Progress(bool wanted) : _isShown(wanted && isatty(STDERR_FILENO) == 1) {}

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
    ThrowIfInterrupted();
    _stage = name;
    _stageBegin = Clock::now();
    if (!_isShown)
        return;
    clearLine();
    std::fprintf(stderr, "%s ...", (text.empty() ? name : text).c_str());
    std::fflush(stderr);
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
