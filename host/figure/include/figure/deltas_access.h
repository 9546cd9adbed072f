// Morph deltas as geometry deltas.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmorphdeltas.h"
#include "geometry/deltas.h"
#include "geometry/multires_detail.h"

#include <functional>

namespace openhost {

class DeltasAccess {
public:
    /// Reads them now if they are still in their file. Empty, and a warning in the log once, when that fails.
    static const geometry::SparseDeltas& deltas(const DzMorphDeltas& deltas);
    /// @param vertexCount  of the base mesh; 0 when not known
    static DzMorphDeltas* create(geometry::SparseDeltas deltas, int vertexCount);
    static void assign(DzMorphDeltas& target, geometry::SparseDeltas deltas);
    /// Called when the deltas are first needed, and again after unLoadDeltas(). May throw base::Error.
    static void setLoader(DzMorphDeltas& target, std::function<geometry::SparseDeltas()> loader);

    /// What the morph adds to the subdivided mesh. Read now if it is still in its file; empty, and a warning
    /// in the log once, when that fails.
    static const geometry::MultiresDetail& detail(const DzMorphDeltas& deltas);
    static void assignDetail(DzMorphDeltas& target, geometry::MultiresDetail detail);
    /// Called when the detail is first needed, and again after unLoadDeltas(). May throw base::Error.
    static void setDetailLoader(DzMorphDeltas& target, std::function<geometry::MultiresDetail()> loader);
};

} // namespace openhost
