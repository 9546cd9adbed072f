// The filters that save native files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzerror.h"
#include "dzscene.h"

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
    /// Saves under the name, to which a missing extension is added. An empty name asks for one, unless the
    /// filter needs none; where nobody can be asked, or "RunSilent" is set, it is refused.
    /// @param showOptions  asks for the options first, unless "RunSilent" is set
    /// @return DZ_USER_CANCELLED_OPERATION when a question was refused
    Q_INVOKABLE DzError doSaveWithOptions(DzAssetIOFilter* filter, DzFileIOSettings* options,
                                          bool showOptions = false, const QString& filename = QString(),
                                          const QString& startingDir = QString(),
                                          const QString& category = QString());
    /// A file that cannot be understood leaves the scene as it is.
    Q_INVOKABLE DzError doLoad(const QString& filename,
                               DzScene::DzOpenMethod method = DzScene::DefaultMethod);
    Q_INVOKABLE bool isReading() const;
    Q_INVOKABLE bool isWriting() const;

signals:
    void assetSaved();
    void assetSaveStarted(const QString& filename);
    void assetSaveFinished(const QString& filename);

private:
    DzError write(DzAssetIOFilter& filter, DzFileIOSettings& options, const QString& filename,
                  const QString& startingDir);

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
