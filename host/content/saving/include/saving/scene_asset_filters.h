// Saving what users open again: scenes, parts of them, wearables, poses.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/scene.h"
#include "dzassetiofilter.h"
#include "openhost/attendant.h"

#include <vector>

/// A filter that writes one .duf file. Options: "CompressOutput", and "RunSilent", with which nothing asks.
/// The file is whole or is not written at all; one that is there stays as it is when that fails. What went
/// wrong stands in the log.
class DzUserAssetFilter : public DzAssetIOFilter {
    Q_OBJECT

public:
    void getDefaultOptions(DzFileIOSettings* options) const override;
    bool getOptions(DzFileIOSettings* options, bool useInterface, const QString& filename) override;
    bool showOptions() const override { return true; }
    /// @param filename  the extension is added if it is missing; must not be empty
    DzError doSave(DzFileIOSettings* options, const QString& filename, const QString& startingDir) override;

protected:
    virtual std::vector<openhost::OptionRow> optionRows() const;
    virtual const char* assetType() const = 0;
    /// @throws base::Error  there is nothing to save
    virtual dson::SceneAsset describe(const DzFileIOSettings& options) const = 0;
};

/// The whole scene.
class DzSceneAssetFilter : public DzUserAssetFilter {
    Q_OBJECT

public:
    QString getDescription() const override;
    QString getStandardSaveRelativePath() const override;

protected:
    const char* assetType() const override { return "scene"; }
    dson::SceneAsset describe(const DzFileIOSettings& options) const override;
};

/// The selected nodes with all below them, a bone standing for its figure; the whole scene while nothing is
/// selected.
class DzSceneSubsetAssetFilter : public DzUserAssetFilter {
    Q_OBJECT

public:
    QString getDescription() const override;
    QString getStandardSaveRelativePath() const override;

protected:
    const char* assetType() const override { return "scene_subset"; }
    dson::SceneAsset describe(const DzFileIOSettings& options) const override;
};

/// What is fitted to a figure or parented to it, for the figure that is selected when the file is loaded.
/// Option: "RootLabel", the figure's label; the selected figure without it.
class DzWearablesAssetFilter : public DzUserAssetFilter {
    Q_OBJECT

public:
    QString getDescription() const override;
    QString getStandardSaveRelativePath() const override;

protected:
    const char* assetType() const override { return "wearable"; }
    dson::SceneAsset describe(const DzFileIOSettings& options) const override;
};

/// The place of a figure and its bones, and its pose dials. Options: "RootLabel" as above, "SaveCurFrame":
/// nothing in the scene moves with time, so the present frame is all there is either way.
class DzPoseAssetFilter : public DzUserAssetFilter {
    Q_OBJECT

public:
    QString getDescription() const override;
    QString getStandardSaveRelativePath() const override;
    void getDefaultOptions(DzFileIOSettings* options) const override;

protected:
    std::vector<openhost::OptionRow> optionRows() const override;
    const char* assetType() const override { return "preset_pose"; }
    dson::SceneAsset describe(const DzFileIOSettings& options) const override;
};

namespace openhost {

/// The name with ".duf" behind it if it has no such extension; an empty name stays empty.
QString WithUserExtension(const QString& filename);

} // namespace openhost
