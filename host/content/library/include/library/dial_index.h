// A figure's dials by what files call them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// A name is one dial's on its node only: bones have dials of equal names, and aliases mostly that of what
/// they stand for. Of dials that answer to the same text on a node the first one counts, and aliases come
/// last.
class DialIndex {
public:
    /// @param root  the figure's own node
    explicit DialIndex(const DzNode& root) : _root(root), _ofRoot(_byNode[&root].dials) {}
    DialIndex(const DialIndex&) = delete;
    DialIndex& operator=(const DialIndex&) = delete;

    /// @param file      the file that defines the dial
    /// @param filePath  its decoded path
    /// @param owner     the node that has the dial
    /// @param dial      not owned; must outlive the index
    void add(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath,
             const DzNode& owner, DzNumericProperty& dial);
    /// A dial that could not be made. What names it by its file finds nothing, and not what has its name
    /// elsewhere.
    void lose(const std::string& filePath, const std::string& idOrName);
    /// The same for all of a file that cannot be read.
    void loseFile(const std::string& filePath);

    /// Whether a dial is the one that a file of this decoded path defines under the id or name.
    bool has(const std::string& filePath, const std::string& idOrName) const;

    /// What a text without a file means.
    struct Place {
        const DzNode* node = nullptr; ///< whose dials come first; null where none is named
        /// Is looked for nothing: an alias of the name of its target does not mean itself.
        const DzNumericProperty* asking = nullptr;
    };
    /// The dial that a URI's file and fragment name; without such a file the fragment alone counts, as below.
    /// Null for none.
    DzNumericProperty* find(const dson::Uri& uri, const Place& place) const;
    /// The dial of the place's own node, else of the figure's, else of any node of it, aliases last: by name,
    /// by id, then by either ignoring case.
    DzNumericProperty* find(const std::string& nameOrId, const Place& place) const;

    /// By which dials were found that are spelled otherwise.
    const std::set<std::string>& otherSpellings() const { return _otherSpellings; }

private:
    struct Dial {
        std::size_t number; ///< in the order of adding and losing
        std::string path, id, name;
        DzNumericProperty* dial; ///< null for one that is lost
        bool isAlias;
        bool isAlone; ///< its file defines nothing else
    };
    /// Dials by what they are called, sorted when they are first looked for so: most figures are asked for
    /// their dials in one way alone.
    class Names {
    public:
        void add(const Dial& dial) { _all.push_back(&dial); }
        DzNumericProperty* find(const std::string& nameOrId, const DzNumericProperty* asking) const;
        const Dial* findFolded(const std::string& folded, const DzNumericProperty* asking) const;

    private:
        std::vector<const Dial*> _all;
        mutable std::unordered_map<std::string_view, const Dial*> _byName, _byId;
        mutable std::unordered_map<std::string, const Dial*> _byFoldedText;
        mutable std::size_t _sortedByName = 0, _sortedById = 0, _sortedByFoldedText = 0;
    };
    struct OfNode {
        Names dials, aliases;
    };
    using ByHash = std::unordered_multimap<std::size_t, const Dial*>;

    const Dial* findInFile(const std::string& path, const std::string& idOrName) const;
    DzNumericProperty* findAlone(const std::string& path, const DzNumericProperty* asking) const;
    DzNumericProperty* findOn(const DzNode& node, const std::string& nameOrId, const std::string& folded,
                              const DzNumericProperty* asking) const;

    DzNumericProperty* findExactly(const std::string& nameOrId) const;
    DzNumericProperty* findFolded(const std::string& folded) const;

    const DzNode& _root;
    std::deque<Dial> _all;
    std::unordered_set<std::string> _lostFiles;
    std::unordered_map<const DzNode*, OfNode> _byNode;
    const Names& _ofRoot;
    Names _ofOthers, _aliases; ///< dials of nodes but the root; aliases of all
    mutable std::set<std::string> _otherSpellings;
    mutable ByHash _byFragment, _byFile; ///< of paths and ids or names; of paths, those that are alone
    mutable std::size_t _sortedByFragment = 0, _sortedByFile = 0;
};

} // namespace openhost
