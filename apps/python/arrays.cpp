// NumPy's arrays and the mesh values of the libraries.
// SPDX-License-Identifier: MIT

#include "arrays.h"

#include "base/counted.h"
#include "faces.h"
#include "geometry/errors.h"
#include "geometry/limits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include <fmt/format.h>

namespace python {

namespace {

using geometry::Topology;
using geometry::TopologyError;
using geometry::Vec3f;

constexpr std::size_t mostEntries = std::numeric_limits<std::uint32_t>::max();

/// @param kinds  of NumPy's types, a letter each
py::array ToArray(const py::handle& value, const char* what, const char* kinds, const char* wanted)
{
    const py::array array = py::array::ensure(value);
    if (!array) {
        PyErr_Clear();
        throw py::type_error(fmt::format("{} cannot be made an array", what));
    }
    // What a mask hides would come out as if it counted.
    if (py::hasattr(value, "mask") && py::module_::import("numpy.ma").attr("is_masked")(value).cast<bool>())
        throw py::type_error(fmt::format("{} has numbers that are masked", what));
    // An empty list has the type of floating-point numbers, and holds none.
    if (array.size() > 0 && std::string(kinds).find(array.dtype().kind()) == std::string::npos)
        throw py::type_error(fmt::format("{} holds no {}", what, wanted));
    return array;
}

Floats ToFloats(const py::array& array, const char* what)
{
    Floats floats = Floats::ensure(array);
    if (!floats)
        throw py::error_already_set();
    const float* const begin = floats.data();
    const float* const end = begin + floats.size();
    const float* const bad = std::find_if_not(begin, end, [](float value) { return std::isfinite(value); });
    const py::ssize_t width = floats.ndim() == 2 ? std::max<py::ssize_t>(floats.shape(1), 1) : 1;
    if (bad != end)
        throw TopologyError("{}: row {} has a number that is not finite in single precision", what,
                            (bad - begin) / width);
    return floats;
}

std::string ShapeOf(const py::array& array)
{
    std::string text;
    for (py::ssize_t i = 0; i < array.ndim(); ++i)
        text += fmt::format("{}{}", i == 0 ? "" : ", ", array.shape(i));
    return "(" + text + (array.ndim() == 1 ? ",)" : ")");
}

const char* const numberKinds = "fiu";

Vectors ToVectors(const py::handle& value, const char* what)
{
    const py::array array = ToArray(value, what, numberKinds, "real numbers");
    if (array.ndim() != 2 || array.shape(1) != 3)
        throw TopologyError("{}: has the shape {}, not (n, 3)", what, ShapeOf(array));
    const auto rows = static_cast<std::size_t>(array.shape(0));
    if (rows > mostEntries)
        throw TopologyError("{}: has {} rows, of {} at most", what, rows, mostEntries);
    Vectors vectors{ToFloats(array, what), {}};
    static_assert(sizeof(Vec3f) == 3 * sizeof(float), "an array of rows is an array of vectors");
    vectors.span = {reinterpret_cast<const Vec3f*>(vectors.owner.data()), rows};
    return vectors;
}

std::uint32_t ToIndex(long long value, const char* what)
{
    if (value < 0 || static_cast<unsigned long long>(value) > mostEntries)
        throw TopologyError("{}: has the index {}, which names nothing", what, value);
    return static_cast<std::uint32_t>(value);
}

void AddFaces(const py::array& array, const char* what, Topology& topology)
{
    if (array.ndim() != 2)
        throw TopologyError("{}: has the shape {}, not (f, k)", what, ShapeOf(array));
    topology.cornerVertices = ToIndices(array, what);
    const auto corners = static_cast<std::size_t>(array.shape(1));
    if (topology.cornerVertices.size() > mostEntries)
        throw TopologyError("{}: has {} corners, of {} at most", what, topology.cornerVertices.size(),
                            mostEntries);
    for (py::ssize_t f = 0; f < array.shape(0); ++f)
        topology.faceOffsets.push_back(
            static_cast<std::uint32_t>((static_cast<std::size_t>(f) + 1) * corners));
}

void AddFaces(const py::sequence& faces, const char* what, Topology& topology)
{
    std::vector<std::uint32_t> corners;
    for (const py::handle face : faces) {
        corners.clear();
        for (const py::handle corner : face) {
            const py::object index = py::reinterpret_steal<py::object>(PyNumber_Index(corner.ptr()));
            if (!index)
                throw py::error_already_set();
            const long long value = PyLong_AsLongLong(index.ptr());
            if (value == -1 && PyErr_Occurred()) {
                PyErr_Clear();
                throw TopologyError("{}: has an index that names nothing", what);
            }
            corners.push_back(ToIndex(value, what));
        }
        topology.addFace(corners);
    }
}

template <class T>
py::array Own(std::vector<T> values, std::vector<py::ssize_t> shape)
{
    auto* const kept = new std::vector<T>(std::move(values));
    const py::capsule owner(kept, [](void* p) { delete static_cast<std::vector<T>*>(p); });
    return py::array_t<float>(std::move(shape), reinterpret_cast<const float*>(kept->data()), owner);
}

template <class T>
py::array ReadOnly(std::vector<py::ssize_t> shape, const T* data, const py::handle& owner)
{
    py::array_t<T> view(std::move(shape), data, owner);
    view.attr("flags").attr("writeable") = false;
    return std::move(view);
}

} // namespace

Vectors ToPositions(const py::handle& value, const char* what)
{
    Vectors positions = ToVectors(value, what);
    const auto isFar = [](const Vec3f& p) {
        return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) > geometry::farthestPosition;
    };
    const auto far = std::find_if(positions.span.begin(), positions.span.end(), isFar);
    if (far != positions.span.end())
        throw TopologyError("{}: row {} lies farther than {:g} cm from the origin", what,
                            far - positions.span.begin(), geometry::farthestPosition);
    return positions;
}

Vectors ToDeltas(const py::handle& value, const char* what)
{
    return ToVectors(value, what);
}

Floats ToNumbers(const py::handle& value, const char* what)
{
    const py::array array = ToArray(value, what, numberKinds, "real numbers");
    if (array.ndim() != 1)
        throw TopologyError("{}: has the shape {}, not (n,)", what, ShapeOf(array));
    return ToFloats(array, what);
}

std::vector<std::uint32_t> ToIndices(const py::handle& value, const char* what)
{
    const py::array array = ToArray(value, what, "iu", "whole numbers");
    const auto whole = py::array_t<std::int64_t, py::array::c_style | py::array::forcecast>::ensure(array);
    if (!whole)
        throw py::error_already_set();
    std::vector<std::uint32_t> indices(static_cast<std::size_t>(whole.size()));
    std::transform(whole.data(), whole.data() + whole.size(), indices.begin(),
                   [&](std::int64_t index) { return ToIndex(index, what); });
    return indices;
}

std::shared_ptr<const Topology> ToTopology(const py::handle& value, std::size_t vertexCount, const char* what)
{
    if (py::isinstance<Faces>(value)) {
        const auto& known = value.cast<const Faces&>().topology;
        if (known->vertexCount == vertexCount)
            return known;
        throw TopologyError("{}: are for {} but {} given", what, base::CountedVertices(known->vertexCount),
                            base::Counted(vertexCount, "is", "are"));
    }
    Topology topology;
    topology.vertexCount = static_cast<std::uint32_t>(vertexCount);
    if (py::isinstance<py::array>(value))
        AddFaces(value.cast<py::array>(), what, topology);
    else if (py::isinstance<py::sequence>(value) && !py::isinstance<py::str>(value))
        AddFaces(value.cast<py::sequence>(), what, topology);
    else
        throw py::type_error(fmt::format("{} is neither Faces, an array nor a list of lists", what));
    try {
        geometry::Validate(topology);
    } catch (const TopologyError& error) {
        throw TopologyError("{}: {}", what, error.what());
    }
    return std::make_shared<const Topology>(std::move(topology));
}

py::array FromVectors(std::vector<Vec3f> vectors)
{
    const auto rows = static_cast<py::ssize_t>(vectors.size());
    return Own(std::move(vectors), {rows, 3});
}

py::array FromFloats(std::vector<float> values)
{
    const auto rows = static_cast<py::ssize_t>(values.size());
    return Own(std::move(values), {rows});
}

py::array ViewOf(base::Span<const std::uint32_t> values, const py::handle& owner)
{
    return ReadOnly({static_cast<py::ssize_t>(values.size())}, values.data(), owner);
}

py::array ViewOf(base::Span<const Vec3f> vectors, const py::handle& owner)
{
    return ReadOnly({static_cast<py::ssize_t>(vectors.size()), py::ssize_t{3}},
                    reinterpret_cast<const float*>(vectors.data()), owner);
}

} // namespace python
