// Help texts and version texts as the user reads them.
// SPDX-License-Identifier: MIT

#include "shared/ks_help.h"

#include "shared/ks_product.h"
#include "shared/ks_string.h"

#include <fmt/format.h>

namespace kst {
namespace daz {

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

} // namespace daz
} // namespace kst
