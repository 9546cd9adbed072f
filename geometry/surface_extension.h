// Extending values smoothly over the part of a surface where none are known.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/incidence.h"
#include "geometry/vec3.h"

#include <Eigen/SparseCholesky>

#include <vector>

namespace geometry {

/// The least-bent continuation of known values: the squared graph Laplacian over the unknown vertices and the
/// ring around them is least. Constant values continue as that constant. Factorised once, applied to any
/// number of values.
class SurfaceExtension {
public:
    /// @param isKnown  by vertex; each connected piece holds at least one that is
    SurfaceExtension(const IndexLists& neighbours, const std::vector<bool>& isKnown);

    std::size_t unknownCount() const { return _unknown.size(); }
    base::Span<const std::uint32_t> unknown() const { return _unknown; } ///< in ascending order
    base::Span<const std::uint32_t> ring() const { return _ring; }       ///< the known ones that matter

    /// Replaces the values of the unknown vertices.
    /// @param values  one per vertex
    void extend(std::vector<Vec3f>& values) const;
    void extend(std::vector<float>& values) const;
    /// @param values  one per vertex of the ring
    /// @return        one per unknown vertex
    std::vector<float> continued(const std::vector<float>& values) const;

private:
    /// @param known  rows by vertex of the ring, one column a coordinate
    /// @return       rows by unknown vertex
    Eigen::MatrixXd solve(Eigen::MatrixXd known) const;

    std::vector<std::uint32_t> _unknown;
    Eigen::SparseMatrix<double> _fromKnown; ///< rows by unknown, columns by known vertex of the ring
    std::vector<std::uint32_t> _ring;
    Eigen::SimplicialLDLT<Eigen::SparseMatrix<double>> _solver;
};

} // namespace geometry
