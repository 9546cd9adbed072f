// What stands in the place of the view while the scene is empty.
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollArea>
#include <QStringList>
#include <QTimer>

class QGridLayout;
class QLabel;
class QListWidget;
class QListWidgetItem;

namespace desktop {

/// What there is to begin with, and the files that were used last, with pictures. Covers the widget that it
/// is over as long as nothing is in the scene.
class StartPage : public QScrollArea {
    Q_OBJECT

public:
    /// @param covered  owns the page
    explicit StartPage(QWidget& covered);

public slots:
    void showRecent(const QStringList& files);
    void follow(); ///< the scene

signals:
    void conversionWanted();
    void openWanted();
    void samplesWanted();
    void manualWanted();
    void fileChosen(const QString& file); ///< which may be gone

protected:
    /// Keeps it as large as what it covers.
    bool eventFilter(QObject* object, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private slots:
    void choose(QListWidgetItem* item);
    void showPicture(const QString& file);

private:
    QWidget* makeTasks();
    QWidget* makeRecent();
    void arrange();

    QGridLayout* _grid = nullptr;
    QWidget* _tasks = nullptr;
    QWidget* _recentPart = nullptr;
    QListWidget* _recent = nullptr;
    QTimer _soon;  ///< since what loads a figure tells of each of its nodes
    QTimer _later; ///< while work is under way
};

} // namespace desktop
