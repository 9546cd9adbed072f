// A morph's displacements.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"
#include "dzrefcounteditem.h"
#include "dztarray.h"
#include "dzuri.h"
#include "dzvec3.h"

#include <memory>

class DzVertexMesh;

namespace openhost {
class DeltasAccess;
}

/// Sparse: vertices ascending, each named once. Stock deltas are read from their file when first needed.
class DzMorphDeltas : public DzRefCountedItem {
    Q_OBJECT
public:
    DzMorphDeltas();
    ~DzMorphDeltas();

    /// Null if the meshes do not match or nothing moves further than the tolerance (cm).
    static DzMorphDeltas* calculateDeltas(const DzVertexMesh* source, const DzVertexMesh* target,
                                          float tolerance = 0.0001f);

    /// Returns the delta's index; -1 for a negative vertex or a delta that is not finite.
    int addDelta(int vertex, const DzVec3& delta, bool checkForDuplicates = true);
    DzError addDeltas(const DzIntArray& vertices, const DzTArray<DzVec3>& deltas, bool checkForDuplicates);
    Q_INVOKABLE int getNumDeltas() const;
    Q_INVOKABLE int getDeltaIndex(int index) const; ///< vertex of a delta; -1 out of range
    Q_INVOKABLE DzVec3 getDeltaVec(int index) const;
    int getVertexDeltaIndex(int vertex) const; ///< -1 if none
    DzError setDelta(int index, const DzVec3& delta);
    DzError removeVertex(int vertex);
    void removeAllDeltas();

    /// Vertices of the base mesh; 0 while unknown.
    Q_INVOKABLE int getTargetVertexCount() const;
    void setTargetVertexCount(int count);
    Q_INVOKABLE bool hasDeltas() const;
    bool areDeltasLoaded() const;
    Q_INVOKABLE bool loadDeltas();
    /// Gives the memory back; only deltas that can be read again.
    void unLoadDeltas();

    /// Where the deltas come from; empty for those made in the scene.
    Q_INVOKABLE DzUri getUri() const;
    void setUri(const DzUri& uri);

signals:
    void deltasChanged();

private:
    friend class openhost::DeltasAccess;
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

typedef DzTRefPtr<DzMorphDeltas> DzMorphDeltasPtr;
