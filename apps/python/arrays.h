// NumPy's arrays and the mesh values of the libraries.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <cstdint>
#include <memory>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

namespace python {

namespace py = pybind11;

using Floats =
    py::array_t<float, py::array::c_style | py::array::forcecast | py::detail::npy_api::NPY_ARRAY_ALIGNED_>;

/// Rows of three numbers that an argument holds. An array of float32, contiguous row by row, is used where it
/// is; other kinds of numbers are converted first.
struct Vectors {
    Floats owner; ///< keeps what the span leads to
    base::Span<const geometry::Vec3f> span;
};

/// @param what  names the argument in errors
/// @throws py::type_error           it holds no numbers
/// @throws geometry::TopologyError  another shape than (n, 3), or a number that is not finite or, in a
///                                  position, beyond geometry::farthestPosition
Vectors ToPositions(const py::handle& value, const char* what);
/// The same for deltas, which may be of any length.
Vectors ToDeltas(const py::handle& value, const char* what);
/// One number a vertex, finite.
Floats ToNumbers(const py::handle& value, const char* what);
/// Of any shape and kind of whole number, none of them negative or beyond 32 bits.
std::vector<std::uint32_t> ToIndices(const py::handle& value, const char* what);

/// A Faces object, an array of shape (f, k), or a sequence of sequences of vertex indices.
/// @throws py::type_error           it is none of these
/// @throws geometry::TopologyError  a face has fewer than three corners, or names a vertex that is not there
std::shared_ptr<const geometry::Topology> ToTopology(const py::handle& value, std::size_t vertexCount,
                                                     const char* what);

/// Arrays that own what is moved into them.
py::array FromVectors(std::vector<geometry::Vec3f> vectors);
py::array FromFloats(std::vector<float> values);

/// What others own, as arrays that keep the owner and may not be written to.
py::array ViewOf(base::Span<const std::uint32_t> values, const py::handle& owner);
py::array ViewOf(base::Span<const geometry::Vec3f> vectors, const py::handle& owner);

} // namespace python
