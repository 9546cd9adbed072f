// Saving through the host's asset filters.
// SPDX-License-Identifier: MIT

#include "ks_filtered-save.h"

#include "ks_daz-adaptation.h"
#include "ks_daz-checked.h"
#include "ks_daz-helpers.h"
#include "ks_daz-managers.h"
#include "ks_exception.h"
#include "ks_string.h"
#include "ks_wait-cursor.h"

#include <dzassetiofilter.h>
#include <dzassetiomgr.h>
#include <dzfileiosettings.h>
#include <dznode.h>
#include <dzskeleton.h>

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
    return daz::Checked(present ? present : settings.setSettingsValue(key),
                        "failed to create options for saving");
}

FilteredSave::RunGetOptions Asking(bool showOptions)
{
    return showOptions ? FilteredSave::RunGetOptions::Interactive : FilteredSave::RunGetOptions::Skip;
}

/// The figure of the primary selection, or the selected node where that is no figure's.
DzNode& SelectedRoot_X()
{
    DzNode* const selected = daz::GetPrimarySceneSelection(true);
    DzNode* const figure = selected->getSkeleton();
    return figure ? *figure : *selected;
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
    return save.run_X(std::string_view(), compress, Asking(showOptions));
}

bool FilteredSave::SaveScene_X(std::string_view path, bool compress)
{
    FilteredSave save("DzSceneAssetFilter");
    return save.run_X(path, compress, RunGetOptions::Skip);
}

bool FilteredSave::SaveSceneSubset_X(std::string_view path, bool compress, bool showOptions)
{
    FilteredSave save("DzSceneSubsetAssetFilter");
    return save.run_X(path, compress, Asking(showOptions));
}

bool FilteredSave::SaveWearablePreset_X(std::string_view path, bool compress, bool showOptions)
{
    FilteredSave save("DzWearablesAssetFilter");
    save._pImpl->set("RootLabel", SelectedRoot_X().getLabel());
    return save.run_X(path, compress, Asking(showOptions));
}

bool FilteredSave::SavePosePreset_X(std::string_view path, bool compress, bool showOptions)
{
    FilteredSave save("DzPoseAssetFilter");
    save._pImpl->set("RootLabel", SelectedRoot_X().getLabel());
    save._pImpl->settings.setBoolValue(QLatin1String("SaveCurFrame"), true);
    return save.run_X(path, compress, Asking(showOptions));
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
        throw Exception("Daz Studio asset IO manager reported: {}", KsHelpersDaz::GetErrorText(result));
    return true;
}

} // namespace kst
