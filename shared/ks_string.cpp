// UTF-8 strings: conversion, splitting and joining, quoting, numbers and durations, file names.
// SPDX-License-Identifier: MIT

#include "shared/ks_string.h"

#include "shared/ks_assert.h"

#include <cctype>
#include <locale>
#include <random>
#include <sstream>

#include <fmt/format.h>

namespace kst {
namespace str {

namespace {

/// Commas between groups of three digits, whatever the user's locale.
class SeparateThousands : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

const std::locale& ThousandsLocale()
{
    static const std::locale locale(std::locale::classic(), new SeparateThousands);
    return locale;
}

bool IsSpace(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

char Upper(char c)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

template <class Container>
std::string ImplodeItems(std::string_view separator, const Container& items)
{
    std::size_t length = 0;
    for (const auto& item : items)
        length += item.size() + separator.size();
    std::string result;
    result.reserve(length);
    bool first = true;
    for (const auto& item : items) {
        if (!first)
            result += separator;
        first = false;
        result += item;
    }
    return result;
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
    ForEachSubstring(text, separator, [&](std::string_view piece) {
        if (!piece.empty() || keepEmpty)
            result.emplace_back(trim ? trimmed(piece) : piece);
        return true;
    });
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
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Upper(a[i]) != Upper(b[i]))
            return false;
    return true;
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

std::string MakeSentence(std::string_view text)
{
    std::string result(text);
    if (!result.empty() && std::islower(static_cast<unsigned char>(result.front())))
        result.front() = Upper(result.front());
    const std::string_view enders = ".!?>";
    if (result.empty() || enders.find(result.back()) == std::string_view::npos)
        result += '.';
    return result;
}

std::string FormatNumberWithThousands(std::uint64_t number)
{
    std::ostringstream stream;
    stream.imbue(ThousandsLocale());
    stream << number;
    return stream.str();
}

std::string Pluralize(std::uint64_t number, std::string_view singular, std::string_view plural)
{
    return number == 1 ? std::string(singular)
                       : FindReplaceReturn(plural, "%d", FormatNumberWithThousands(number));
}

std::string FormatSecondsElapsed(std::uint64_t seconds)
{
    const std::uint64_t hours = seconds / 3600, minutes = seconds / 60 % 60, rest = seconds % 60;
    if (hours > 0)
        return fmt::format("{}:{:02}:{:02} hours", hours, minutes, rest);
    if (minutes > 0)
        return fmt::format("{}:{:02} minutes", minutes, rest);
    return seconds == 1 ? "1 second" : fmt::format("{} seconds", seconds);
}

std::string MakeRandomString(std::size_t length)
{
    static const std::string_view alphabet = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    static std::mt19937 generator(std::random_device("/dev/urandom")());
    static std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    std::string result;
    for (std::size_t i = 0; i < length; ++i)
        result += alphabet[pick(generator)];
    return result;
}

std::string MakePath(std::string_view directory, std::string_view name)
{
    const bool needsSlash = !directory.empty() && directory.back() != '/';
    return fmt::format("{}{}{}", directory, needsSlash ? "/" : "", name);
}

} // namespace str
} // namespace kst
