// What one load of Morph Loader Pro is to do.
// SPDX-License-Identifier: MIT

#pragma once

#include "tools/morph_loader.h"

#include "dznode.h"
#include "dznumericproperty.h"

#include <QPointer>

namespace openhost {

struct MorphLoadSettings {
    typedef DzMorphLoader::LoadMode LoadMode;
    typedef DzMorphLoader::SubdMapping SubdMapping;
    typedef DzMorphLoader::OverwriteMode OverwriteMode;
    typedef DzMorphLoader::MirroringType MirroringType;

    LoadMode loadMode = DzMorphLoader::PrimaryNode;
    QString displayName;
    QString filename;
    QString morphName;
    bool morphSubdivision = false;
    int subdivisionBuiltResolution = 0;
    int subdivisionMinResolution = 0;
    int subdivisionMaxResolution = 9;
    bool subdivisionSmoothCage = true;
    SubdMapping subdivisionMapping = DzMorphLoader::Catmark;
    float deltaTolerance = 0.01f;
    bool createControlProperty = false;
    QString propertyGroupPath;
    DzERCLink::ERCType controlPropertyERCType = DzERCLink::ERCDeltaAdd;
    bool controlPropertyERCUseCustomValue = false;
    float controlPropertyERCCustomValue = 1.0f;
    QPointer<DzNode> controlNode;
    QPointer<DzNumericProperty> controlProperty;
    bool controlPropertyUseCustomLabel = false;
    QString controlPropertyCustomLabel;
    bool hideSecondaryProperties = false;
    bool reverseDeformations = false;
    bool preserveExistingDeltas = false;
    QString reverseDeformationsPose;
    OverwriteMode overwriteExisting = DzMorphLoader::MakeUnique;
    bool cleanUpOrphans = false;
    MirroringType morphMirroring = DzMorphLoader::DoNotMirror;
    QString attenuateMapPath;
    float attenuateStrength = 1.0f;
    float attenuateEdgeStrength = 0.0f;
};

} // namespace openhost
