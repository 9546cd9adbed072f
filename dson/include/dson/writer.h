// Writing DSON files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "dson/uri.h"

#include <filesystem>
#include <string_view>

namespace base {
class FileSet;
}

namespace dson {

/// How files are written.
struct WriteOptions {
    /// Has the file's folder, and puts the file in place with all its others. Null: the file is written at
    /// once.
    base::FileSet* set = nullptr;
    bool compress = false;      ///< gzip the whole file
    bool isReplacement = false; ///< of a morph by another: nothing of the file that is there stays
};

/// Writes a file below a content directory, in members' documented order, floats shortest that read back bit
/// for bit. Folders are made; the file is written beside its place and renamed into it.
/// @param contentDirectory  the folder that holds data/, People/, ...
/// @return the path written: contentDirectory followed by info.id, which is decoded text
/// @throws base::IoError      a folder or file cannot be written
/// @throws base::FormatError  info.id leaves the content directory, or a value is not finite
std::filesystem::path WriteFigure(const FigureAsset& figure, const std::filesystem::path& contentDirectory,
                                  const WriteOptions& options = {});
/// Writes a morph or another dial, as WriteFigure does. Unless it is replaced, a file that is there already
/// keeps what it holds beyond what is written here, such as `extra` and formulas.
/// @param detail  bytes of the companion file, which is written beside, under the same name with the ending
///                .dhdm, and named in the morph; none when empty. Neither file changes if one cannot be
///                written.
/// @throws as WriteFigure
std::filesystem::path WriteMorph(const AssetInfo& info, const Modifier& modifier,
                                 const std::filesystem::path& contentDirectory,
                                 const WriteOptions& options = {}, std::string_view detail = {});
/// Writes a file that loads a figure with its dials set, as WriteFigure does.
/// @param figure  the figure that the character instantiates: every bone is listed as an instance
/// @throws as WriteFigure
std::filesystem::path WriteCharacter(const CharacterAsset& character, const FigureAsset& figure,
                                     const std::filesystem::path& contentDirectory,
                                     const WriteOptions& options = {});
/// Writes a D-Former preset, as WriteFigure does.
/// @throws as WriteFigure
std::filesystem::path WriteDForm(const DFormAsset& dform, const std::filesystem::path& contentDirectory,
                                 const WriteOptions& options = {});

} // namespace dson
