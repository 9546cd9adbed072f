// The manager of asset filters.
// SPDX-License-Identifier: MIT

#include "dzassetiomgr.h"

#include "dzfileiosettings.h"
#include "host/content/morph_asset_filter.h"
#include "openhost/operations.h"

#include <vector>

struct DzAssetIOMgr::Impl {
    std::vector<std::unique_ptr<DzAssetIOFilter>> filters;
    bool writing = false;
};

DzAssetIOMgr::DzAssetIOMgr() : _impl(std::make_unique<Impl>())
{
    _impl->filters.push_back(std::make_unique<DzMorphSupportAssetFilter>());
}

DzAssetIOMgr::~DzAssetIOMgr() = default;

int DzAssetIOMgr::getNumAssetFilters() const
{
    return static_cast<int>(_impl->filters.size());
}

int DzAssetIOMgr::findAssetFilterIndex(const QString& className) const
{
    for (int i = 0; i < getNumAssetFilters(); ++i)
        if (getAssetFilter(i)->className() == className)
            return i;
    return -1;
}

int DzAssetIOMgr::findFilter(const QString& className) const
{
    return findAssetFilterIndex(className);
}

DzAssetIOFilter* DzAssetIOMgr::getAssetFilter(int index) const
{
    const bool isInRange = index >= 0 && index < getNumAssetFilters();
    return isInRange ? _impl->filters[static_cast<std::size_t>(index)].get() : nullptr;
}

DzAssetIOFilter* DzAssetIOMgr::getFilter(int index) const
{
    return getAssetFilter(index);
}

DzError DzAssetIOMgr::doSaveWithOptions(DzAssetIOFilter* filter, DzFileIOSettings* options, bool,
                                        const QString& filename, const QString& startingDir, const QString&)
{
    if (!filter || !options)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    if (!openhost::AllowOperation("saveAsset", filter->className()))
        return DZ_OPERATION_FAILED_ERROR;
    emit assetSaveStarted(filename);
    _impl->writing = true;
    const DzError result = filter->doSave(options, filename, startingDir);
    _impl->writing = false;
    emit assetSaveFinished(filename);
    if (result == DZ_NO_ERROR)
        emit assetSaved();
    return result;
}

bool DzAssetIOMgr::isReading() const
{
    return false;
}

bool DzAssetIOMgr::isWriting() const
{
    return _impl->writing;
}
