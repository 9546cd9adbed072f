// The window that shows how far long work has come.
// SPDX-License-Identifier: MIT

#include "progress_window.h"

#include "dzapp.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace openhost {

ProgressWindow::ProgressWindow(QWidget* parent)
    : QDialog(parent), _rowLayout(new QVBoxLayout), _time(new QLabel), _button(new QPushButton)
{
    setObjectName(QStringLiteral("ProgressWindow"));
    setWindowTitle(tr("Progress"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* const bottom = new QHBoxLayout;
    bottom->addWidget(_time);
    bottom->addStretch();
    bottom->addWidget(_button);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(_rowLayout);
    layout->addLayout(bottom);
    _button->setAutoDefault(false);
    connect(_button, &QPushButton::clicked, this, &ProgressWindow::handleButton);
    setCancel({});
    setMinimumWidth(50 * fontMetrics().averageCharWidth());
}

ProgressWindow::~ProgressWindow() = default;

void ProgressWindow::setRowCount(std::size_t count)
{
    while (_rows.size() > count) {
        delete _rows.back().label;
        delete _rows.back().bar;
        _rows.pop_back();
    }
    while (_rows.size() < count) {
        const Row row{new QLabel, new QProgressBar};
        row.label->setWordWrap(true);
        row.label->setTextFormat(Qt::PlainText);
        _rowLayout->addWidget(row.label);
        _rowLayout->addWidget(row.bar);
        _rows.push_back(row);
    }
}

void ProgressWindow::showLevels(const std::vector<ProgressLevel>& levels, double seconds)
{
    const bool hasFewer = levels.size() < _rows.size();
    setRowCount(levels.size());
    for (std::size_t i = 0; i < levels.size(); ++i) {
        _rows[i].label->setText(levels[i].info);
        _rows[i].bar->setRange(0, levels[i].total);
        _rows[i].bar->setValue(levels[i].position);
    }
    _time->setText(QStringLiteral("%1 s").arg(seconds, 0, 'f', 1));
    _time->setVisible(seconds >= 0.0);
    if (hasFewer)
        fitHeight();
    if (!isVisible())
        show();
}

/// Work within the work comes and goes; what it leaves behind would be empty.
void ProgressWindow::fitHeight()
{
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
}

void ProgressWindow::setCancel(std::function<void()> cancel)
{
    _cancel = std::move(cancel);
    _button->setText(tr("Cancel"));
    _button->setVisible(_cancel != nullptr);
    if (!isVisible())
        setModal(_cancel != nullptr);
}

void ProgressWindow::stayOpen()
{
    _isOver = true;
    for (const Row& row : _rows) {
        row.bar->setRange(0, 1);
        row.bar->setValue(1);
    }
    _button->setText(tr("Close"));
    _button->setEnabled(true);
    _button->show();
    setAttribute(Qt::WA_DeleteOnClose);
}

void ProgressWindow::handleButton()
{
    if (_isOver) {
        close();
        return;
    }
    _button->setEnabled(false); // it takes a moment until the work notices
    if (_cancel)
        _cancel();
}

void ProgressWindow::closeEvent(QCloseEvent* event)
{
    if (_isOver) {
        event->accept();
        return;
    }
    event->ignore();
    if (_cancel)
        handleButton();
}

void ProgressWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QDialog::keyPressEvent(event);
}

void ProgressWindows::show(const std::vector<ProgressLevel>& levels, double seconds,
                           std::function<void()> cancel)
{
    const bool isCancellable = bool(cancel);
    if (!_window)
        _window = new ProgressWindow(dzApp->getDialogParent());
    _window->setCancel(std::move(cancel));
    _window->showLevels(levels, seconds);
    QApplication::processEvents(isCancellable ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
}

void ProgressWindows::end(bool closes)
{
    if (!_window)
        return;
    if (closes)
        delete _window;
    else
        _window->stayOpen();
    _window.clear();
}

} // namespace openhost
