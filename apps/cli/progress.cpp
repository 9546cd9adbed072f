// Progress on the terminal, and how long each stage took.
// SPDX-License-Identifier: MIT

#include "progress.h"

#include "base/cancellation.h"
#include "report.h"

#include <fmt/format.h>

namespace cli {

namespace {

double SecondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

Progress::Progress(bool wanted)
{
    if (wanted && HasProgress() && ProgressLine::isPossible())
        _line.emplace();
}

std::string Progress::line()
{
    const ProgressEstimate::Told told = _estimate.tell(totalSeconds());
    if (!told.percent)
        return _text + " ...";
    const std::string left =
        told.secondsLeft ? fmt::format("about {} left  ", RoughTime(*told.secondsLeft)) : std::string();
    return fmt::format("{} %  {}{}", *told.percent, left, _text);
}

void Progress::expect(std::vector<ExpectedStep> stages)
{
    if (_line)
        _line->change([&] { _estimate.expect(std::move(stages)); });
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
    if (!_line)
        return;
    _line->change([&] {
        _estimate.begin(name, totalSeconds());
        _text = text.empty() ? name : text;
    });
    _line->show([this] { return line(); });
}

void Progress::count(const CountedWork& work, const std::string& text)
{
    if (!_line)
        return;
    _line->change([&] {
        _estimate.count(work, totalSeconds());
        _text = text;
    });
    const std::size_t percent = work.total > 0 ? 100 * work.done / work.total : 0;
    if (std::exchange(_percent, percent) != percent)
        _line->show([this] { return line(); });
}

void Progress::finish()
{
    if (_stage.empty())
        return;
    _seconds.emplace_back(_stage, SecondsSince(_stageBegin));
    _stage.clear();
    if (_line)
        _line->clear();
}

double Progress::totalSeconds() const
{
    return SecondsSince(_begin);
}

} // namespace cli
