// A list of asset files.
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QListWidget>

class DzAsset;

namespace openhost {

/// Files by name, with their pictures as far as they are in sight. A double click, Return and the context
/// menu open what is selected; it can be dragged elsewhere as files.
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

signals:
    void folderWanted(const QString& file); ///< the one that the file is in
    void favoritesChanged();

protected:
    void changeEvent(QEvent* event) override;
    QStringList mimeTypes() const override;
    /// Copies alone: whoever moves files here would delete them there.
    Qt::DropActions supportedDropActions() const override;
    QMimeData* mimeData(const QList<QListWidgetItem*> items) const override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private slots:
    /// Replaces the scene by a scene, and adds anything else to it.
    void openSelected();
    /// Adds to the scene.
    void mergeSelected();
    void showFolder();
    void toggleFavorite();

private:
    void fitPictures();

    QHash<QString, DzAsset*> _assets; ///< by file
};

} // namespace openhost
