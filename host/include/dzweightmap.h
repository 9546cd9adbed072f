// Weights per vertex.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzrefcounteditem.h"

#include <QString>

#include <vector>

const unsigned short DZ_USHORT_MAX = 65535;

/// 16 bits a weight; DZ_USHORT_MAX is full.
class DzWeightMap : public DzRefCountedItem {
    Q_OBJECT
public:
    explicit DzWeightMap(int numVertices, const QString& name = QString());
    ~DzWeightMap();

    QString getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    int getNumWeights() const { return static_cast<int>(_weights.size()); }
    /// New weights are 0.
    void setNumWeights(int count, bool keep);
    float getFloatWeight(int vertex) const; ///< 0 out of range
    void setFloatWeight(int vertex, float weight);
    unsigned short getWeight(int vertex) const;
    void setWeight(int vertex, unsigned short weight);
    const unsigned short* getWeightsPtr() const { return _weights.data(); }
    DzWeightMap* makeCopy() const;

    /// Scales each vertex's weights so that they add up to full; vertices without any stay so.
    static void normalizeMaps(const QList<DzWeightMap*>& maps);

private:
    QString _name;
    std::vector<unsigned short> _weights;
};

typedef DzTRefPtr<DzWeightMap> DzWeightMapPtr;
typedef QList<DzWeightMap*> DzWeightMapList;
