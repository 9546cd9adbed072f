// Geometry with vertices.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbox3.h"
#include "dzerror.h"
#include "dzgeometry.h"
#include "dzpnt3.h"
#include "dzvec3.h"

#include <memory>

namespace openhost {
class MeshAccess;
}

/// Positions in cm. Indices out of range are programming errors.
class DzVertexMesh : public DzGeometry {
    Q_OBJECT
public:
    DzVertexMesh();
    ~DzVertexMesh();

    int getNumVertices() const;
    DzVec3 getVertex(int index) const;
    void setVertex(int index, const DzVec3& position);
    const DzPnt3* getVerticesPtr() const;
    /// Returns the new vertex's index.
    int addVertex(float x, float y, float z);
    DzError preSizeVertexArray(int count);
    /// Sets the number of vertices; new ones stand at the origin.
    void setVertexArray(int count);
    DzBox3 getBoundingBox() const;

    /// Bracket changes of the topology.
    void beginEdit();
    void finishEdit();
    void cancelEdit();

    DzGeometry* makeCopy(bool copyTopology = true, bool copyGroups = true) const override;

signals:
    void verticesChanged();
    void topologyChanged();

protected:
    friend class openhost::MeshAccess;
    virtual void topologyEdited();

    struct Impl;
    std::unique_ptr<Impl> _impl;
};

typedef DzTRefPtr<DzVertexMesh> DzVertexMeshPtr;
