// Morph Loader Pro: one morph from one file.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerclink.h"
#include "dzvertexmesh.h"

#include <memory>

#include <QObject>
#include <QString>

class DzFileIOSettings;
class DzMorph;
class DzNode;
class DzNumericProperty;
class DzWeightMapContext;

namespace openhost {
struct MorphLoadSettings;
}

/// Known to others by name only: every method is a slot, its signature spelled as callers look it up.
class DzMorphLoader : public QObject {
    Q_OBJECT
    Q_ENUMS(LoadMode)
    Q_ENUMS(SubdMapping)
    Q_ENUMS(OverwriteMode)
    Q_ENUMS(MirroringType)
    Q_ENUMS(AttenuateMapType)

public:
    enum LoadMode { EntireFigure, SelectedNodes, PrimaryNode, SingleSkinFigure, SingleSkinFigureFromGraft };
    enum SubdMapping { Catmark, FacetOrder, ZbrushCage, MudboxCage };
    enum OverwriteMode { MakeUnique, DeltasAndERCLinks, DeltasOnly };
    enum MirroringType {
        DoNotMirror,
        XSwap,
        XPosToNeg,
        XNegToPos,
        YSwap,
        YPosToNeg,
        YNegToPos,
        ZSwap,
        ZPosToNeg,
        ZNegToPos
    };
    enum AttenuateMapType { WeightMap, FacetList, EdgeList, VertexList, UnknownMap };

    DzMorphLoader();
    ~DzMorphLoader() override;

    /// The add-on for subdivided morphs is installed.
    static bool SupportsMultiResolution();

public slots:
    /// Loads the file and makes the morph.
    /// @param settings  options of the OBJ importer
    /// @return what went wrong, or that it went well when that is asked for too
    QString createMorph(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings = true,
                        bool plainText = true);
    QString createMorphFromMesh(DzVertexMeshPtr mesh, DzNode* node, bool onlyErrorsOrWarnings = true,
                                bool plainText = true);
    /// False when the mode does not suit the node: a figure with one skin takes the single-skin modes, a prop
    /// the primary node's.
    bool setLoadMode(LoadMode mode, DzNode* node);

    void setDisplayName(const QString& value); ///< caption in the loader's list
    QString getDisplayName() const;
    void setFilename(const QString& value); ///< OBJ file to load
    QString getFilename() const;
    void setMorphName(const QString& value); ///< name and label of the morph; the file's stem when empty
    QString getMorphName() const;
    void setMorphSubdivision(bool value); ///< the file holds the mesh subdivided to the built resolution
    bool getMorphSubdivision() const;
    void setSubdivisionBuiltResolution(int value);
    int getSubdivisionBuiltResolution() const;
    void setSubdivisionMinResolution(int value);
    int getSubdivisionMinResolution() const;
    void setSubdivisionMaxResolution(int value);
    int getSubdivisionMaxResolution() const;
    void setSubdivisionSmoothCage(bool value);
    bool getSubdivisionSmoothCage() const;
    void setSubdivisionMapping(SubdMapping value);
    SubdMapping getSubdivisionMapping() const;
    void setDeltaTolerance(float value); ///< cm; shorter deltas are dropped
    float getDeltaTolerance() const;
    void setCreateControlProperty(bool value); ///< an extra dial that drives the morph
    bool getCreateControlProperty() const;
    void setPropertyGroupPath(const QString& value); ///< where the dial is filed
    QString getPropertyGroupPath() const;
    void setControlPropertyERCType(DzERCLink::ERCType value);
    DzERCLink::ERCType getControlPropertyERCType() const;
    void setControlPropertyERCUseCustomValue(bool value);
    bool getControlPropertyERCUseCustomValue() const;
    void setControlPropertyERCCustomValue(float value);
    float getControlPropertyERCCustomValue() const;
    void setControlNode(DzNode* value); ///< the loaded node when null
    DzNode* getControlNode() const;
    void setControlProperty(DzNumericProperty* value); ///< a new one when null
    DzNumericProperty* getControlProperty() const;
    void setControlPropertyUseCustomLabel(bool value);
    bool getControlPropertyUseCustomLabel() const;
    void setControlPropertyCustomLabel(const QString& value);
    QString getControlPropertyCustomLabel() const;
    void setHideSecondaryProperties(bool value); ///< hides the morph's own dial behind the control property
    bool getHideSecondaryProperties() const;
    void setReverseDeformations(bool value); ///< the morph under the present pose and dials gives the file
    bool getReverseDeformations() const;
    void setPreserveExistingDeltas(bool value); ///< of vertices that the file does not move
    bool getPreserveExistingDeltas() const;
    void setReverseDeformationsPose(const QString& value); ///< a pose file applied before loading
    QString getReverseDeformationsPose() const;
    void setOverwriteExisting(OverwriteMode value);
    OverwriteMode getOverwriteExisting() const;
    void setCleanUpOrphans(bool value);
    bool getCleanUpOrphans() const;
    void setMorphMirroring(MirroringType value);
    MirroringType getMorphMirroring() const;
    void setAttenuateMapPath(const QString& value);
    QString getAttenuateMapPath() const;
    void setAttenuateStrength(float value); ///< 1 the map, 0 no map, -1 the map's complement
    float getAttenuateStrength() const;
    void setAttenuateEdgeStrength(float value);
    float getAttenuateEdgeStrength() const;

    /// Settings files: one section for what is common to all objects and one for each object's name.
    bool readObjectSettingsFromConfigFile(const QString& file, const QString& object);
    bool readObjectCommonSettingsFromConfigFile(const QString& file);
    bool saveObjectSettingsToConfigFile(const QString& file, const QString& object, bool common);
    bool morphAlreadyExists(DzNode* node);
    bool allowMultiResolutionMorphs();
    /// The path under which a weight map of a context is found on a node.
    QString getPathForContext(DzWeightMapContext* context, DzNode* node);

private:
    std::unique_ptr<openhost::MorphLoadSettings> _impl;
};
