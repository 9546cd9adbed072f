// Help texts and version texts as the user reads them.
// SPDX-License-Identifier: MIT

#include "ks_help.h"

#include "ks_product.h"
#include "ks_string.h"

#include <fmt/format.h>

namespace kst {
namespace daz {

namespace {

const char* const buildDate = "2023-06-22";

} // namespace

std::string FormatHelp(std::string_view text)
{
    std::string result(text);
    str::FindReplaceInPlace(result, "%{", str::OPEN_QUOTE);
    str::FindReplaceInPlace(result, "}%", str::CLOSE_QUOTE);
    str::FindReplaceInPlace(result, "``", str::OPEN_QUOTE);
    str::FindReplaceInPlace(result, "''", str::CLOSE_QUOTE);
    str::FindReplaceInPlace(result, "%PLUGINNAME%", product::TITLE);
    return result;
}

QString FormatHelpQ(const QString& text)
{
    return str::ToQ(FormatHelp(str::ToStd(text)));
}

std::string MakeVersionStringOnly()
{
    return fmt::format("V{}.{}.{}", product::VERSION.majorNumber, product::VERSION.minorNumber,
                       product::VERSION.revision);
}

std::string MakeExtendedVersionString()
{
    return fmt::format("{} ({})", MakeVersionStringOnly(), buildDate);
}

std::string MakeWindowTitle(const char* title)
{
    const std::string version = MakeExtendedVersionString();
    return title ? fmt::format("{} {} {} {}", title, str::EM_DASH, product::TITLE, version)
                 : fmt::format("{} {}", product::TITLE, version);
}

} // namespace daz
} // namespace kst
