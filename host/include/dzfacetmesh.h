// Geometry with facets.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzvertexmesh.h"

class DzFaceGroup;
class DzMaterialFaceGroup;

/// Up to four corners; a triangle's fourth vertex index is -1. Larger polygons are several facets in a row.
struct DzFacet {
    int m_vertIdx[4];
    int m_uvwIdx[4];
    int m_faceGroup;     ///< -1 for none
    int m_materialGroup; ///< -1 for none
    int m_ngon;          ///< index of the polygon that the facet is part of
};

class DzFacetMesh : public DzVertexMesh {
    Q_OBJECT
    Q_ENUMS(SubDAlgorithm)
    Q_ENUMS(SubDEdgeInterpolation)
public:
    enum SubDAlgorithm { Catmark, Bilinear, Loop, DzCatmullClark };
    enum SubDEdgeInterpolation { SoftCornersEdges, SharpCornersEdges, SharpEdges };

    DzFacetMesh();
    ~DzFacetMesh();

    int getNumFacets() const;
    const DzFacet* getFacetsPtr() const;
    DzFacet getFacet(int index) const;
    /// Polygons before they are split into facets.
    int getNumPolygons() const;

    /// Appends a facet to the active face group and material. False when an index is out of range.
    bool addFacet(const int* vertIdx, const int* uvIdx = 0);
    bool addFacet(const DzFacet& facet);
    /// Facets added later belong to it; made if missing.
    void activateFaceGroup(const QString& name);
    void activateMaterial(const QString& name);

    int getNumFaceGroups() const;
    DzFaceGroup* getFaceGroup(int index) const;
    DzFaceGroup* findFaceGroup(const QString& name) const;
    int getNumMaterialGroups() const;
    DzMaterialFaceGroup* getMaterialGroup(int index) const;

    /// Whether a shape made of this mesh is a subdivision surface.
    bool isSubDivisionEnabled() const;
    void enableSubDivision(bool onOff);
    SubDEdgeInterpolation getSubDEdgeInterpolation() const;
    void setSubDEdgeInterpolation(SubDEdgeInterpolation interpolation);
    /// Of a mesh that the pipeline made; 0 for any other.
    int getCurrentSubDivisionLevel() const;

    DzGeometry* makeCopy(bool copyTopology = true, bool copyGroups = true) const override;

protected:
    void topologyEdited() override;

private:
    friend class openhost::MeshAccess;
    void buildFacets() const;
    void buildGroups() const;

    struct FacetImpl;
    std::unique_ptr<FacetImpl> _facets;
};

typedef DzTRefPtr<DzFacetMesh> DzFacetMeshPtr;
