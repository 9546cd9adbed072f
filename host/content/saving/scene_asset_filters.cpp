// Saving what users open again: scenes, parts of them, wearables, poses.
// SPDX-License-Identifier: MIT

#include "saving/scene_asset_filters.h"

#include "app/current_attendant.h"
#include "app/guard.h"
#include "base/errors.h"
#include "base/folders.h"
#include "base/write_bounds.h"
#include "dzapp.h"
#include "dzauthor.h"
#include "dzcontentmgr.h"
#include "dzfileiosettings.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "saved_nodes.h"
#include "scene_export.h"

#include <QFileInfo>

namespace {

const char* const compressKey = "CompressOutput";
const char* const frameKey = "SaveCurFrame";

dson::AssetInfo Info(const QString& filename, const char* type)
{
    dson::AssetInfo info;
    const DzContentMgr& content = *dzApp->getContentMgr();
    const bool isContent = content.findBaseDirectory(filename, false) != nullptr;
    info.id = isContent ? content.getRelativePath(filename, false).toStdString()
                        : "/" + QFileInfo(filename).fileName().toStdString();
    info.type = type;
    const DzAuthor author = dzApp->getCurrentAuthor();
    // Readers want an author.
    info.author = author.getName().isEmpty() ? "Unknown" : author.getName().toStdString();
    info.email = author.getEmail().toStdString();
    info.website = author.getURL().toStdString();
    return info;
}

void MakeFolder(const std::filesystem::path& folder)
{
    base::ThrowIfOutOfBounds(folder);
    base::MakeFolders(folder);
}

dson::SceneAsset DescribeTrees(const std::vector<DzNode*>& roots, const char* type)
{
    if (roots.empty())
        throw base::Error("the scene holds nothing to save");
    return openhost::DescribeNodes(roots, type, nullptr);
}

QString RootLabel(const DzFileIOSettings& options)
{
    return options.getStringValue(QLatin1String("RootLabel"));
}

} // namespace

namespace openhost {

QString WithUserExtension(const QString& filename)
{
    const QLatin1String extension(".duf");
    const bool isComplete = filename.isEmpty() || filename.endsWith(extension, Qt::CaseInsensitive);
    return isComplete ? filename : filename + extension;
}

} // namespace openhost

void DzUserAssetFilter::getDefaultOptions(DzFileIOSettings* options) const
{
    if (options)
        options->setBoolValue(QLatin1String(compressKey), true);
}

std::vector<openhost::OptionRow> DzUserAssetFilter::optionRows() const
{
    return {{"File", compressKey, "Compress the file"}};
}

bool DzUserAssetFilter::getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename)
{
    return DzAssetIOFilter::getOptions(options, useInterface, filename) &&
           (!useInterface || openhost::CurrentAttendant().chooseFileOptions(
                                 getDescription() + QLatin1String(" Save Options"), optionRows(), *options));
}

DzError DzUserAssetFilter::doSave(DzFileIOSettings* options, const QString& filename, const QString&)
{
    const QString file = openhost::WithUserExtension(filename);
    if (!options || file.isEmpty())
        return DZ_ILLEGAL_ARGUMENT_ERROR;
    const auto save = [&] {
        dson::SceneAsset scene = describe(*options);
        scene.info = Info(file, assetType());
        dson::WriteOptions write;
        write.compress = options->getBoolValue(QLatin1String(compressKey));
        const std::filesystem::path path = QFileInfo(file).absoluteFilePath().toStdString();
        MakeFolder(path.parent_path());
        dson::WriteScene(scene, path, write);
        return DzError(DZ_NO_ERROR);
    };
    return openhost::GuardHostCall({file.toStdString()}, save, openhost::ErrorCodes());
}

QString DzSceneAssetFilter::getDescription() const
{
    return QLatin1String("Scene");
}
QString DzSceneAssetFilter::getStandardSaveRelativePath() const
{
    return QLatin1String("/Scenes");
}
dson::SceneAsset DzSceneAssetFilter::describe(const DzFileIOSettings&) const
{
    return DescribeTrees(openhost::SceneRoots(), assetType());
}

QString DzSceneSubsetAssetFilter::getDescription() const
{
    return QLatin1String("Scene Subset");
}
QString DzSceneSubsetAssetFilter::getStandardSaveRelativePath() const
{
    return QLatin1String("/Scenes");
}
dson::SceneAsset DzSceneSubsetAssetFilter::describe(const DzFileIOSettings&) const
{
    const std::vector<DzNode*> selected = openhost::SelectedTrees();
    return DescribeTrees(selected.empty() ? openhost::SceneRoots() : selected, assetType());
}

QString DzWearablesAssetFilter::getDescription() const
{
    return QLatin1String("Wearable(s) Preset");
}
QString DzWearablesAssetFilter::getStandardSaveRelativePath() const
{
    return QLatin1String("/Presets/Wearables");
}
dson::SceneAsset DzWearablesAssetFilter::describe(const DzFileIOSettings& options) const
{
    const DzNode& figure = openhost::SavedFigure(RootLabel(options));
    const auto* const wearer = qobject_cast<const DzSkeleton*>(&figure);
    const std::vector<DzNode*> worn = wearer ? openhost::WornBy(*wearer) : std::vector<DzNode*>();
    if (worn.empty())
        throw base::Error(figure.getLabel().toStdString() + " wears nothing");
    return openhost::DescribeNodes(worn, assetType(), wearer);
}

QString DzPoseAssetFilter::getDescription() const
{
    return QLatin1String("Pose Preset");
}
QString DzPoseAssetFilter::getStandardSaveRelativePath() const
{
    return QLatin1String("/Presets/Poses");
}
void DzPoseAssetFilter::getDefaultOptions(DzFileIOSettings* options) const
{
    DzUserAssetFilter::getDefaultOptions(options);
    if (options)
        options->setBoolValue(QLatin1String(frameKey), true);
}
std::vector<openhost::OptionRow> DzPoseAssetFilter::optionRows() const
{
    std::vector<openhost::OptionRow> rows = DzUserAssetFilter::optionRows();
    rows.push_back({"Frames", frameKey, "The present frame only"});
    return rows;
}
dson::SceneAsset DzPoseAssetFilter::describe(const DzFileIOSettings& options) const
{
    return openhost::DescribePose(openhost::SavedFigure(RootLabel(options)));
}
