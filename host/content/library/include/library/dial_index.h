// A figure's dials by what files call them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"

#include <string>
#include <unordered_map>
#include <unordered_set>

class DzNumericProperty;

namespace openhost {

/// Of dials that answer to the same text the first one counts, and aliases come last.
class DialIndex {
public:
    /// @param file      the file that defines the dial
    /// @param filePath  its decoded path
    /// @param dial      not owned; must outlive the index
    void add(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath,
             DzNumericProperty& dial);
    /// A dial that could not be made. What names it by its file finds nothing, and not what has its name
    /// elsewhere.
    void lose(const std::string& filePath, const std::string& idOrName);
    /// The same for all of a file that cannot be read.
    void loseFile(const std::string& filePath);

    /// Whether a dial that is no alias has it.
    bool hasName(const std::string& name) const { return _dials.byName.count(name) > 0; }
    /// Whether a dial is the one that a file of this decoded path defines under the id or name.
    bool has(const std::string& filePath, const std::string& idOrName) const;

    /// The dial that a URI's file and fragment name; without such a file the fragment alone counts: as a
    /// name, as an id, then as either ignoring case. Null for none.
    DzNumericProperty* find(const dson::Uri& uri) const;
    DzNumericProperty* find(const std::string& nameOrId) const;

private:
    using Dials = std::unordered_map<std::string, DzNumericProperty*>;
    static DzNumericProperty* look(const Dials& dials, const std::string& key);

    struct Names {
        Dials byName, byId, byFoldedName;
    };

    Dials _byFile;     ///< of files that define nothing else, by path
    Dials _byFragment; ///< null for those that are lost
    std::unordered_set<std::string> _lostFiles;
    Names _dials, _aliases;
};

} // namespace openhost
