// What is to be put in place when a program was stopped, in a file that says so.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace base {

/// An unfinished file and what it becomes, by name. The identities are those that the files of these names
/// had when it was decided: a list that somebody put there knows none, and what has been changed since is not
/// to be replaced.
struct Renaming {
    std::string from, to, fromIdentity, toIdentity;
};

struct Removal {
    std::string name, identity;
};

/// What changes in one folder.
struct FolderPlan {
    std::string folder = "."; ///< below the root of all, without links
    std::vector<Renaming> renames;
    std::vector<Removal> removals;

    bool isEmpty() const { return renames.empty() && removals.empty(); }
};

/// Lies in the first folder of those that change together, and is the decision that they do. With several,
/// each of the others has a pointer to it, which has the same id; before there are any, a draft lies in its
/// place, so that whoever comes to one of them knows all that is to be taken back.
struct Journal {
    std::string id; ///< empty for a single folder, which is its own root
    bool isDecided = true;
    std::vector<FolderPlan> folders; ///< of a draft, by name alone
};

/// Lies in a folder that changes together with others. Without the journal it means nothing.
struct JournalPointer {
    std::string id;
    std::string folder, home; ///< below the root of all: where this lies, and the journal
};

std::string ToText(const Journal& journal);
std::string ToText(const JournalPointer& pointer);

/// Nothing where there is none, or nothing whole. What somebody else calls so, a pipe that nobody writes into
/// or a folder, is none.
/// @throws IoError  it cannot be read
std::optional<Journal> JournalIn(const std::filesystem::path& folder);
std::optional<JournalPointer> PointerIn(const std::filesystem::path& folder);

/// Whether a file of the name is there, whatever it holds.
/// @throws IoError  nobody can tell
bool HasJournalFile(const std::filesystem::path& folder);

/// The folder below which the given one is called so.
/// @param folder  without links
/// @return empty if it is called otherwise
std::filesystem::path RootAbove(const std::filesystem::path& folder, const std::string& below);

} // namespace base
