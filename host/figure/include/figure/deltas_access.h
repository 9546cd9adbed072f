// Morph deltas as geometry deltas.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "dzmorphdeltas.h"
#include "geometry/deltas.h"
#include "geometry/multires_detail.h"

#include <functional>

class DzMorph;

namespace openhost {

class DeltasAccess {
public:
    /// Called when the value is first needed, and again after unLoadDeltas(). May throw.
    /// @param lost  receives what of the shape could not be had; it is reported as well
    template <class T>
    using Loader = std::function<T(base::Diagnostics& lost)>;

    /// Reads them now if they are still in their file. Empty, and reported once, when that fails.
    static const geometry::SparseDeltas& deltas(const DzMorphDeltas& deltas);
    /// @param vertexCount  of the base mesh; 0 when not known
    static DzMorphDeltas* create(geometry::SparseDeltas deltas, int vertexCount);
    static void assign(DzMorphDeltas& target, geometry::SparseDeltas deltas, base::Diagnostics lost = {});
    static void setLoader(DzMorphDeltas& target, Loader<geometry::SparseDeltas> loader);
    /// What of them could not be had; they are read for that. Empty when they are whole.
    static const base::Diagnostics& lostDeltas(const DzMorphDeltas& deltas);

    /// Whose they are, so that what is done to them is recorded with the morph's other changes.
    static void setWorn(DzMorphDeltas& target, DzMorph& wearer, bool isWorn);
    /// What is read of both takes in memory.
    static std::size_t bytes(const DzMorphDeltas& deltas);

    /// What the morph adds to the subdivided mesh. Read now if it is still in its file; empty, and reported
    /// once, when that fails.
    static const geometry::MultiresDetail& detail(const DzMorphDeltas& deltas);
    static void assignDetail(DzMorphDeltas& target, geometry::MultiresDetail detail);
    static void setDetailLoader(DzMorphDeltas& target, Loader<geometry::MultiresDetail> loader);
    /// What of it could not be had; it is read for that.
    static const base::Diagnostics& lostDetail(const DzMorphDeltas& deltas);
};

} // namespace openhost
