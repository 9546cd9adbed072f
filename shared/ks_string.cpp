// UTF-8 strings: conversion, splitting and joining, searching, quoting, identifiers.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include "ks_assert.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace kst {
namespace str {

namespace {

// As in the C locale, whatever the program runs under: a Turkish i has no upper case in one byte, and in the
// locales of one byte a letter, parts of UTF-8 characters would pass for letters and blanks.
bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}

char Lower(char c)
{
    return IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

char Upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool SameLetter(char a, char b)
{
    return Upper(a) == Upper(b);
}

template <class Container>
std::string ImplodeItems(std::string_view separator, const Container& items)
{
    if (items.empty())
        return std::string();
    std::size_t length = (items.size() - 1) * separator.size();
    for (const auto& item : items)
        length += item.size();
    std::string result;
    result.reserve(length);
    result += *items.begin();
    for (auto item = std::next(items.begin()); item != items.end(); ++item) {
        result += separator;
        result += *item;
    }
    return result;
}

template <class Store>
void ExplodeInto(std::string_view text, std::string_view separator, bool trim, bool keepEmpty,
                 const Store& store)
{
    ForEachSubstring(text, separator, [&](std::string_view piece) {
        if (!piece.empty() || keepEmpty)
            store(trim ? trimmed(piece) : piece);
        return true;
    });
}

} // namespace

std::string ToStd(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

std::vector<std::string> ToStd(const QStringList& texts)
{
    std::vector<std::string> result;
    for (int i = 0; i < texts.size(); ++i)
        result.push_back(ToStd(texts.at(i)));
    return result;
}

QString ToQ(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

QStringList ToQ(const std::vector<std::string_view>& texts)
{
    QStringList result;
    for (const std::string_view text : texts)
        result << ToQ(text);
    return result;
}

std::vector<std::string_view> FromSv(const std::vector<std::string>& texts)
{
    return std::vector<std::string_view>(texts.begin(), texts.end());
}

std::vector<std::string> FromSvv(const std::vector<std::string_view>& texts)
{
    return std::vector<std::string>(texts.begin(), texts.end());
}

std::string ToLower(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Lower);
    return result;
}

std::string ToUpper(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Upper);
    return result;
}

bool ForEachSubstring(std::string_view text, std::string_view separator,
                      const std::function<bool(std::string_view)>& callback)
{
    assert(!separator.empty());
    if (text.empty())
        return true;
    std::size_t at = 0;
    for (;;) {
        const std::size_t next = text.find(separator, at);
        if (next == std::string_view::npos)
            return callback(text.substr(at));
        if (next != at && !callback(text.substr(at, next - at)))
            return false;
        at = next + separator.size();
    }
}

std::vector<std::string> ExplodeVector(std::string_view text, std::string_view separator, bool trim,
                                       bool keepEmpty)
{
    std::vector<std::string> result;
    ExplodeInto(text, separator, trim, keepEmpty,
                [&](std::string_view piece) { result.emplace_back(piece); });
    return result;
}

std::vector<std::string> ExplodeVector(const char* text, std::string_view separator, bool trim,
                                       bool keepEmpty)
{
    return ExplodeVector(std::string_view(text), separator, trim, keepEmpty);
}

std::vector<std::string> ExplodeVector(const QString& text, std::string_view separator, bool trim,
                                       bool keepEmpty)
{
    return ExplodeVector(std::string_view(ToStd(text)), separator, trim, keepEmpty);
}

std::vector<std::string_view> ExplodeViewVector(std::string_view text, std::string_view separator,
                                                bool keepEmpty)
{
    std::vector<std::string_view> result;
    ExplodeViewVector(text, separator, keepEmpty, result);
    return result;
}

void ExplodeViewVector(std::string_view text, std::string_view separator, bool keepEmpty,
                       std::vector<std::string_view>& pieces)
{
    pieces.clear();
    ExplodeInto(text, separator, false, keepEmpty, [&](std::string_view piece) { pieces.push_back(piece); });
}

std::set<std::string> ExplodeSet(std::string_view text, std::string_view separator, bool trim, bool keepEmpty)
{
    std::set<std::string> result;
    ExplodeInto(text, separator, trim, keepEmpty, [&](std::string_view piece) { result.emplace(piece); });
    return result;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && IsSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string Implode(std::string_view separator, const std::vector<std::string>& items)
{
    return ImplodeItems(separator, items);
}

std::string Implode(std::string_view separator, const std::vector<std::string_view>& items)
{
    return ImplodeItems(separator, items);
}

std::string Implode(std::string_view separator, const std::set<std::string>& items)
{
    return ImplodeItems(separator, items);
}

std::string Implode(std::string_view separator, const std::set<int>& items) noexcept
{
    std::vector<std::string> texts;
    for (const int item : items)
        texts.push_back(fmt::format("{}", item));
    return ImplodeItems(separator, texts);
}

std::string Implode(std::string_view separator, const QStringList& items)
{
    return ImplodeItems(separator, ToStd(items));
}

QString ImplodeQ(std::string_view separator, const std::vector<std::string>& items)
{
    return ToQ(Implode(separator, items));
}

QString ImplodeQ(std::string_view separator, const std::vector<std::string_view>& items)
{
    return ToQ(Implode(separator, items));
}

QString ImplodeQ(std::string_view separator, const std::set<std::string>& items)
{
    return ToQ(Implode(separator, items));
}

QString ImplodeQ(std::string_view separator, const std::set<int>& items) noexcept
{
    return ToQ(Implode(separator, items));
}

QString ImplodeQ(std::string_view separator, const QStringList& items)
{
    return ToQ(Implode(separator, items));
}

std::string UnorderedList(std::size_t indent, std::string_view prefix, const std::vector<std::string>& items)
{
    if (items.empty())
        return std::string();
    const std::string separator = fmt::format("\n{}{}", std::string(indent, ' '), prefix);
    return separator + Implode(separator, items);
}

bool StartsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool EndsWith(std::string_view text, std::string_view suffix)
{
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

void FindReplaceInPlace(std::string& text, std::string_view find, std::string_view replace)
{
    assert(!find.empty());
    for (std::size_t at = text.find(find); at != std::string::npos; at = text.find(find, at + replace.size()))
        text.replace(at, find.size(), replace);
}

std::string FindReplaceReturn(std::string_view text, std::string_view find, std::string_view replace)
{
    std::string result(text);
    FindReplaceInPlace(result, find, replace);
    return result;
}

bool EqualsCaseInsensitive(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameLetter);
}

std::size_t FindCaseInsensitive(std::string_view haystack, std::string_view needle)
{
    const auto found =
        std::search(haystack.begin(), haystack.end(), needle.begin(), needle.end(), SameLetter);
    // An empty needle is found at the start, which in an empty text is the end and so counts as not found.
    return found == haystack.end() ? std::string_view::npos
                                   : static_cast<std::size_t>(found - haystack.begin());
}

std::string StringOrOther(std::string_view text, std::string_view other)
{
    return std::string(text.empty() ? other : text);
}

std::string Quote(std::string_view text)
{
    return fmt::format("{}{}{}", OPEN_QUOTE, text, CLOSE_QUOTE);
}

std::string Quote(const char* text)
{
    return Quote(std::string_view(text));
}

std::string Quote(const QString& text)
{
    return Quote(std::string_view(ToStd(text)));
}

QString QuoteQ(std::string_view text)
{
    return ToQ(Quote(text));
}

std::string BoldQuote(const QString& text)
{
    return fmt::format("<b>{}{}{}</b>", OPEN_QUOTE, ToStd(text), CLOSE_QUOTE);
}

std::string MakeQuotedIdentifier(std::string_view text)
{
    const bool needsQuotes = !StartsWith(text, "\"") && std::any_of(text.begin(), text.end(), IsUpper);
    return needsQuotes ? fmt::format("\"{}\"", text) : std::string(text);
}

std::string CamelCase(std::string_view text, FlagSet<CamelCaseFlag> flags)
{
    const std::string_view spaces = flags.test(CamelCaseFlag::KeepUnderscores) ? " )[]{}" : " )[]{}_";
    bool lowerNext = flags.test(CamelCaseFlag::LowerFirst);
    bool upperNext = false;
    bool wordStart = true;
    std::string result;
    for (const char c : text) {
        if (spaces.find(c) != std::string_view::npos) {
            upperNext = upperNext || !wordStart;
            wordStart = true;
        } else if (c == '(') {
            if (!wordStart)
                result += '_';
            wordStart = true;
        } else if (c != '\'') {
            result += lowerNext ? Lower(c) : upperNext ? Upper(c) : c;
            lowerNext = upperNext = wordStart = false;
        }
    }
    return result;
}

} // namespace str
} // namespace kst
