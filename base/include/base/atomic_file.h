// Files that appear whole or not at all.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace base {

/// Whether a file has to outlast a loss of power from the moment at which it is in place.
enum class Durability {
    Lasting,  ///< waits for the disk
    Temporary ///< can be made again
};

/// Writes beside the target and renames into place. Without commit() the target stays as it was and the
/// unfinished file is removed. Those that killed writers left in the folder are removed when a program
/// first writes there; what a FileSet's journal there says is done before.
///
/// A target that is a link stays one: the file that it leads to is replaced. A file that is replaced leaves
/// its mode to the new one, and its owner where that is permitted. One that nobody may write is not replaced,
/// and nothing but files ever is.
class AtomicFile {
public:
    /// @throws IoError  the file beside the target cannot be made, or the target cannot be replaced
    explicit AtomicFile(const std::filesystem::path& target, Durability durability = Durability::Lasting);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Appends to what has been written.
    /// @throws IoError  names the file and the system's reason
    void write(std::string_view bytes);
    /// Everything is on disk, under the unfinished name; nothing may be written after it. Called by commit()
    /// unless it has been before.
    /// @throws IoError  as above
    void finish();
    /// Puts the file into its place, over one that is there.
    /// @throws IoError  as above; the target stays as it was
    void commit();
    /// The file stays under its unfinished name: somebody else puts it into place.
    void release() { _isOurs = false; }

    const std::filesystem::path& target() const { return _target; }
    const std::filesystem::path& unfinished() const { return _unfinished; }

private:
    [[noreturn]] void fail(int reason) const;
    void takeOver();

    std::filesystem::path _named, _target; ///< as it was given, and where its links lead
    std::filesystem::path _unfinished;
    Durability _durability;
    std::FILE* _stream = nullptr;
    bool _isOurs = false;
};

/// The whole content at once.
/// @throws IoError  names the file and the system's reason
void WriteFileAtomically(const std::filesystem::path& file, std::string_view content,
                         Durability durability = Durability::Lasting);

/// Whether an AtomicFile may take the place of what is there; for those who want to know before they have
/// something to write.
/// @throws IoError  as AtomicFile's constructor
void CheckReplaceable(const std::filesystem::path& file);
/// That an AtomicFile could be made now: the same, and where nothing is yet, its folder takes new files.
/// @throws IoError  as above
void CheckWritable(const std::filesystem::path& file);

/// Whether a file of the name may be an unfinished one.
bool IsUnfinishedName(const std::string& name);

/// Removes what unfinished files writers that have ended left in the folder; none where a FileSet's journal
/// says that they are to be put in place.
void RemoveUnfinishedFiles(const std::filesystem::path& folder);

/// Waits until the folder's entries are on disk. Systems that cannot do so are no error.
/// @throws IoError  names the folder and the system's reason
void SyncFolder(const std::filesystem::path& folder);

} // namespace base
