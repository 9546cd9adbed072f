// UTF-8 strings: conversion, splitting and joining, quoting, markup, numbers and durations, file names.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_flag-set.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <locale>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

class QDateTime;

/// Texts are UTF-8. Names ending in Q take or give the toolkit's UTF-16 string; the others give a text of
/// their own, or, where the comment says so, a view into their argument. Letters and white space are those of
/// the C library's classes, byte by byte. Except MakeRandomString and CaseCorrectPath all functions are pure
/// and safe from any thread. Nothing here throws but what the standard library throws for want of memory and,
/// on a failed check, TestCasesOrThrow.
namespace kst {
namespace str {

constexpr std::string_view EMPTY = "";
constexpr std::string_view OPEN_QUOTE = "\xE2\x80\x9C";
constexpr std::string_view CLOSE_QUOTE = "\xE2\x80\x9D";
constexpr std::string_view EM_DASH = "\xE2\x80\x94";
constexpr std::string_view LEFTWARDS_ARROW = "\xE2\x86\x90";
constexpr std::string_view UPWARDS_ARROW = "\xE2\x86\x91";
constexpr std::string_view RIGHTWARDS_ARROW = "\xE2\x86\x92";
constexpr std::string_view DOWNWARDS_ARROW = "\xE2\x86\x93";

// Conversion.

std::string ToStd(const QString& text);
std::vector<std::string> ToStd(const QStringList& texts);
/// Bytes that are no UTF-8 become replacement characters, and a byte order mark at the start is dropped.
QString ToQ(std::string_view text);
QStringList ToQ(const std::vector<std::string_view>& texts);
std::vector<std::string_view> FromSv(const std::vector<std::string>& texts); ///< views into the argument
std::vector<std::string> FromSvv(const std::vector<std::string_view>& texts);
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);

// Splitting. The separator must not be empty.

/// Calls back with each piece between separators (never empty); an empty piece is passed on only when it is
/// the last. An empty text has no pieces.
/// @return false when the callback returned false, which ends the walk
bool ForEachSubstring(std::string_view text, std::string_view separator,
                      const std::function<bool(std::string_view)>& callback);
/// @param trim       pieces lose white space at both ends, after the emptiness test: a piece of blanks alone
///                   is kept as an empty text
/// @param keepEmpty  keeps an empty last piece
std::vector<std::string> ExplodeVector(std::string_view text, std::string_view separator, bool trim,
                                       bool keepEmpty);
std::vector<std::string> ExplodeVector(const char* text, std::string_view separator, bool trim,
                                       bool keepEmpty);
std::vector<std::string> ExplodeVector(const QString& text, std::string_view separator, bool trim,
                                       bool keepEmpty);
/// Without trimming; the views point into `text`, which must outlive them.
std::vector<std::string_view> ExplodeViewVector(std::string_view text, std::string_view separator,
                                                bool keepEmpty);
/// @param pieces  cleared first
void ExplodeViewVector(std::string_view text, std::string_view separator, bool keepEmpty,
                       std::vector<std::string_view>& pieces);
/// As ExplodeVector, in order and each piece once.
std::set<std::string> ExplodeSet(std::string_view text, std::string_view separator, bool trim,
                                 bool keepEmpty);
std::string_view trimmed(std::string_view text); ///< a view into the argument, no white space at both ends

// Joining: the items in order with the separator between them.

std::string Implode(std::string_view separator, const std::vector<std::string>& items);
std::string Implode(std::string_view separator, const std::vector<std::string_view>& items);
std::string Implode(std::string_view separator, const std::set<std::string>& items);
std::string Implode(std::string_view separator, const std::set<int>& items) noexcept;
std::string Implode(std::string_view separator, const QStringList& items);
QString ImplodeQ(std::string_view separator, const std::vector<std::string>& items);
QString ImplodeQ(std::string_view separator, const std::vector<std::string_view>& items);
QString ImplodeQ(std::string_view separator, const std::set<std::string>& items);
QString ImplodeQ(std::string_view separator, const std::set<int>& items) noexcept;
QString ImplodeQ(std::string_view separator, const QStringList& items);
/// Every item on a new line of its own, the first too.
/// @param indent  blanks at the start of each line
/// @param prefix  between the blanks and the item, such as "- "
std::string UnorderedList(std::size_t indent, std::string_view prefix, const std::vector<std::string>& items);

// Search and replace.

bool StartsWith(std::string_view text, std::string_view prefix);
bool EndsWith(std::string_view text, std::string_view suffix);
/// Replaces every occurrence from left to right, going on behind the inserted text. `find` must not be empty.
void FindReplaceInPlace(std::string& text, std::string_view find, std::string_view replace);
std::string FindReplaceReturn(std::string_view text, std::string_view find, std::string_view replace);
bool EqualsCaseInsensitive(std::string_view a, std::string_view b);
/// @return the first match's position; std::string_view::npos without one, and for any needle in an empty
/// text
std::size_t FindCaseInsensitive(std::string_view haystack, std::string_view needle);
std::string StringOrOther(std::string_view text, std::string_view other); ///< the other for an empty text

// Quoting and identifiers.

std::string Quote(std::string_view text); ///< in typographic quotes, as every message shows a name
std::string Quote(const char* text);
std::string Quote(const QString& text);
QString QuoteQ(std::string_view text);
std::string BoldQuote(const QString& text); ///< bold markup around the quotes; the text is not escaped
/// In plain double quotes when it has an upper-case letter and does not begin with a double quote already.
std::string MakeQuotedIdentifier(std::string_view text);

enum class CamelCaseFlag : int {
    LowerFirst = 1,      ///< the first character written becomes lower case
    KeepUnderscores = 2, ///< an underscore is a character like others, not a space between words
};
/// Joins words by giving all but the first a capital: "hello world" becomes "helloWorld". Brackets part words
/// as blanks do, but "(" inside a word becomes "_": "Max(Deluxe)" gives "Max_Deluxe". Apostrophes are
/// dropped.
std::string CamelCase(std::string_view text, FlagSet<CamelCaseFlag> flags = {});

// Markup for rich-text boxes. Only those with Html in their names escape.

std::string HtmlEscape(std::string_view text); ///< the five characters " & ' < > as entities
std::string HtmlEscape(const char* text);
std::string HtmlEscape(const QString& text);
QString HtmlEscapeQ(std::string_view text);
/// As Quote, for rich text: a name may hold what reads as markup.
std::string QuoteHtml(std::string_view text);
std::string QuoteHtml(const char* text);
std::string QuoteHtml(const QString& text);
/// Escapes the entries and joins them; the separator stays as it is.
std::string HtmlEscape(std::string_view separator, const QStringList& texts);
std::string MakeTableRow(std::string_view label, std::string_view value); ///< puts a colon behind the label
/// @param fontSize  as in a style, such as "12pt"; empty for none
std::string MakePara(std::string_view text, std::string_view fontSize = {});
QString MakeParaQ(std::string_view text, std::string_view fontSize = {});
/// @param leading   before the body, inside the element
/// @param trailing  behind the element
std::string MakeWarningElement(std::string_view tag, std::string_view style, std::string_view leading,
                               std::string_view body, std::string_view trailing);
QString MakeWarningElementQ(std::string_view tag, std::string_view style, std::string_view leading,
                            std::string_view body, std::string_view trailing);
/// First letter upper case, a full stop behind unless the text ends in ".", "!", "?" or ">".
std::string MakeSentence(std::string_view text);

// Numbers.

/// Commas between groups of three digits, whatever the user's locale.
class SeparateThousands : public std::numpunct<char> {
protected:
    char do_thousands_sep() const override;
    std::string do_grouping() const override;
};

/// Reads a number at the very start: an optional "-", then digits; what follows is ignored.
/// @param number  left alone when there is no number, and also when it does not fit
/// @return whether there was a number, fitting or not
bool ParseInt(std::string_view text, std::int64_t* number);
bool ParseInt(std::string_view text, int* number);
std::string FormatNumberWithThousands(std::uint64_t number); ///< "1,234,567"
QString FormatNumberWithThousandsQ(std::uint64_t number);
/// The singular text for 1, as it is; otherwise the plural with every "%d" replaced by the number with
/// commas.
std::string Pluralize(std::uint64_t number, std::string_view singular, std::string_view plural);
/// The same; besides, "%L1" in the plural becomes the number as the user's locale writes it.
QString PluralizeQ(std::uint64_t number, const QString& singular, const QString& plural);
/// Two digits behind the point, in units of 1024, with two blanks before the unit: "1.50  KB". Below that
/// "1023 bytes".
std::string FormatBytes(std::uint64_t bytes);
/// Letters and digits from a process-wide generator; not for secrets. GUI thread only.
std::string MakeRandomString(std::size_t length);

// Durations and dates.

/// "1:02:03 hours", "2:05 minutes", "1 second", "59 seconds".
std::string FormatSecondsElapsed(std::uint64_t seconds);
/// In words and to the minute, as FormatMinutesElapsed: users watch it change.
QString FormatSecondsElapsedQ(std::int64_t seconds);
/// To the nearest minute: "less than a minute", "about a minute", "59 minutes", "1:00 hours".
std::string FormatMinutesElapsed(std::int64_t seconds);
/// "1:02:03 hours", "2:05 minutes", "4.007 seconds".
std::string FormatMilliSecondsElapsed(std::uint64_t milliseconds);
QString FormatMilliSecondsElapsedQ(std::uint64_t milliseconds);
/// Weekday, then date and time, in local time and as the C library's locale writes them; empty for a time
/// whose year cannot be written.
std::string FormatTimestamp(std::time_t time);
std::string FormatDateTime(const QDateTime& time); ///< "2023-06-22 09:05"
QString FormatDateTimeQ(const QDateTime& time);

// Paths, with "/" between folders.

std::string NativePath(std::string_view path); ///< every backslash becomes "/"
QString NativePathQ(const QString& path);
/// As it is, where "/" is the platform's own separator.
std::string ForwardSlashes(std::string_view path);
QString ForwardSlashesQ(const QString& path);
/// One "/" between the two unless the directory is empty or ends in one. A "/" that the name begins with
/// stays.
std::string MakePath(std::string_view directory, std::string_view name);
QString MakePathQ(const QString& directory, const QString& name);
std::string RemoveLeadingSlash(std::string_view path); ///< one at most
/// Views into the path: before and behind the last "/". Without one all of it is the file name.
std::pair<std::string_view, std::string_view> GetDirAndFilenames(std::string_view path);
std::string_view GetFilename(std::string_view path);  ///< a view: behind the last "/"
std::string_view GetExtension(std::string_view path); ///< a view: behind the file name's last ".", or empty
std::string_view GetFilestem(std::string_view path);  ///< a view: the file name before that "."
std::string_view GetDirname(std::string_view path);   ///< a view: before the last "/"; empty without one
QString GetDirnameQ(const QString& path);
/// Finds a path's spelling on disk, folder by folder: a name that is there as written is taken, otherwise the
/// first that differs in case only. "." and ".." match nothing.
/// @param baseDir       where the path starts; taken as it is
/// @param relativePath  "/" between components, empty ones are skipped
/// @param out           the spelling is appended, with "/" between components; when false is returned, the
///                      components found until then
/// @return whether every component was found
bool CaseCorrectPath(std::string_view baseDir, std::string_view relativePath, std::string& out);

/// One check of a start-up check on the user's machine.
/// @param condition  as the source has it
/// @throws kst::Exception  "Test failed: {}" with the condition, unless it holds
void ThrowUnless(bool holds, std::string_view condition);
/// Checks joining and trimming, for a start-up check on the user's machine.
/// @throws kst::Exception  "Test failed: {}" with the first condition that does not hold
void TestCasesOrThrow();

} // namespace str
} // namespace kst
