// Making a library figure from plain files.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace content {

struct MakeFigureOptions {
    std::string kind;               ///< keyword, such as "genesis8female"
    std::filesystem::path mesh;     ///< OBJ of the neutral shape, cm
    std::filesystem::path skeleton; ///< JSON
    std::string joints; ///< the skeleton's set of positions; empty chooses by kind, or the only one
    std::filesystem::path weights;                                     ///< JSON, may be gzip
    std::vector<std::pair<std::string, std::filesystem::path>> morphs; ///< name and OBJ or CSV, may be gzip
    std::vector<std::pair<std::string, std::filesystem::path>> weightMaps; ///< name and CSV, may be gzip
    std::filesystem::path contentDirectory; ///< the content directory to write into
};

/// What was made, for the caller's report.
struct MadeFigure {
    std::string label;
    std::size_t vertexCount = 0, boneCount = 0, morphCount = 0;
    std::string joints;            ///< the set of positions that was used
    base::Diagnostics diagnostics; ///< what of the mesh was left out
};

/// Writes a figure of a kind under the kind's own asset URI, its morphs below it, and the files that load it.
/// A figure of the newest kind gets the dials that every one has, without effect where none is given, and of
/// a weight map called "head" the head-split preset. All input is read and checked before the first file is
/// written, and all files are put in place together.
/// @throws base::IoError      a file cannot be read or written
/// @throws base::FormatError  a file's content is wrong; the text names the file and the place
MadeFigure MakeFigure(const MakeFigureOptions& options);

} // namespace content
