// The Transfer Utility: binding, groups and morphs from one mesh to another.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

#include <QObject>
#include <QPointer>
#include <QStringList>

class DzFigure;
class DzNode;

/// Known to others by name only. Every setter answers true, since callers read an answer from each.
class DzTransferUtility : public QObject {
    Q_OBJECT
    Q_ENUMS(SourceMorphTransferType)

public:
    enum SourceMorphTransferType {
        NoMorphs,
        NameList,
        Favorites,
        FavoritesAndSubComponets,
        ShapingAndPoseType,
        AllMorphs
    };

    DzTransferUtility();
    ~DzTransferUtility() override;

public slots:
    /// False for a node without a mesh.
    bool setSource(DzNode* node);
    bool setTarget(DzNode* node);
    DzNode* getSource() const;
    DzNode* getTarget() const;
    bool setTransferBinding(bool value); ///< project skin weights and copy the bones they belong to
    bool getTransferBinding() const { return _transferBinding; }
    bool setTransferMorphs(bool value);
    bool getTransferMorphs() const { return _transferMorphs; }
    bool setTransferSourceMorphs(int value); ///< a SourceMorphTransferType
    int getTransferSourceMorphs() const { return _transferSourceMorphs; }
    bool setMorphTransferList(const QStringList& value); ///< names for NameList
    QStringList getMorphTransferList() const { return _morphTransferList; }
    bool setOverrideExistingMorphs(bool value); ///< a morph of the same name on the target is replaced
    bool getOverrideExistingMorphs() const { return _overrideExistingMorphs; }
    bool setTransferSelectionMap(bool value);
    bool getTransferSelectionMap() const { return _transferSelectionMap; }
    bool setTransferFaceGroups(bool value);
    bool getTransferFaceGroups() const { return _transferFaceGroups; }
    bool setTransferRegionGroups(bool value); ///< regions follow the face groups
    bool getTransferRegionGroups() const { return _transferRegionGroups; }
    bool setTransferMaterialGroups(bool value);
    bool getTransferMaterialGroups() const { return _transferMaterialGroups; }
    bool setFitToFigure(bool value); ///< the target follows the source afterwards
    bool getFitToFigure() const { return _fitToFigure; }
    bool setParentToFigure(bool value);
    bool getParentToFigure() const { return _parentToFigure; }
    bool setTargetReplacesSource(bool value); ///< the source leaves the scene
    bool getTargetReplacesSource() const { return _targetReplacesSource; }
    bool setRemoveOriginalTarget(bool value); ///< the prop that became a figure leaves the scene
    bool getRemoveOriginalTarget() const { return _removeOriginalTarget; }

    /// Finds where each target vertex lies on the source's base mesh, both at their places in the world, and
    /// carries over what is asked for. A prop becomes a figure of the same label in its place, which is
    /// selected; a figure is changed in place. Names that the source lacks are skipped. False, the scene
    /// unchanged, when source or target has no faces or both are the same node.
    bool doTransfer();
    /// What the last transfer made or changed; null before.
    DzFigure* getTargetOutputFigure() const;

private:
    DzFigure* figureToFill();

    QPointer<QObject> _source, _target, _output;
    bool _transferBinding = true;
    bool _transferMorphs = false;
    int _transferSourceMorphs = NoMorphs;
    QStringList _morphTransferList;
    bool _overrideExistingMorphs = true;
    bool _transferSelectionMap = false;
    bool _transferFaceGroups = false;
    bool _transferRegionGroups = false;
    bool _transferMaterialGroups = false;
    bool _fitToFigure = false;
    bool _parentToFigure = false;
    bool _targetReplacesSource = false;
    bool _removeOriginalTarget = true;
};
