// The text of a DSON file, taken apart.
// SPDX-License-Identifier: MIT

#include "parsed_text.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "delta_skip.h"
#include "lenient_json.h"
#include "repeated_names.h"

#include <new>
#include <utility>

namespace dson {

namespace {

/// Parsed elements do not know their places, so the text is gone through once more.
std::string TellRepeatedNames(const std::string& text)
{
    RepeatedNames names;
    Mend(text, &names);
    return names.phrase(text);
}

} // namespace

ParsedText::ParsedText(const std::string& text, std::string name, Deltas deltas) : _name(std::move(name))
{
    if (text.find_first_not_of(" \t\r\n") == std::string::npos)
        throw base::FormatError("{}: is empty", _name);
    // Once begun, the parser cannot be stopped.
    base::ThrowIfCancelled();
    simdjson::error_code error = parseStrictly(text, deltas);
    base::ThrowIfCancelled();
    if (error && error != simdjson::MEMALLOC)
        error = parseMended(text);
    if (error == simdjson::MEMALLOC)
        throw std::bad_alloc();
    if (error)
        throw base::FormatError("{}: is not valid JSON", _name);
    if (!_root.is_object())
        throw base::FormatError("{}: is not a DSON file", _name);
    if (HasRepeatedNames(_root))
        _repeatedNames = TellRepeatedNames(text);
}

simdjson::error_code ParsedText::parseStrictly(const std::string& text, Deltas deltas)
{
    std::string shorter;
    const bool isShorter = deltas == Deltas::Skipped && SkipDeltas(text, shorter);
    return _parser.parse(isShorter ? shorter : text).get(_root);
}

simdjson::error_code ParsedText::parseMended(const std::string& text)
{
    MendedJson mended = Mend(text);
    if (mended.error) {
        const TextPlace place = PlaceOf(text, *mended.error);
        if (*mended.error == text.size())
            throw base::FormatError("{}: ends too early, at line {}, column {}", _name, place.line,
                                    place.column);
        throw base::FormatError("{}: line {}, column {} is not valid JSON", _name, place.line, place.column);
    }
    for (std::string& oddity : mended.oddities)
        _diagnostics.push_back({base::Severity::Warning, _name, std::string(), std::move(oddity)});
    return _parser.parse(mended.text).get(_root);
}

} // namespace dson
