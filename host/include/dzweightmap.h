// Weights per vertex.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzrefcounteditem.h"

#include <QString>

#include <array>
#include <memory>
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
    int getNumWeights() const { return _numWeights; }
    /// New weights are 0.
    void setNumWeights(int count, bool keep);
    float getFloatWeight(int vertex) const; ///< 0 out of range
    void setFloatWeight(int vertex, float weight);
    unsigned short getWeight(int vertex) const;
    void setWeight(int vertex, unsigned short weight);
    /// All of them in a row, for as long as none is set; takes two bytes a vertex more than the map itself.
    const unsigned short* getWeightsPtr() const;
    DzWeightMap* makeCopy() const;

    /// Ours: what getWeightsPtr gives without the memory.
    /// @param visit  called with each vertex whose weight is not 0, in order, and the weight
    template <class Visit>
    void forEachWeight(const Visit& visit) const
    {
        for (std::size_t p = 0; p < _pages.size(); ++p)
            for (std::size_t i = 0; _pages[p] && i < pageSize; ++i)
                if ((*_pages[p])[i] != 0)
                    visit(static_cast<int>(p * pageSize + i), (*_pages[p])[i]);
    }

    /// Scales each vertex's weights so that they add up to full; vertices without any stay so.
    static void normalizeMaps(const QList<DzWeightMap*>& maps);

private:
    static constexpr std::size_t pageSize = 512; ///< weights
    using Page = std::array<unsigned short, pageSize>;

    QString _name;
    int _numWeights;
    /// A joint has weights on a small part of a figure: where there are none, there is no page.
    std::vector<std::unique_ptr<Page>> _pages;
    mutable std::vector<unsigned short> _inARow; ///< empty until somebody wants them so
};

typedef DzTRefPtr<DzWeightMap> DzWeightMapPtr;
typedef QList<DzWeightMap*> DzWeightMapList;
