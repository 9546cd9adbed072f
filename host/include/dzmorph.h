// Morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmodifier.h"
#include "dzuri.h"

class DzFloatProperty;
class DzMorphDeltas;

namespace openhost {
class Pipeline;
}

/// One dial, named "Value", and the displacements it scales. The morph's label is the dial's.
class DzMorph : public DzModifier {
    Q_OBJECT
    Q_PROPERTY(int hdLimit READ getHDLimit WRITE setHDLimit)
public:
    DzMorph();
    /// Shares the deltas by counting.
    explicit DzMorph(DzMorphDeltas* deltas);
    ~DzMorph();

    QString getLabel() const override;
    DzError setLabel(const QString& label) override;

    Q_INVOKABLE DzMorphDeltas* getDeltas() const; ///< never null
    Q_INVOKABLE void setDeltas(DzMorphDeltas* deltas);
    Q_INVOKABLE DzFloatProperty* getValueControl() const;
    Q_INVOKABLE DzFloatProperty* getValueChannel() const;

    Q_INVOKABLE DzUri getAssetUri() const;
    void setAssetUri(const DzUri& uri);
    bool modifyAsset();
    bool isAssetModified() const;
    int getHDLimit() const;
    void setHDLimit(int level);

signals:
    void deltasChanged();
    void hdLimitChanged();

protected:
    void propertyValueChanged(DzProperty* property) override;

private slots:
    void handleDeltasChanged();

private:
    friend class openhost::Pipeline;
    void makeDial();

    struct MorphImpl;
    std::unique_ptr<MorphImpl> _morph;
};
