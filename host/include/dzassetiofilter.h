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
    Q_INVOKABLE virtual bool isSupportAssetFilter() const;
    Q_INVOKABLE virtual QString getStandardSaveRelativePath() const;
    Q_INVOKABLE virtual DzError doSave(DzFileIOSettings* options, const QString& filename,
                                       const QString& startingDir) = 0;
};
