// A list of asset files.
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QListWidget>

class DzAsset;

namespace openhost {

/// Files by name. A double click, Return and the context menu open what is selected.
class AssetList : public QListWidget {
    Q_OBJECT
public:
    explicit AssetList(QWidget* parent = nullptr);
    ~AssetList() override;

    /// @param files  absolute; what is selected stays so as far as it is still there
    void setFiles(const QStringList& files);
    QStringList files() const;
    QStringList selectedFiles() const; ///< in the list's order
    /// Selects these alone and scrolls to the first; false when none of them is in the list.
    bool selectFiles(const QStringList& files);
    /// As DzAsset objects, which the list owns and keeps.
    QObjectList selectedAssets();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private slots:
    /// Replaces the scene by a scene, and adds anything else to it.
    void openSelected();
    /// Adds to the scene.
    void mergeSelected();

private:
    QHash<QString, DzAsset*> _assets; ///< by file
};

} // namespace openhost
