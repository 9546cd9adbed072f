// What a weight map belongs to.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Names a map for Morph Loader Pro: the modifier that owns it and the map's own name.
class DzWeightMapContext {
public:
    DzWeightMapContext(const QString& modifierName, const QString& mapName)
        : _modifierName(modifierName), _mapName(mapName)
    {
    }

    QString getModifierName() const { return _modifierName; }
    QString getMapName() const { return _mapName; }

private:
    QString _modifierName, _mapName;
};
