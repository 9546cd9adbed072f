// Names for new morphs of a figure.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include <QString>

class DzModifier;
class DzMorph;
class DzNode;

namespace openhost {

/// Nothing but blanks and characters that nobody sees.
bool IsBlankName(const QString& name);

/// The same for names that would be taken for each other: letter case and the way accents are written do not
/// count, and no file can hold some characters.
std::string MorphNameKey(const QString& name);

/// Where morphs are saved to.
struct MorphFolder {
    QString contentDirectory, vendor, product;
};

/// What has a name that a new morph is to get.
struct NameConflict {
    DzMorph* morph = nullptr; ///< the figure's, if it is one; borrowed
    QString file;             ///< with its folders, or as content is addressed; empty for none
    bool isOwnFile = false;   ///< a save into the folder would replace just this file
    std::string text() const; ///< a phrase for the user that says so
    std::string name;         ///< as it was asked for
};

class FolderListings;

/// The names that a figure's parts and the files beside them have at the moment, for asking about many.
class TakenNames {
public:
    explicit TakenNames(const DzNode& figure);
    ~TakenNames();
    TakenNames(const TakenNames&) = delete;
    TakenNames& operator=(const TakenNames&) = delete;

    /// Names stay apart on every disk and in every later load; see MorphNameKey().
    /// @param folder  null where the morph is not to be saved
    /// @return nothing where the name is free
    std::optional<NameConflict> findConflict(const QString& name, const MorphFolder* folder) const;
    /// Where a morph of the figure is saved to, whether it is there or not.
    QString fileFor(const QString& name, const MorphFolder& folder) const;

private:
    const DzNode& _figure;
    std::unique_ptr<FolderListings> _listings;
    std::unordered_map<std::string, DzModifier*> _modifiers; ///< by key; the first of several
    std::unordered_set<std::string> _properties;             ///< keys
};

/// The same for one name.
std::optional<NameConflict> FindNameConflict(const DzNode& figure, const QString& name,
                                             const MorphFolder* folder);

} // namespace openhost
