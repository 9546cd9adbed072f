// Morph Loader Pro: a list of morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzvertexmesh.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class DzFileIOSettings;
class DzMorphLoader;
class DzNode;

/// Known to others by name only, as DzMorphLoader is. Loaders that were added stay their maker's.
class DzMorphLoaderBatch : public QObject {
    Q_OBJECT

public:
    DzMorphLoaderBatch();
    ~DzMorphLoaderBatch() override;

public slots:
    /// Makes all morphs of the list, in order; the texts of all, a line each.
    QString createMorphs(DzFileIOSettings* settings, DzNode* node, bool onlyErrorsOrWarnings = true,
                         bool plainText = true);
    void addMorph(DzMorphLoader* morph);
    int getNumMorphs() const;
    DzMorphLoader* getMorph(int index) const;  ///< null out of range
    int findMorph(DzMorphLoader* morph) const; ///< -1 if it is not in the list
    void clear();
    bool moveMorph(DzMorphLoader* morph, bool up); ///< false at the end of the list
    bool removeMorph(DzMorphLoader* morph);
    /// Adds a loader of the batch's own.
    DzMorphLoader* addFromFile(const QString& file);
    void addFromFiles(const QStringList& files);
    DzMorphLoader* addFromMesh(DzVertexMesh* mesh);
    /// Adds a loader for each object of a settings file.
    bool addFromConfigFile(const QString& file);
    bool saveProjectSettingsToConfigFile(const QString& file, bool common, bool objects);
    bool usePresetConfiguration() const { return _usePreset; }
    void setUsePresetConfiguration(bool on) { _usePreset = on; }
    QString presetConfigurationFile() const { return _presetFile; }
    void setPresetConfigurationFile(const QString& file) { _presetFile = file; }
    void setNode(DzNode* node);
    DzNode* getNode() const;

signals:
    void morphListChanged();
    void morphAdded(DzMorphLoader* morph);
    void morphRemoved(DzMorphLoader* morph, int formerIndex);
    void morphMoved(int from, int to);

private slots:
    void handleMorphDestroyed(QObject* morph);

private:
    void forget(int index);

    QList<DzMorphLoader*> _morphs;
    QList<QPair<DzMorphLoader*, DzVertexMeshPtr>> _meshes; ///< of loaders that were made from a mesh
    QPointer<QObject> _node;
    QString _presetFile;
    bool _usePreset = false;
};
