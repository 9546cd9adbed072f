// Finding files of content libraries on disk.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Knows the host's content directories that exist on disk, in the host's order, as they were when it was
/// made.
class KsPathResolver {
public:
    /// @throws kst::Exception  "failed to get Daz Studio content manager"
    KsPathResolver();

    /// The file in the first directory that holds it, directly or among the directory's cloud files.
    /// @param cloudId       the product's number in the cloud folder; empty to look at plain files only
    /// @param relativePath  below a content directory, without a leading "/"
    /// @param out           receives the result too
    /// @return the absolute path; empty when no directory holds the file
    std::string resolve(std::string_view cloudId, std::string_view relativePath, std::string& out) const;

private:
    std::vector<std::string> _directories; ///< each ends in "/"
};
