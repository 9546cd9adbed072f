// The text of a DSON file, taken apart.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "json_view.h"

#include <string>

namespace dson {

enum class Deltas { Read, Skipped };

/// A parsed JSON object; its elements live as long as this.
class ParsedText {
public:
    /// Strict first; a text that is not is mended as far as that goes, and what was done is told.
    /// @param name    of the file, for messages
    /// @param deltas  skipped, lists of displacements may be empty
    /// @throws base::FormatError  the text is no JSON object and cannot be mended
    ParsedText(const std::string& text, std::string name, Deltas deltas = Deltas::Read);

    const std::string& name() const { return _name; }
    const Element& root() const { return _root; }
    /// Tells of members that an object has more than once; empty for none.
    const std::string& repeatedNames() const { return _repeatedNames; }
    base::Diagnostics& diagnostics() { return _diagnostics; }

private:
    simdjson::error_code parseStrictly(const std::string& text, Deltas deltas);
    simdjson::error_code parseMended(const std::string& text);

    std::string _name, _repeatedNames;
    simdjson::dom::parser _parser;
    Element _root;
    base::Diagnostics _diagnostics;
};

} // namespace dson
