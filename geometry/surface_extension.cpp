// Assembling and factorising the bi-Laplacian over the unknown vertices.
// SPDX-License-Identifier: MIT

#include "surface_extension.h"

#include "base/counted.h"
#include "geometry/errors.h"
#include "geometry/transform.h"

#include <algorithm>

namespace geometry {

namespace {

/// Beyond this many unknowns the bi-Laplacian's factor outgrows the memory; the plain Laplacian's does not.
constexpr std::size_t bendingLimit = 200000;

constexpr std::uint32_t none = UINT32_MAX;

} // namespace

SurfaceExtension::SurfaceExtension(const IndexLists& neighbours, const std::vector<bool>& isKnown)
{
    using Triplet = Eigen::Triplet<double>;
    std::vector<std::uint32_t> unknownSlot(isKnown.size(), none), ringSlot(isKnown.size(), none);
    for (std::size_t v = 0; v < isKnown.size(); ++v)
        if (!isKnown[v]) {
            unknownSlot[v] = static_cast<std::uint32_t>(_unknown.size());
            _unknown.push_back(static_cast<std::uint32_t>(v));
        }
    if (_unknown.empty())
        return;
    const bool bends = _unknown.size() <= bendingLimit;

    // Equations: the Laplacian at each unknown vertex and, for bending, at each known one beside it.
    std::vector<std::uint32_t> equations = _unknown;
    if (bends) {
        std::vector<bool> isListed(isKnown.size());
        for (const std::uint32_t v : _unknown)
            for (const std::uint32_t w : neighbours[v])
                if (isKnown[w] && !isListed[w]) {
                    isListed[w] = true;
                    equations.push_back(w);
                }
    }

    std::vector<Triplet> unknownPart, knownPart;
    const auto put = [&](std::size_t row, std::uint32_t v, double weight) {
        if (unknownSlot[v] != none) {
            unknownPart.emplace_back(static_cast<int>(row), static_cast<int>(unknownSlot[v]), weight);
            return;
        }
        if (ringSlot[v] == none) {
            ringSlot[v] = static_cast<std::uint32_t>(_ring.size());
            _ring.push_back(v);
        }
        knownPart.emplace_back(static_cast<int>(row), static_cast<int>(ringSlot[v]), weight);
    };
    for (std::size_t row = 0; row < equations.size(); ++row) {
        const std::uint32_t v = equations[row];
        // Symmetric without the division, as the plain Laplacian is factorised directly.
        const double degree = static_cast<double>(neighbours[v].size());
        put(row, v, bends ? 1.0 : degree);
        for (const std::uint32_t w : neighbours[v])
            put(row, w, bends ? -1.0 / degree : -1.0);
    }

    const auto rows = static_cast<Eigen::Index>(equations.size());
    Eigen::SparseMatrix<double> unknowns(rows, static_cast<Eigen::Index>(_unknown.size()));
    Eigen::SparseMatrix<double> knowns(rows, static_cast<Eigen::Index>(_ring.size()));
    unknowns.setFromTriplets(unknownPart.begin(), unknownPart.end());
    knowns.setFromTriplets(knownPart.begin(), knownPart.end());
    if (bends) {
        _fromKnown = -(unknowns.transpose() * knowns);
        _solver.compute(Eigen::SparseMatrix<double>(unknowns.transpose() * unknowns));
    } else {
        _fromKnown = -knowns;
        _solver.compute(unknowns);
    }
    if (_solver.info() != Eigen::Success)
        throw TopologyError("the values of {} cannot be extended", base::CountedVertices(_unknown.size()));
}

Eigen::MatrixXd SurfaceExtension::solve(Eigen::MatrixXd known) const
{
    // Relative to one known value: what is constant then comes out exactly so.
    const Eigen::RowVectorXd base = known.row(0);
    known.rowwise() -= base;
    Eigen::MatrixXd solved = _solver.solve(_fromKnown * known);
    solved.rowwise() += base;
    return solved;
}

void SurfaceExtension::extend(std::vector<Vec3f>& values) const
{
    if (_unknown.empty())
        return;
    Eigen::MatrixXd known(static_cast<Eigen::Index>(_ring.size()), 3);
    for (std::size_t i = 0; i < _ring.size(); ++i)
        known.row(static_cast<Eigen::Index>(i)) = ToEigen(values[_ring[i]]).transpose();
    const Eigen::MatrixXd solved = solve(std::move(known));
    for (std::size_t i = 0; i < _unknown.size(); ++i)
        values[_unknown[i]] = FromEigen(solved.row(static_cast<Eigen::Index>(i)));
}

void SurfaceExtension::extend(std::vector<float>& values) const
{
    std::vector<float> known(_ring.size());
    for (std::size_t i = 0; i < _ring.size(); ++i)
        known[i] = values[_ring[i]];
    const std::vector<float> found = continued(known);
    for (std::size_t i = 0; i < _unknown.size(); ++i)
        values[_unknown[i]] = found[i];
}

std::vector<float> SurfaceExtension::continued(const std::vector<float>& values) const
{
    std::vector<float> found(_unknown.size());
    if (_unknown.empty())
        return found;
    // As a rule the ring is far from where a joint has its weights.
    if (std::equal(values.begin() + 1, values.end(), values.begin())) {
        std::fill(found.begin(), found.end(), values.front());
        return found;
    }
    Eigen::MatrixXd known(static_cast<Eigen::Index>(values.size()), 1);
    for (std::size_t i = 0; i < values.size(); ++i)
        known(static_cast<Eigen::Index>(i), 0) = double(values[i]);
    const Eigen::MatrixXd solved = solve(std::move(known));
    for (std::size_t i = 0; i < found.size(); ++i)
        found[i] = static_cast<float>(solved(static_cast<Eigen::Index>(i), 0));
    return found;
}

} // namespace geometry
