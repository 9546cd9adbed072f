// Laws of the string functions.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/shared/text_generators.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cctype>

using namespace kst::str;

namespace {

using Strings = std::vector<std::string>;
using Flags = kst::FlagSet<CamelCaseFlag>;

const std::string separatorLetters = ",;:";
const std::string otherLetters = "ab \xC3\xA4";

/// Pieces that no separator is found in, not even across a joint.
Strings Pieces()
{
    return *rc::gen::container<Strings>(NonEmptyTextOf(otherLetters));
}

std::string Without(std::string text, const std::string& letters)
{
    const auto unwanted = [&](char c) { return letters.find(c) != std::string::npos; };
    text.erase(std::remove_if(text.begin(), text.end(), unwanted), text.end());
    return text;
}

bool IsUpper(char c)
{
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}

RC_GTEST_PROP(ConversionLaws, the_toolkit_gives_back_every_valid_text, ())
{
    const std::string text = *Utf8Text();
    RC_ASSERT(ToStd(ToQ(text)) == text);
}

RC_GTEST_PROP(ConversionLaws, lists_come_back_in_order, ())
{
    const Strings texts = *rc::gen::container<Strings>(Utf8Text());
    RC_ASSERT(ToStd(ToQ(FromSv(texts))) == texts);
    RC_ASSERT(FromSvv(FromSv(texts)) == texts);
}

RC_GTEST_PROP(SplittingLaws, explode_undoes_implode, (bool keepEmpty))
{
    const std::string separator = *NonEmptyTextOf(separatorLetters);
    const Strings pieces = Pieces();
    RC_ASSERT(ExplodeVector(Implode(separator, pieces), separator, false, keepEmpty) == pieces);
}

RC_GTEST_PROP(SplittingLaws, implode_puts_one_separator_less_than_items, ())
{
    const std::string separator = *NonEmptyTextOf(separatorLetters);
    const Strings pieces = Pieces();
    std::size_t length = pieces.empty() ? 0 : (pieces.size() - 1) * separator.size();
    for (const std::string& piece : pieces)
        length += piece.size();
    RC_ASSERT(Implode(separator, pieces).size() == length);
    RC_ASSERT(ToStd(ImplodeQ(separator, FromSv(pieces))) == ToStd(ToQ(Implode(separator, pieces))));
}

RC_GTEST_PROP(SplittingLaws, the_pieces_are_the_text_without_separators, (bool keepEmpty))
{
    const std::string text = *TextOf("ab,");
    const Strings pieces = ExplodeVector(text, ",", false, keepEmpty);
    RC_ASSERT(Implode("", pieces) == Without(text, ","));
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
        RC_ASSERT(!pieces[i].empty());
    RC_ASSERT((keepEmpty || pieces.empty() || !pieces.back().empty()));
}

RC_GTEST_PROP(SplittingLaws, views_and_sets_hold_the_same_pieces, (bool keepEmpty))
{
    const std::string text = *TextOf("ab,");
    const Strings pieces = ExplodeVector(text, ",", false, keepEmpty);
    RC_ASSERT(FromSvv(ExplodeViewVector(text, ",", keepEmpty)) == pieces);
    RC_ASSERT(ExplodeSet(text, ",", false, keepEmpty) == std::set<std::string>(pieces.begin(), pieces.end()));
}

RC_GTEST_PROP(SplittingLaws, trimming_takes_white_space_at_both_ends_alone, ())
{
    const std::string space = " \t\n\v\f\r";
    const std::string before = *TextOf(space), after = *TextOf(space);
    const std::string inner = "x" + *TextOf("ab " + space) + "y";
    RC_ASSERT(trimmed(before + inner + after) == inner);
    RC_ASSERT(trimmed(before).empty());
}

RC_GTEST_PROP(ReplacingLaws, a_text_is_replaced_wherever_it_stood, ())
{
    const std::string find = *NonEmptyTextOf(separatorLetters);
    const std::string replace = *TextOf(separatorLetters + "ab");
    const Strings pieces = Pieces();
    RC_ASSERT(FindReplaceReturn(Implode(find, pieces), find, replace) == Implode(replace, pieces));
}

RC_GTEST_PROP(ReplacingLaws, a_text_replaced_by_itself_changes_nothing, ())
{
    const std::string text = *TextOf("ab"), find = *NonEmptyTextOf("ab");
    RC_ASSERT(FindReplaceReturn(text, find, find) == text);
}

RC_GTEST_PROP(SearchLaws, case_does_not_matter, (const std::string& text))
{
    RC_ASSERT(EqualsCaseInsensitive(text, ToUpper(text)));
    RC_ASSERT(EqualsCaseInsensitive(ToLower(text), text));
}

RC_GTEST_PROP(SearchLaws, the_first_match_is_found_in_any_case, ())
{
    const std::string haystack = *NonEmptyTextOf("aAbB"), needle = *TextOf("aAbB");
    RC_ASSERT(FindCaseInsensitive(haystack, needle) == ToLower(haystack).find(ToLower(needle)));
}

RC_GTEST_PROP(SearchLaws, a_text_begins_and_ends_with_its_parts, (const std::string& a, const std::string& b))
{
    RC_ASSERT(StartsWith(a + b, a));
    RC_ASSERT(EndsWith(a + b, b));
    RC_ASSERT(!StartsWith(a, a + b + "x"));
    RC_ASSERT(!EndsWith(b, "x" + a + b));
}

RC_GTEST_PROP(QuotingLaws, an_identifier_is_quoted_at_most_once, ())
{
    const std::string text = *TextOf("abAB\" ");
    const std::string quoted = MakeQuotedIdentifier(text);
    RC_ASSERT((quoted == text || quoted == "\"" + text + "\""));
    RC_ASSERT(MakeQuotedIdentifier(quoted) == quoted);
    RC_ASSERT((StartsWith(quoted, "\"") || std::none_of(quoted.begin(), quoted.end(), IsUpper)));
}

RC_GTEST_PROP(CamelCaseLaws, no_blank_bracket_or_apostrophe_is_left, (int flagBits))
{
    const std::string text = *TextOf("aB1_ ()[]{}'");
    const std::string result = CamelCase(text, Flags::fromInt(flagBits));
    RC_ASSERT(result.find_first_of(" ()[]{}'") == std::string::npos);
}

RC_GTEST_PROP(CamelCaseLaws, letters_keep_their_order, (bool keepUnderscores))
{
    const std::string text = *TextOf("aBc1_ ()[]{}'");
    const Flags flags = keepUnderscores ? Flags(CamelCaseFlag::KeepUnderscores) : Flags();
    const std::string dropped = "_ ()[]{}'";
    RC_ASSERT(ToLower(Without(CamelCase(text, flags), "_")) == ToLower(Without(text, dropped)));
}

RC_GTEST_PROP(CamelCaseLaws, an_underscore_comes_of_a_bracket_or_is_kept, ())
{
    const std::string text = *TextOf("aB_ (");
    const auto count = [](const std::string& in, char c) { return std::count(in.begin(), in.end(), c); };
    RC_ASSERT(count(CamelCase(text), '_') <= count(text, '('));
    const std::string kept = CamelCase(text, CamelCaseFlag::KeepUnderscores);
    RC_ASSERT(count(kept, '_') >= count(text, '_'));
}

RC_GTEST_PROP(CamelCaseLaws, what_is_one_word_already_stays, ())
{
    const std::string word = *TextOf("aBc1");
    RC_ASSERT(CamelCase(word) == word);
    const std::string small = CamelCase(word, CamelCaseFlag::LowerFirst);
    RC_ASSERT((small.empty() || !IsUpper(small.front())));
    RC_ASSERT(small.substr(std::min<std::size_t>(1, small.size())) ==
              word.substr(std::min<std::size_t>(1, word.size())));
}

RC_GTEST_PROP(EscapingLaws, a_text_comes_back_from_its_entities, (const std::string& any))
{
    const std::string text = any + *TextOf("&<>\"'amplt;");
    std::string plain = HtmlEscape(text);
    RC_ASSERT(plain.find_first_of("<>\"'") == std::string::npos);
    FindReplaceInPlace(plain, "&quot;", "\"");
    FindReplaceInPlace(plain, "&apos;", "'");
    FindReplaceInPlace(plain, "&lt;", "<");
    FindReplaceInPlace(plain, "&gt;", ">");
    FindReplaceInPlace(plain, "&amp;", "&"); // last, or it would make entities of what was text
    RC_ASSERT(plain == text);
}

RC_GTEST_PROP(EscapingLaws, every_ampersand_begins_an_entity, ())
{
    const std::string escaped = HtmlEscape(*TextOf("&<>\"'amplt;"));
    for (std::size_t at = escaped.find('&'); at != std::string::npos; at = escaped.find('&', at + 1)) {
        const std::string_view rest = std::string_view(escaped).substr(at);
        const auto begins = [rest](const char* entity) { return StartsWith(rest, entity); };
        RC_ASSERT(
            (begins("&quot;") || begins("&amp;") || begins("&apos;") || begins("&lt;") || begins("&gt;")));
    }
}

RC_GTEST_PROP(SentenceLaws, a_sentence_is_one_already, (const std::string& text))
{
    const std::string sentence = MakeSentence(text);
    RC_ASSERT(MakeSentence(sentence) == sentence);
    RC_ASSERT(sentence.size() - text.size() <= 1u);
}

RC_GTEST_PROP(PathLaws, folder_and_name_come_back_from_their_path, ())
{
    const std::string directory = *TextOf("ab./") + "x", name = *TextOf("ab.");
    const std::string path = MakePath(directory, name);
    RC_ASSERT(GetDirname(path) == directory);
    RC_ASSERT(GetFilename(path) == name);
    RC_ASSERT(MakePath(directory + "/", name) == path);
    RC_ASSERT(ToStd(GetDirnameQ(ToQ(path))) == directory);
    RC_ASSERT(ToStd(MakePathQ(ToQ(directory), ToQ(name))) == path);
}

RC_GTEST_PROP(PathLaws, stem_and_extension_make_the_file_name, ())
{
    const std::string path = *TextOf("ab./");
    const std::string stem(GetFilestem(path)), extension(GetExtension(path)), name(GetFilename(path));
    RC_ASSERT(name == (name.find('.') == std::string::npos ? stem : stem + "." + extension));
    RC_ASSERT(extension.find_first_of("./") == std::string::npos);
}

} // namespace
