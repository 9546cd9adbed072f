// Saving and loading native files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"
#include "dzfileio.h"

class DzAssetIOFilter : public DzFileIO {
    Q_OBJECT
public:
    DzAssetIOFilter();
    ~DzAssetIOFilter();

    /// Writes data files rather than a file for users.
    virtual bool isSupportAssetFilter() const;
    virtual QString getStandardSaveRelativePath() const;
    virtual DzError doSave(DzFileIOSettings* options, const QString& filename,
                           const QString& startingDir) = 0;
};
