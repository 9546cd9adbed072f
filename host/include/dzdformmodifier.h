// A D-Former's hold on one object.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmodifier.h"
#include "dzweightmap.h"

class DzDForm;

class DzDFormModifier : public DzModifier {
    Q_OBJECT
public:
    explicit DzDFormModifier(DzDForm* former = 0);
    ~DzDFormModifier();

    DzDForm* getDForm() const { return _former; }
    void setDForm(DzDForm* former);
    /// Shown to users as "Influence Weights"; null while none are set.
    DzWeightMap* getInfluenceWeights() const { return _weights; }
    /// Shares the map by counting.
    DzError setInfluenceWeights(DzWeightMap* weights);

protected:
    void propertyValueChanged(DzProperty* property) override;

private:
    friend class DzDForm;
    void formChanged();

    DzDForm* _former;
    DzWeightMapPtr _weights;
};
