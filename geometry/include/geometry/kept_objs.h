// OBJ files that are read again shortly after they were written.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

#include <memory>

namespace geometry {

/// Writes OBJ files as WriteObj does and keeps in memory what they hold, so that reading one does not parse
/// it. What counts is the file: its bytes are compared, by a fingerprint of 128 bits, with those that were
/// written, and any other file is parsed as ever. Not for several threads at once.
class KeptObjs {
public:
    KeptObjs();
    ~KeptObjs();
    KeptObjs(const KeptObjs&) = delete;
    KeptObjs& operator=(const KeptObjs&) = delete;

    /// WriteObj, with the same file and errors. Of the last few files with a single part the mesh is kept,
    /// unless the text does not say all of it: polylines, for instance, or names with blanks at their ends.
    /// @param topology  of the first part's mesh
    void write(const std::filesystem::path& file, base::Span<const ObjPart> parts,
               const std::shared_ptr<const Topology>& topology, const ObjWriteOptions& options = {});

    /// ReadObj, with the same content, to the bit, and the same errors.
    ObjContent read(const std::filesystem::path& file, const ObjReadOptions& options = {}) const;

    /// Of the read calls so far those that did not parse.
    int recalledCount() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace geometry
