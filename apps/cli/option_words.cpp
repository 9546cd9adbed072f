// How texts name options.
// SPDX-License-Identifier: MIT

#include "option_words.h"

#include <atomic>

namespace cli {

namespace {

std::atomic<std::string (*)(const std::string&)> wordOf{nullptr};

} // namespace

std::string OptionWord(const std::string& option)
{
    std::string (*const own)(const std::string&) = wordOf;
    return own ? own(option) : option;
}

void SetOptionWords(std::string (*newWordOf)(const std::string& option))
{
    wordOf = newWordOf;
}

} // namespace cli
