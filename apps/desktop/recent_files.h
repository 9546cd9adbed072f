// The menu of the files that were opened or saved last.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>
#include <QStringList>

namespace desktop {

/// Newest first; remembered from run to run. It cannot be opened while there is nothing in it.
class RecentFilesMenu : public QMenu {
    Q_OBJECT

public:
    RecentFilesMenu();

    QStringList files() const;

    static constexpr int most = 8;

public slots:
    /// Puts the file at the top.
    void note(const QString& file);
    /// Takes the file out, such as one that is gone.
    void forget(const QString& file);

signals:
    void listChanged(const QStringList& files);
    void chosen(const QString& file); ///< which may be gone

private slots:
    void choose(QAction* entry);
    void clearList();

private:
    void remember(const QStringList& files);
    void fill(const QStringList& files);
};

} // namespace desktop
