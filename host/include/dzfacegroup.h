// Named sets of facets.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

/// Polygon indices, ascending. Belongs to its mesh and goes when the mesh's topology changes.
class DzFaceGroup {
public:
    explicit DzFaceGroup(const QString& name) : _name(name) {}
    virtual ~DzFaceGroup() {}

    QString getName() const { return _name; }
    int count() const { return static_cast<int>(_indices.size()); }
    int getIndex(int position) const { return _indices[static_cast<std::size_t>(position)]; }
    const int* getIndicesPtr() const { return _indices.data(); }

private:
    friend class DzFacetMesh;
    QString _name;
    std::vector<int> _indices;
};

/// The facets of one surface.
class DzMaterialFaceGroup : public DzFaceGroup {
public:
    explicit DzMaterialFaceGroup(const QString& name) : DzFaceGroup(name) {}
};
