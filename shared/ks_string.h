// UTF-8 strings: conversion, splitting and joining, quoting, numbers and durations, file names.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <QString>
#include <QStringList>

/// Names ending in Q take or give the toolkit's UTF-16 string. All functions are pure except
/// MakeRandomString.
namespace kst {
namespace str {

constexpr std::string_view EMPTY = "";
constexpr std::string_view OPEN_QUOTE = "\xE2\x80\x9C";
constexpr std::string_view CLOSE_QUOTE = "\xE2\x80\x9D";
constexpr std::string_view EM_DASH = "\xE2\x80\x94";

// Conversion.
std::string ToStd(const QString& text);
std::vector<std::string> ToStd(const QStringList& texts);
QString ToQ(std::string_view text);
QStringList ToQ(const std::vector<std::string_view>& texts);
std::vector<std::string_view> FromSv(const std::vector<std::string>& texts); ///< views into the argument

// Splitting.

/// Calls back with each piece between separators (never empty); an empty piece is passed on only when it is
/// the last.
/// @return false when the callback returned false, which ends the walk
bool ForEachSubstring(std::string_view text, std::string_view separator,
                      const std::function<bool(std::string_view)>& callback);
/// @param trim       pieces lose white space at both ends, after the emptiness test
/// @param keepEmpty  keeps an empty last piece
std::vector<std::string> ExplodeVector(std::string_view text, std::string_view separator, bool trim,
                                       bool keepEmpty);
std::string_view trimmed(std::string_view text); ///< without white space at both ends

// Joining.
std::string Implode(std::string_view separator, const std::vector<std::string>& items);
std::string Implode(std::string_view separator, const std::vector<std::string_view>& items);
std::string Implode(std::string_view separator, const std::set<std::string>& items);

// Search and replace.
bool StartsWith(std::string_view text, std::string_view prefix);
bool EndsWith(std::string_view text, std::string_view suffix);
/// Replaces every occurrence from left to right, going on behind the inserted text. `find` must not be empty.
void FindReplaceInPlace(std::string& text, std::string_view find, std::string_view replace);
std::string FindReplaceReturn(std::string_view text, std::string_view find, std::string_view replace);
/// Compares bytes by the C library's toupper.
bool EqualsCaseInsensitive(std::string_view a, std::string_view b);

// Quoting.
std::string Quote(std::string_view text); ///< in typographic quotes, as every message shows a name
std::string Quote(const char* text);
std::string Quote(const QString& text);
QString QuoteQ(std::string_view text);

/// First letter upper case, a full stop behind unless the text ends in ".", "!", "?" or ">".
std::string MakeSentence(std::string_view text);

// Numbers and durations.
std::string FormatNumberWithThousands(std::uint64_t number); ///< "1,234,567"
/// The singular text for 1; otherwise the plural with every "%d" replaced by the number.
std::string Pluralize(std::uint64_t number, std::string_view singular, std::string_view plural);
/// "1:02:03 hours", "2:05 minutes", "1 second", "59 seconds".
std::string FormatSecondsElapsed(std::uint64_t seconds);

/// Letters and digits from a process-wide generator; not for secrets. GUI thread only.
std::string MakeRandomString(std::size_t length);

// Paths, with "/" between folders.
std::string MakePath(std::string_view directory, std::string_view name);

} // namespace str
} // namespace kst
