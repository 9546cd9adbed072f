// Meshes and face groups.
// SPDX-License-Identifier: MIT

#include "dzfacegroup.h"
#include "dzfacetmesh.h"
#include "figure/mesh_access.h"

#include <algorithm>
#include <cmath>

using geometry::Topology;

DzGeometry::DzGeometry() = default;
DzGeometry::~DzGeometry() = default;

struct DzVertexMesh::Impl {
    geometry::PolygonMesh mesh;
    int editing = 0;

    /// A topology that no other mesh shares.
    Topology& ownTopology()
    {
        auto copy = mesh.topology.use_count() == 1 ? std::const_pointer_cast<Topology>(mesh.topology)
                                                   : std::make_shared<Topology>(*mesh.topology);
        mesh.topology = copy;
        return *copy;
    }
    void setVertexCount(std::size_t count)
    {
        mesh.positions.resize(count);
        ownTopology().vertexCount = static_cast<std::uint32_t>(count);
    }
};

DzVertexMesh::DzVertexMesh() : _impl(new Impl) {}
DzVertexMesh::~DzVertexMesh() = default;

int DzVertexMesh::getNumVertices() const
{
    return static_cast<int>(_impl->mesh.positions.size());
}

DzVec3 DzVertexMesh::getVertex(int index) const
{
    return openhost::ToDz(_impl->mesh.positions.at(static_cast<std::size_t>(index)));
}

void DzVertexMesh::setVertex(int index, const DzVec3& position)
{
    _impl->mesh.positions.at(static_cast<std::size_t>(index)) = openhost::FromDz(position);
    if (_impl->editing == 0)
        emit verticesChanged();
}

const DzPnt3* DzVertexMesh::getVerticesPtr() const
{
    return reinterpret_cast<const DzPnt3*>(_impl->mesh.positions.data());
}

int DzVertexMesh::addVertex(float x, float y, float z)
{
    _impl->setVertexCount(_impl->mesh.positions.size() + 1);
    _impl->mesh.positions.back() = {x, y, z};
    topologyEdited();
    return getNumVertices() - 1;
}

DzError DzVertexMesh::preSizeVertexArray(int count)
{
    if (count < 0)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    _impl->mesh.positions.reserve(static_cast<std::size_t>(count));
    return DZ_NO_ERROR;
}

void DzVertexMesh::setVertexArray(int count)
{
    if (count < 0)
        return;
    _impl->setVertexCount(static_cast<std::size_t>(count));
    topologyEdited();
}

DzBox3 DzVertexMesh::getBoundingBox() const
{
    const geometry::Box3f box = geometry::BoundingBox(_impl->mesh.positions);
    return box.isEmpty() ? DzBox3() : DzBox3(openhost::ToDz(box.min), openhost::ToDz(box.max));
}

void DzVertexMesh::beginEdit()
{
    ++_impl->editing;
}

void DzVertexMesh::finishEdit()
{
    if (_impl->editing == 0 || --_impl->editing > 0)
        return;
    emit topologyChanged();
    emit verticesChanged();
}

void DzVertexMesh::cancelEdit()
{
    finishEdit();
}

void DzVertexMesh::topologyEdited()
{
    if (_impl->editing == 0)
        emit topologyChanged();
}

DzGeometry* DzVertexMesh::makeCopy(bool, bool) const
{
    auto* const copy = new DzVertexMesh;
    copy->_impl->mesh = _impl->mesh;
    return copy;
}

struct DzFacetMesh::FacetImpl {
    std::vector<DzFacet> facets; ///< made when first asked for, like the groups
    bool facetsStale = true;
    std::vector<std::unique_ptr<DzFaceGroup>> groups;
    std::vector<std::unique_ptr<DzMaterialFaceGroup>> materials;
    bool groupsStale = true;
    int activeGroup = -1;
    int activeMaterial = -1;
    bool subdivides = false;
    SubDEdgeInterpolation edgeInterpolation = SharpEdges;
    int level = 0;
    std::shared_ptr<const openhost::MeshExtras> extras;
};

DzFacetMesh::DzFacetMesh() : _facets(new FacetImpl) {}
DzFacetMesh::~DzFacetMesh() = default;

int DzFacetMesh::getNumFacets() const
{
    buildFacets();
    return static_cast<int>(_facets->facets.size());
}

const DzFacet* DzFacetMesh::getFacetsPtr() const
{
    buildFacets();
    return _facets->facets.data();
}

DzFacet DzFacetMesh::getFacet(int index) const
{
    buildFacets();
    return _facets->facets.at(static_cast<std::size_t>(index));
}

int DzFacetMesh::getNumPolygons() const
{
    return static_cast<int>(_impl->mesh.faceCount());
}

// Polygons of more than four corners become a fan of quads and at most one triangle around the first corner.
void DzFacetMesh::buildFacets() const
{
    if (!_facets->facetsStale)
        return;
    _facets->facetsStale = false;
    _facets->facets.clear();
    const Topology& topology = *_impl->mesh.topology;
    const std::vector<std::uint32_t> none;
    const std::vector<std::uint32_t>& uvs = _facets->extras ? _facets->extras->texCoords.cornerIndices : none;
    const auto uvOf = [&](std::size_t face, std::size_t corner) {
        return uvs.empty() ? -1 : int(uvs[topology.faceOffsets[face] + corner]);
    };
    _facets->facets.reserve(topology.faceCount());
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        const base::Span<const std::uint32_t> corners = topology.face(f);
        for (std::size_t i = 1; i + 1 < corners.size(); i += 2) {
            DzFacet facet = {{int(corners[0]), int(corners[i]), int(corners[i + 1]), -1},
                             {uvOf(f, 0), uvOf(f, i), uvOf(f, i + 1), -1},
                             -1,
                             -1,
                             int(f)};
            if (i + 2 < corners.size()) {
                facet.m_vertIdx[3] = int(corners[i + 2]);
                facet.m_uvwIdx[3] = uvOf(f, i + 2);
            }
            facet.m_faceGroup = topology.faceGroups.empty() ? -1 : int(topology.faceGroups[f]);
            facet.m_materialGroup = topology.faceSurfaces.empty() ? -1 : int(topology.faceSurfaces[f]);
            _facets->facets.push_back(facet);
        }
    }
}

bool DzFacetMesh::addFacet(const int* vertIdx, const int*)
{
    const int count = vertIdx[3] < 0 ? 3 : 4;
    std::vector<std::uint32_t> corners;
    for (int i = 0; i < count; ++i) {
        if (vertIdx[i] < 0 || vertIdx[i] >= getNumVertices())
            return false;
        corners.push_back(static_cast<std::uint32_t>(vertIdx[i]));
    }
    Topology& topology = _impl->ownTopology();
    topology.addFace(corners);
    if (_facets->activeGroup >= 0)
        topology.faceGroups.push_back(static_cast<std::uint32_t>(_facets->activeGroup));
    if (_facets->activeMaterial >= 0)
        topology.faceSurfaces.push_back(static_cast<std::uint32_t>(_facets->activeMaterial));
    topologyEdited();
    return true;
}

bool DzFacetMesh::addFacet(const DzFacet& facet)
{
    return addFacet(facet.m_vertIdx, facet.m_uvwIdx);
}

namespace {

// Facets added before any group was active belong to the first one, since each facet has exactly one.
int Activate(const std::string& name, std::size_t faceCount, std::vector<std::string>& names,
             std::vector<std::uint32_t>& members)
{
    if (members.empty())
        members.assign(faceCount, 0);
    const auto found = std::find(names.begin(), names.end(), name);
    if (found != names.end())
        return static_cast<int>(found - names.begin());
    names.push_back(name);
    return static_cast<int>(names.size()) - 1;
}

} // namespace

void DzFacetMesh::activateFaceGroup(const QString& name)
{
    Topology& topology = _impl->ownTopology();
    _facets->activeGroup =
        Activate(name.toStdString(), topology.faceCount(), topology.groupNames, topology.faceGroups);
    topologyEdited();
}

void DzFacetMesh::activateMaterial(const QString& name)
{
    Topology& topology = _impl->ownTopology();
    _facets->activeMaterial =
        Activate(name.toStdString(), topology.faceCount(), topology.surfaceNames, topology.faceSurfaces);
    topologyEdited();
}

namespace {

template <class Group>
std::vector<std::vector<int>> FillGroups(const std::vector<std::string>& names,
                                         const std::vector<std::uint32_t>& members,
                                         std::vector<std::unique_ptr<Group>>& groups)
{
    groups.clear();
    for (const std::string& name : names)
        groups.push_back(std::make_unique<Group>(QString::fromStdString(name)));
    std::vector<std::vector<int>> indices(names.size());
    for (std::size_t f = 0; f < members.size(); ++f)
        indices[members[f]].push_back(static_cast<int>(f));
    return indices;
}

} // namespace

void DzFacetMesh::buildGroups() const
{
    if (!_facets->groupsStale)
        return;
    _facets->groupsStale = false;
    const Topology& topology = *_impl->mesh.topology;
    auto members = FillGroups(topology.groupNames, topology.faceGroups, _facets->groups);
    for (std::size_t i = 0; i < members.size(); ++i)
        _facets->groups[i]->_indices = std::move(members[i]);
    members = FillGroups(topology.surfaceNames, topology.faceSurfaces, _facets->materials);
    for (std::size_t i = 0; i < members.size(); ++i)
        _facets->materials[i]->_indices = std::move(members[i]);
}

int DzFacetMesh::getNumFaceGroups() const
{
    buildGroups();
    return static_cast<int>(_facets->groups.size());
}

DzFaceGroup* DzFacetMesh::getFaceGroup(int index) const
{
    return index >= 0 && index < getNumFaceGroups() ? _facets->groups[static_cast<std::size_t>(index)].get()
                                                    : nullptr;
}

DzFaceGroup* DzFacetMesh::findFaceGroup(const QString& name) const
{
    buildGroups();
    for (const auto& group : _facets->groups) {
        if (group->getName() == name)
            return group.get();
    }
    return nullptr;
}

int DzFacetMesh::getNumMaterialGroups() const
{
    buildGroups();
    return static_cast<int>(_facets->materials.size());
}

DzMaterialFaceGroup* DzFacetMesh::getMaterialGroup(int index) const
{
    return index >= 0 && index < getNumMaterialGroups()
               ? _facets->materials[static_cast<std::size_t>(index)].get()
               : nullptr;
}

bool DzFacetMesh::isSubDivisionEnabled() const
{
    return _facets->subdivides;
}
void DzFacetMesh::enableSubDivision(bool onOff)
{
    _facets->subdivides = onOff;
}
DzFacetMesh::SubDEdgeInterpolation DzFacetMesh::getSubDEdgeInterpolation() const
{
    return _facets->edgeInterpolation;
}

void DzFacetMesh::setSubDEdgeInterpolation(SubDEdgeInterpolation interpolation)
{
    if (interpolation == _facets->edgeInterpolation)
        return;
    _facets->edgeInterpolation = interpolation;
    DzVertexMesh::topologyEdited(); // its faces stay as they are, and so does what belongs to them
}

int DzFacetMesh::getCurrentSubDivisionLevel() const
{
    return _facets->level;
}

void DzFacetMesh::topologyEdited()
{
    _facets->extras.reset();
    _facets->facetsStale = true;
    _facets->groupsStale = true;
    DzVertexMesh::topologyEdited();
}

DzGeometry* DzFacetMesh::makeCopy(bool, bool) const
{
    DzFacetMesh* const copy = openhost::MeshAccess::create(_impl->mesh, _facets->level);
    copy->_facets->subdivides = _facets->subdivides;
    copy->_facets->edgeInterpolation = _facets->edgeInterpolation;
    copy->_facets->extras = _facets->extras;
    return copy;
}

namespace openhost {

const geometry::PolygonMesh& MeshAccess::mesh(const DzVertexMesh& mesh)
{
    return mesh._impl->mesh;
}

DzFacetMesh* MeshAccess::create(geometry::PolygonMesh mesh, int subdivisionLevel)
{
    auto* const result = new DzFacetMesh;
    assign(*result, std::move(mesh), subdivisionLevel);
    return result;
}

void MeshAccess::assign(DzFacetMesh& target, geometry::PolygonMesh mesh, int subdivisionLevel)
{
    const bool sameTopology = target._impl->mesh.topology == mesh.topology;
    target._impl->mesh = std::move(mesh);
    target._facets->level = subdivisionLevel;
    if (!sameTopology)
        target.topologyEdited();
    emit target.verticesChanged();
}

const MeshExtras* MeshAccess::extras(const DzFacetMesh& mesh)
{
    return mesh._facets->extras.get();
}

void MeshAccess::setExtras(DzFacetMesh& mesh, std::shared_ptr<const MeshExtras> extras)
{
    mesh._facets->extras = std::move(extras);
    mesh._facets->facetsStale = true;
}

geometry::BoundaryRule MeshAccess::boundaryRule(const DzFacetMesh& mesh)
{
    switch (mesh.getSubDEdgeInterpolation()) {
    case DzFacetMesh::SoftCornersEdges:
        return geometry::BoundaryRule::None;
    case DzFacetMesh::SharpCornersEdges:
        return geometry::BoundaryRule::EdgeAndCorner;
    default:
        return geometry::BoundaryRule::EdgeOnly;
    }
}

} // namespace openhost
