// The manager of asset filters.
// SPDX-License-Identifier: MIT

#include "dzassetiomgr.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "app/operations.h"
#include "base/errors.h"
#include "dson/reader.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzfileiosettings.h"
#include "openhost/class_registry.h"
#include "saving/morph_asset_filter.h"
#include "saving/scene_asset_filters.h"

#include <vector>

#include <QFileInfo>

namespace {

const openhost::BuiltInClass<DzMorphSupportAssetFilter> morphSupport;
const openhost::BuiltInClass<DzSceneAssetFilter> scene;
const openhost::BuiltInClass<DzSceneSubsetAssetFilter> sceneSubset;
const openhost::BuiltInClass<DzWearablesAssetFilter> wearables;
const openhost::BuiltInClass<DzPoseAssetFilter> pose;

/// Sets a flag for as long as it lives.
class Raised {
public:
    explicit Raised(bool& flag) : _flag(flag), _former(flag) { _flag = true; }
    ~Raised() { _flag = _former; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& _flag;
    bool _former;
};

/// Where the dialog begins when nobody says where.
QString StandardFolder(const DzAssetIOFilter& filter)
{
    const QString content = dzApp->getContentMgr()->getContentDirectoryPath(0);
    return content.isEmpty() ? content : content + filter.getStandardSaveRelativePath();
}

} // namespace

struct DzAssetIOMgr::Impl {
    std::vector<std::unique_ptr<DzAssetIOFilter>> filters;
    bool writing = false;
    bool reading = false;
};

DzAssetIOMgr::DzAssetIOMgr() : _impl(std::make_unique<Impl>())
{
    _impl->filters.push_back(std::make_unique<DzMorphSupportAssetFilter>());
    _impl->filters.push_back(std::make_unique<DzSceneAssetFilter>());
    _impl->filters.push_back(std::make_unique<DzSceneSubsetAssetFilter>());
    _impl->filters.push_back(std::make_unique<DzWearablesAssetFilter>());
    _impl->filters.push_back(std::make_unique<DzPoseAssetFilter>());
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

DzError DzAssetIOMgr::doSaveWithOptions(DzAssetIOFilter* filter, DzFileIOSettings* options, bool showOptions,
                                        const QString& filename, const QString& startingDir, const QString&)
{
    if (!filter || !options)
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    const bool isSilent = options->getBoolValue(QLatin1String("RunSilent"));
    QString file = filename;
    if (file.isEmpty() && !filter->isSupportAssetFilter()) {
        if (isSilent)
            return DZ_ILLEGAL_ARGUMENT_ERROR;
        const std::optional<QString> chosen = openhost::CurrentAttendant().chooseFileToSave(
            filter->getDescription(), startingDir.isEmpty() ? StandardFolder(*filter) : startingDir);
        if (!chosen)
            return DZ_ILLEGAL_ARGUMENT_ERROR;
        if (chosen->isEmpty())
            return DZ_USER_CANCELLED_OPERATION;
        file = *chosen;
    }
    if (!filter->isSupportAssetFilter())
        file = openhost::WithUserExtension(file);
    if (showOptions && !isSilent && !filter->getOptions(options, true, file))
        return DZ_USER_CANCELLED_OPERATION;
    if (!openhost::Allows(openhost::Operation::SaveAsset, filter->className()))
        return DZ_OPERATION_FAILED_ERROR;
    return write(*filter, *options, file, startingDir);
}

DzError DzAssetIOMgr::write(DzAssetIOFilter& filter, DzFileIOSettings& options, const QString& filename,
                            const QString& startingDir)
{
    emit assetSaveStarted(filename);
    DzError result = DZ_OPERATION_FAILED_ERROR;
    {
        const Raised writing(_impl->writing);
        result = filter.doSave(&options, filename, startingDir);
    }
    emit assetSaveFinished(filename);
    if (result == DZ_NO_ERROR)
        emit assetSaved();
    return result;
}

DzError DzAssetIOMgr::doLoad(const QString& filename, DzScene::DzOpenMethod method)
{
    if (!QFileInfo(filename).isFile())
        return DZ_FILE_NOT_FOUND_ERROR;
    DzContentMgr& content = *dzApp->getContentMgr();
    if (method == DzScene::OpenNew) {
        // What cannot be read must not cost the present scene.
        const std::string file = filename.toStdString();
        const bool isReadable = openhost::GuardHostCall({file}, [&file] {
            dson::ReadOptions options;
            options.deltas = false;
            dson::ReadDocument(file, options);
            return true;
        });
        if (!isReadable)
            return DZ_INVALID_FILE_ERROR;
        dzScene->clear();
    }
    const Raised reading(_impl->reading);
    const bool isLoaded = content.openFile(filename, method != DzScene::DefaultMethod);
    return isLoaded ? DZ_NO_ERROR : DZ_OPERATION_FAILED_ERROR;
}

bool DzAssetIOMgr::isReading() const
{
    return _impl->reading;
}

bool DzAssetIOMgr::isWriting() const
{
    return _impl->writing;
}
