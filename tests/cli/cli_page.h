// What a page that the program wrote carries.
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

/// Between the first of one text and the next of another; empty without.
inline std::string Between(const std::string& text, const std::string& begin, const std::string& end)
{
    const std::size_t at = text.find(begin);
    if (at == text.npos)
        return {};
    const std::size_t from = at + begin.size();
    return text.substr(from, text.find(end, from) - from);
}

inline std::string PageDataText(const std::string& page)
{
    return Between(page, R"(<script type="application/json" id="page-data">)", "</script>");
}

inline nlohmann::json PageData(const std::string& page)
{
    return nlohmann::json::parse(PageDataText(page));
}

/// Bytes that a text in base 64 stands for.
inline std::size_t PackedBytes(const nlohmann::json& text)
{
    const std::string all = text.get<std::string>();
    return all.size() / 4 * 3 - static_cast<std::size_t>(std::count(all.begin(), all.end(), '='));
}
