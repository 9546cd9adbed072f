// The window that shows how far long work has come.
// SPDX-License-Identifier: MIT

#pragma once

#include "app/progress_display.h"

#include <QDialog>
#include <QPointer>

#include <functional>
#include <vector>

class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace openhost {

/// One bar for each progress, the outermost on top. It takes input from other windows only while the work can
/// be cancelled: then it is modal.
class ProgressWindow : public QDialog {
    Q_OBJECT
public:
    explicit ProgressWindow(QWidget* parent);
    ~ProgressWindow();

    /// @param seconds  since the work began; below 0 when nobody wants to know
    void showLevels(const std::vector<ProgressLevel>& levels, double seconds);
    /// What its button does; an empty function takes the button away.
    void setCancel(std::function<void()> cancel);
    /// The work is over and the window stays until the user closes it.
    void stayOpen();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void handleButton();

private:
    struct Row {
        QLabel* label;
        QProgressBar* bar;
    };
    void setRowCount(std::size_t count);
    void fitHeight();

    std::function<void()> _cancel;
    std::vector<Row> _rows;
    QVBoxLayout* _rowLayout;
    QLabel* _time;
    QPushButton* _button;
    bool _isOver = false;
};

/// One window, which goes with the outermost progress.
class ProgressWindows : public ProgressDisplay {
public:
    void show(const std::vector<ProgressLevel>& levels, double seconds,
              std::function<void()> cancel) override;
    void end(bool closes) override;

private:
    QPointer<ProgressWindow> _window;
};

} // namespace openhost
