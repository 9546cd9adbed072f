// Saving morphs as support assets.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzassetiofilter.h"

/// Writes one data file per listed morph below the figure's own folder in a content directory:
/// `<BaseDataPath>/data/.../Morphs/<VendorName>/<ProductName>/<name>.dsf`.
///
/// Options: "BaseDataPath" (a folder that is there), "VendorName", "ProductName", "CompressOutput", and
/// "NodeNames" with one set per node name holding morph names under "0", "1", ... After success the morphs
/// belong to the files. Files of other morphs are replaced only if the attendant agrees.
class DzMorphSupportAssetFilter : public DzAssetIOFilter {
    Q_OBJECT

public:
    QString getDescription() const override;
    bool isSupportAssetFilter() const override { return true; }
    DzError doSave(DzFileIOSettings* options, const QString& filename, const QString& startingDir) override;
};
