// Markup for rich-text boxes.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <fmt/format.h>

namespace kst {
namespace str {

std::string HtmlEscape(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '"':
            result += "&quot;";
            break;
        case '&':
            result += "&amp;";
            break;
        case '\'':
            result += "&apos;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string HtmlEscape(const char* text)
{
    return HtmlEscape(std::string_view(text));
}

std::string HtmlEscape(const QString& text)
{
    return HtmlEscape(std::string_view(ToStd(text)));
}

QString HtmlEscapeQ(std::string_view text)
{
    return ToQ(HtmlEscape(text));
}

std::string QuoteHtml(std::string_view text)
{
    return Quote(HtmlEscape(text));
}

std::string QuoteHtml(const char* text)
{
    return QuoteHtml(std::string_view(text));
}

std::string QuoteHtml(const QString& text)
{
    return Quote(HtmlEscape(text));
}

std::string HtmlEscape(std::string_view separator, const QStringList& texts)
{
    std::vector<std::string> escaped;
    for (int i = 0; i < texts.size(); ++i)
        escaped.push_back(HtmlEscape(texts.at(i)));
    return Implode(separator, escaped);
}

std::string MakeTableRow(std::string_view label, std::string_view value)
{
    const char* const padding = "style=\"padding-left: 3px; padding-right: 3px; padding-top: 1px;\"";
    return fmt::format("\n<tr>\n<td {}><b>{}:</b></td>\n<td {}>{}</td>\n</tr>", padding, label, padding,
                       value);
}

std::string MakePara(std::string_view text, std::string_view fontSize)
{
    const std::string style =
        fontSize.empty() ? std::string() : fmt::format(" style='font-size:{}'", fontSize);
    return fmt::format("<p{}>{}</p>", style, text);
}

QString MakeParaQ(std::string_view text, std::string_view fontSize)
{
    return ToQ(MakePara(text, fontSize));
}

std::string MakeWarningElement(std::string_view tag, std::string_view style, std::string_view leading,
                               std::string_view body, std::string_view trailing)
{
    return fmt::format("<{} style=\"{}\">{}{}</{}>{}", tag, style, leading, body, tag, trailing);
}

QString MakeWarningElementQ(std::string_view tag, std::string_view style, std::string_view leading,
                            std::string_view body, std::string_view trailing)
{
    return ToQ(MakeWarningElement(tag, style, leading, body, trailing));
}

std::string MakeSentence(std::string_view text)
{
    std::string result(text);
    // Whatever the locale, in which an English letter may have no upper case.
    if (!result.empty())
        result.replace(0, 1, ToUpper(result.substr(0, 1)));
    const std::string_view enders = ".!?>";
    if (result.empty() || enders.find(result.back()) == std::string_view::npos)
        result += '.';
    return result;
}

} // namespace str
} // namespace kst
