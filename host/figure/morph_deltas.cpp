// A morph's displacements, read when needed.
// SPDX-License-Identifier: MIT

#include "dzmorphdeltas.h"

#include "dzvertexmesh.h"
#include "geometry/errors.h"
#include "host/figure/deltas_access.h"
#include "host/figure/mesh_access.h"
#include "host/scene/host_log.h"

#include <algorithm>
#include <cmath>

struct DzMorphDeltas::Impl {
    geometry::SparseDeltas deltas;
    std::function<geometry::SparseDeltas()> loader;
    bool loaded = true;
    bool readable = true; ///< the last try to load succeeded
    int vertexCount = 0;
    DzUri uri;

    geometry::SparseDeltas& get()
    {
        if (!loaded)
            load();
        return deltas;
    }
    void load()
    {
        loaded = true;
        try {
            deltas = loader();
            readable = true;
        } catch (const std::exception& error) {
            readable = false;
            openhost::LogWarning(QStringLiteral("cannot load the deltas of %1: %2")
                                     .arg(uri.toString(), QString::fromUtf8(error.what())));
        }
    }
    std::size_t place(int vertex)
    {
        const std::vector<std::uint32_t>& vertices = get().vertices;
        return static_cast<std::size_t>(
            std::lower_bound(vertices.begin(), vertices.end(), static_cast<std::uint32_t>(vertex)) -
            vertices.begin());
    }
    bool holds(std::size_t at, int vertex)
    {
        return at < deltas.size() && deltas.vertices[at] == static_cast<std::uint32_t>(vertex);
    }
};

DzMorphDeltas::DzMorphDeltas() : _impl(new Impl) {}
DzMorphDeltas::~DzMorphDeltas() = default;

DzMorphDeltas* DzMorphDeltas::calculateDeltas(const DzVertexMesh* source, const DzVertexMesh* target,
                                              float tolerance)
{
    if (!source || !target || source->getNumVertices() != target->getNumVertices())
        return nullptr;
    geometry::SparseDeltas deltas =
        geometry::MakeDeltas(openhost::MeshAccess::mesh(*source).positions,
                             openhost::MeshAccess::mesh(*target).positions, tolerance);
    return deltas.empty() ? nullptr
                          : openhost::DeltasAccess::create(std::move(deltas), source->getNumVertices());
}

int DzMorphDeltas::addDelta(int vertex, const DzVec3& delta, bool)
{
    const geometry::Vec3f value = openhost::FromDz(delta);
    if (vertex < 0 || !geometry::IsFinite(value))
        return -1;
    const std::size_t at = _impl->place(vertex);
    geometry::SparseDeltas& deltas = _impl->deltas;
    if (_impl->holds(at, vertex)) {
        deltas.deltas[at] = value;
    } else {
        deltas.vertices.insert(deltas.vertices.begin() + static_cast<std::ptrdiff_t>(at),
                               std::uint32_t(vertex));
        deltas.deltas.insert(deltas.deltas.begin() + static_cast<std::ptrdiff_t>(at), value);
    }
    emit deltasChanged();
    return static_cast<int>(at);
}

DzError DzMorphDeltas::addDeltas(const DzIntArray& vertices, const DzTArray<DzVec3>& deltas, bool)
{
    if (vertices.size() != deltas.size())
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    std::vector<std::pair<std::uint32_t, geometry::Vec3f>> all;
    const geometry::SparseDeltas& old = _impl->get();
    for (std::size_t i = 0; i < old.size(); ++i)
        all.emplace_back(old.vertices[i], old.deltas[i]);
    for (int i = 0; i < vertices.size(); ++i) {
        const geometry::Vec3f value = openhost::FromDz(deltas[i]);
        if (vertices[i] < 0 || !geometry::IsFinite(value))
            return DZ_ILLEGAL_ARGUMENT_ERROR;
        all.emplace_back(static_cast<std::uint32_t>(vertices[i]), value);
    }
    std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    geometry::SparseDeltas merged;
    for (std::size_t i = 0; i < all.size(); ++i) {
        // Of several for one vertex the last counts.
        if (i + 1 < all.size() && all[i + 1].first == all[i].first)
            continue;
        merged.vertices.push_back(all[i].first);
        merged.deltas.push_back(all[i].second);
    }
    openhost::DeltasAccess::assign(*this, std::move(merged));
    return DZ_NO_ERROR;
}

int DzMorphDeltas::getNumDeltas() const
{
    return static_cast<int>(_impl->get().size());
}

int DzMorphDeltas::getDeltaIndex(int index) const
{
    return index >= 0 && index < getNumDeltas() ? static_cast<int>(_impl->deltas.vertices[std::size_t(index)])
                                                : -1;
}

DzVec3 DzMorphDeltas::getDeltaVec(int index) const
{
    return index >= 0 && index < getNumDeltas() ? openhost::ToDz(_impl->deltas.deltas[std::size_t(index)])
                                                : DzVec3();
}

int DzMorphDeltas::getVertexDeltaIndex(int vertex) const
{
    if (vertex < 0)
        return -1;
    const std::size_t at = _impl->place(vertex);
    return _impl->holds(at, vertex) ? static_cast<int>(at) : -1;
}

DzError DzMorphDeltas::setDelta(int index, const DzVec3& delta)
{
    const geometry::Vec3f value = openhost::FromDz(delta);
    if (index < 0 || index >= getNumDeltas() || !geometry::IsFinite(value))
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    _impl->deltas.deltas[static_cast<std::size_t>(index)] = value;
    emit deltasChanged();
    return DZ_NO_ERROR;
}

DzError DzMorphDeltas::removeVertex(int vertex)
{
    const int index = getVertexDeltaIndex(vertex);
    if (index < 0)
        return DZ_NOT_FOUND_ERROR;
    _impl->deltas.vertices.erase(_impl->deltas.vertices.begin() + index);
    _impl->deltas.deltas.erase(_impl->deltas.deltas.begin() + index);
    emit deltasChanged();
    return DZ_NO_ERROR;
}

void DzMorphDeltas::removeAllDeltas()
{
    openhost::DeltasAccess::assign(*this, geometry::SparseDeltas());
}

int DzMorphDeltas::getTargetVertexCount() const
{
    return _impl->vertexCount;
}
void DzMorphDeltas::setTargetVertexCount(int count)
{
    _impl->vertexCount = std::max(0, count);
}
bool DzMorphDeltas::hasDeltas() const
{
    return getNumDeltas() > 0;
}
bool DzMorphDeltas::areDeltasLoaded() const
{
    return _impl->loaded;
}

bool DzMorphDeltas::loadDeltas()
{
    _impl->get();
    return _impl->readable;
}

void DzMorphDeltas::unLoadDeltas()
{
    if (!_impl->loader)
        return;
    _impl->deltas = geometry::SparseDeltas();
    _impl->loaded = false;
}

DzUri DzMorphDeltas::getUri() const
{
    return _impl->uri;
}
void DzMorphDeltas::setUri(const DzUri& uri)
{
    _impl->uri = uri;
}

namespace openhost {

const geometry::SparseDeltas& DeltasAccess::deltas(const DzMorphDeltas& deltas)
{
    return deltas._impl->get();
}

DzMorphDeltas* DeltasAccess::create(geometry::SparseDeltas deltas, int vertexCount)
{
    auto* const result = new DzMorphDeltas;
    result->_impl->deltas = std::move(deltas);
    result->_impl->vertexCount = vertexCount;
    return result;
}

void DeltasAccess::assign(DzMorphDeltas& target, geometry::SparseDeltas deltas)
{
    target._impl->deltas = std::move(deltas);
    target._impl->loaded = true;
    target._impl->loader = nullptr; // what was read from a file no longer counts
    emit target.deltasChanged();
}

void DeltasAccess::setLoader(DzMorphDeltas& target, std::function<geometry::SparseDeltas()> loader)
{
    target._impl->loader = std::move(loader);
    target._impl->loaded = !target._impl->loader;
    target._impl->deltas = geometry::SparseDeltas();
    emit target.deltasChanged();
}

} // namespace openhost
