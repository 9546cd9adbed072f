// Making a morph from a mesh in a new shape.
// SPDX-License-Identifier: MIT

#pragma once

#include "morph_load_settings.h"

#include <string>
#include <vector>

#include <QStringList>

class DzFileIOSettings;
class DzWeightMap;

namespace openhost {

/// What a load has to say.
struct MorphLoadReport {
    QStringList problems; ///< errors and warnings
    QString success;      ///< empty when no morph was made

    QString text(bool onlyProblems, bool plainText) const;
};

/// Reads the settings' file and makes or overwrites the morph on the node's object. On an error nothing is
/// changed.
/// @param importOptions  of the OBJ importer; null for its defaults
MorphLoadReport LoadMorphFromFile(const MorphLoadSettings& settings, const DzFileIOSettings* importOptions,
                                  DzNode* node);
MorphLoadReport LoadMorphFromMesh(const MorphLoadSettings& settings, const DzVertexMesh* mesh, DzNode* node);

QString EffectiveMorphName(const MorphLoadSettings& settings);
DzMorph* FindMorph(const DzNode& node, const QString& name); ///< null for none

/// The map that an attenuation path names on a node; null for none. `D-Former_1::weightmap::Label/Influence
/// Weights`: the D-Former's modifier, the kind of map, and the path as users see it.
const DzWeightMap* FindAttenuationMap(const DzNode& node, const QString& path);
QString AttenuationPath(const DzWeightMapContext* context, const DzNode* node);

} // namespace openhost
