// The filters that save native files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzerror.h"

#include <memory>

class DzAssetIOFilter;
class DzFileIOSettings;

class DzAssetIOMgr : public DzBase {
    Q_OBJECT
public:
    DzAssetIOMgr();
    ~DzAssetIOMgr();

    Q_INVOKABLE int getNumAssetFilters() const;
    Q_INVOKABLE int findAssetFilterIndex(const QString& className) const; ///< -1 if none
    Q_INVOKABLE int findFilter(const QString& className) const;
    /// Belongs to the manager; null out of range.
    Q_INVOKABLE DzAssetIOFilter* getAssetFilter(int index) const;
    Q_INVOKABLE DzAssetIOFilter* getFilter(int index) const;
    Q_INVOKABLE DzError doSaveWithOptions(DzAssetIOFilter* filter, DzFileIOSettings* options,
                                          bool saveOnly = false, const QString& filename = QString(),
                                          const QString& startingDir = QString(),
                                          const QString& category = QString());
    bool isReading() const;
    bool isWriting() const;

signals:
    void assetSaved();
    void assetSaveStarted(const QString& filename);
    void assetSaveFinished(const QString& filename);

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
