// Saving through the host's asset filters.
// SPDX-License-Identifier: MIT

#include "shared/ks_filtered-save.h"

#include "shared/ks_daz-managers.h"
#include "shared/ks_exception.h"
#include "shared/ks_string.h"
#include "shared/ks_wait-cursor.h"

#include <dzassetiofilter.h>
#include <dzassetiomgr.h>
#include <dzfileiosettings.h>
#include <dznode.h>

namespace kst {

using str::ToQ;

struct FilteredSave::Impl {
    DzAssetIOMgr& manager = daz::GetAssetIOMgr_X();
    DzAssetIOFilter* filter = nullptr;
    DzFileIOSettings settings;

    void set(const char* key, const QString& value) { settings.setStringValue(QLatin1String(key), value); }
};

namespace {

DzSettings& NestedSet(DzSettings& settings, const QString& key)
{
    DzSettings* const present = settings.getSettingsValue(key);
    return present ? *present : *settings.setSettingsValue(key);
}

} // namespace

FilteredSave::FilteredSave(const char* filterClassName) : _pImpl(new Impl)
{
    const int index = _pImpl->manager.findAssetFilterIndex(QLatin1String(filterClassName));
    _pImpl->filter = index < 0 ? nullptr : _pImpl->manager.getAssetFilter(index);
    if (!_pImpl->filter)
        throw Exception("failed to find {}", filterClassName);
}

FilteredSave::~FilteredSave() = default;

bool FilteredSave::SaveMorphSupportAsset_X(DzNode& node, std::string_view baseDataPath,
                                           std::string_view vendorName, std::string_view productName,
                                           const std::vector<std::string>& propertyNames, bool compress,
                                           bool showOptions)
{
    FilteredSave save("DzMorphSupportAssetFilter");
    save._pImpl->set("RootLabel", node.getLabel());
    save._pImpl->set("BaseDataPath", ToQ(baseDataPath));
    save._pImpl->set("VendorName", ToQ(vendorName));
    save._pImpl->set("ProductName", ToQ(productName));
    DzSettings& names =
        NestedSet(NestedSet(save._pImpl->settings, QLatin1String("NodeNames")), node.getName());
    for (std::size_t i = 0; i < propertyNames.size(); ++i)
        names.setStringValue(QString::number(static_cast<int>(i)), ToQ(propertyNames[i]));
    return save.run_X(std::string_view(), compress,
                      showOptions ? RunGetOptions::Interactive : RunGetOptions::Skip);
}

bool FilteredSave::run_X(std::string_view path, bool compress, RunGetOptions runGetOptions)
{
    DzFileIOSettings& settings = _pImpl->settings;
    const bool isInteractive = runGetOptions == RunGetOptions::Interactive;
    if (!isInteractive)
        settings.setBoolValue(QLatin1String("RunSilent"), true);
    if (runGetOptions != RunGetOptions::Skip &&
        !_pImpl->filter->getOptions(&settings, isInteractive, QString()))
        throw CanceledException();
    settings.setBoolValue(QLatin1String("CompressOutput"), compress);
    const WaitCursor waitCursor;
    settings.setBoolValue(QLatin1String("RunSilent"), true);
    const std::size_t slash = path.rfind('/');
    const QString directory = slash == std::string_view::npos ? QString() : ToQ(path.substr(0, slash));
    const DzError result =
        _pImpl->manager.doSaveWithOptions(_pImpl->filter, &settings, false, ToQ(path), directory, QString());
    if (result == DZ_USER_CANCELLED_OPERATION)
        return false;
    if (result != DZ_NO_ERROR)
        throw Exception("Daz Studio asset IO manager reported: {}", str::ToStd(getErrorMessage(result)));
    return true;
}

} // namespace kst
