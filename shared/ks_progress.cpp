// The host's progress display for a fixed list of steps.
// SPDX-License-Identifier: MIT

#include "ks_progress.h"

#include "ks_assert.h"
#include "ks_exception.h"
#include "ks_gui.h"
#include "ks_string.h"

#include <dzprogress.h>

namespace kst {
namespace daz {

namespace {

const std::string& FirstOf(const std::vector<std::string>& steps)
{
    gui::AssertGuiThread();
    const std::size_t cSteps = steps.size();
    assert(cSteps > 0);
    Q_UNUSED(cSteps);
    return steps.front();
}

} // namespace

struct SimpleProgress::Impl {
    explicit Impl(std::vector<std::string> stepTexts)
        : steps(std::move(stepTexts)), cSteps(steps.size()),
          progress(str::ToQ(FirstOf(steps)), static_cast<int>(cSteps), false, false)
    {
    }

    const std::string& advance()
    {
        gui::AssertGuiThread();
        assert(currentStep < cSteps);
        const std::string& text = steps[currentStep++];
        progress.setInfo(str::ToQ(text));
        progress.step();
        return text;
    }

    std::vector<std::string> steps;
    std::size_t cSteps;
    std::size_t currentStep = 1; ///< the first text is shown by the constructor
    DzProgress progress;
};

SimpleProgress::SimpleProgress(std::vector<std::string> steps) : _pImpl(new Impl(std::move(steps))) {}
SimpleProgress::~SimpleProgress() = default;

void SimpleProgress::step_X(bool confirm) const
{
    const std::string& text = _pImpl->advance();
    if (!confirm)
        return;
    const std::string question = fmt::format("Next step: {}", text);
    if (!gui::AskCustomActionOrCancel(nullptr, "Next step?", question.c_str(), "Continue"))
        throw CanceledException();
}

void SimpleProgress::stepAssert_X(bool confirm, std::size_t iAssert) const
{
    step_X(confirm);
    assert(_pImpl->currentStep + 1 == iAssert);
    Q_UNUSED(iAssert);
}

std::size_t SimpleProgress::getStep() const
{
    return _pImpl->currentStep + 1;
}

void SimpleProgress::done() const
{
    gui::AssertGuiThread();
    _pImpl->currentStep = _pImpl->cSteps - 1;
    _pImpl->progress.step();
}

void Log(std::string_view text)
{
    Debug::Log(text);
}

} // namespace daz
} // namespace kst
