// Shapes made of facets, with subdivision.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzshape.h"

class DzEnumProperty;
class DzFacetMesh;
class DzIntProperty;

/// A subdivision surface has the properties lodlevel ("Base", "High Resolution") and SubDIALevel (0..5,
/// default 1); a plain polygon mesh has neither.
class DzFacetShape : public DzShape {
    Q_OBJECT
public:
    DzFacetShape();
    ~DzFacetShape();

    DzGeometry* getGeometry() const override;
    Q_INVOKABLE DzFacetMesh* getFacetMesh() const;
    /// Shares the mesh by counting.
    void setFacetMesh(DzFacetMesh* mesh);

    /// Turns the shape into a subdivision surface (high resolution, level 1) or back into a polygon mesh.
    void enableSubDivision(bool onOff);
    Q_INVOKABLE DzEnumProperty* getLODControl() const;      ///< null for a polygon mesh
    Q_INVOKABLE DzIntProperty* getSubDLevelControl() const; ///< null for a polygon mesh
    DzIntProperty* getSubDRenderLevelControl() const;       ///< null for a polygon mesh
    /// High resolution is chosen and the level is above 0.
    Q_INVOKABLE bool isSubDivisionActive() const;
    /// The level in effect; 0 for the cage.
    Q_INVOKABLE int getSubDDrawLevel() const;

protected:
    void propertyValueChanged(DzProperty* property) override;

private slots:
    void handleMeshChanged();

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
