// The pane of the content that suits what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzpane.h"

#include <QPointer>

#include <memory>

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTimer;

namespace openhost {
class AssetList;
class PaneRefresh;
class UserFileScan;
} // namespace openhost

/// The user files of all content directories: presets only while something is selected that they could go
/// onto, everything else always.
class DzFileContentTab : public QWidget {
    Q_OBJECT
public:
    explicit DzFileContentTab(QWidget* parent);
    ~DzFileContentTab();

    /// As DzAsset objects, which live as long as the tab; in the order of the list.
    Q_INVOKABLE QObjectList getSelectedAssets();
    /// Clears the search, and selects these alone.
    /// @param category  a folder's path below its content directory, that the assets must be in; empty for
    /// any
    /// @param assets    absolute paths, paths below a content directory, or names
    /// @return false when none of them is in the list
    Q_INVOKABLE bool selectAssets(const QString& category, const QStringList& assets);
    /// Looks at all files again.
    void refresh();

private slots:
    void markStale();
    void rescan();
    void scanOn();
    void showFiles();

private:
    void build();
    void finishScan();

    openhost::PaneRefresh* _refresh;
    std::unique_ptr<openhost::UserFileScan> _scan; ///< null until it is needed
    QTimer* _scanTimer;                            ///< at work while there are more files to look at
    QLineEdit* _search = nullptr;                  ///< null until it is needed, as the list
    openhost::AssetList* _list = nullptr;
};

/// Folders at the second level of the content directories, and the user files of the selected ones.
class DzProductContentTab : public QWidget {
    Q_OBJECT
public:
    explicit DzProductContentTab(QWidget* parent);
    ~DzProductContentTab();

    /// Those selected among the products' files, as DzAsset objects, which live as long as the tab.
    Q_INVOKABLE QObjectList getSelectedAssets();
    /// Selects these alone.
    /// @param category  the folder that the products must be in; empty for any
    /// @param products  names
    /// @return false when there is none of them
    Q_INVOKABLE bool selectProducts(const QString& category, const QStringList& products);
    Q_INVOKABLE QStringList getSelectedProducts(); ///< names
    /// Looks at all folders again.
    void refresh();

private slots:
    void markStale();
    void showFiles();

private:
    void build();
    void fillProducts();

    openhost::PaneRefresh* _refresh;
    QListWidget* _products = nullptr; ///< null until it is needed, as the list
    openhost::AssetList* _list = nullptr;
};

class DzSmartContentPane : public DzPane {
    Q_OBJECT
public:
    enum Tab { FilesTab, ProductsTab };

    DzSmartContentPane();
    ~DzSmartContentPane();

    void refresh() override;

    Q_INVOKABLE QObject* getFileContentTab() const;    ///< null if it is gone
    Q_INVOKABLE QObject* getProductContentTab() const; ///< null if it is gone
    Q_INVOKABLE int getCurrentTab() const;             ///< a Tab

public slots:
    /// A number that is no Tab changes nothing.
    void setCurrentTab(int tab);

private:
    QTabWidget* _tabs;
    QPointer<DzFileContentTab> _files; ///< guarded, as whoever finds a tab may delete it
    QPointer<DzProductContentTab> _products;
};
