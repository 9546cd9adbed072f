// Small helpers around widgets.
// SPDX-License-Identifier: MIT

#include "shared/ks_gui.h"

#include "shared/ks_assert.h"
#include "shared/ks_string.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include <dzapp.h>

namespace kst {

WaitCursor::WaitCursor(bool busyOnly) : _busyOnly(busyOnly)
{
    again();
}

WaitCursor::~WaitCursor()
{
    restore();
}

void WaitCursor::again()
{
    if (_pushed)
        return;
    QApplication::setOverrideCursor(_busyOnly ? Qt::BusyCursor : Qt::WaitCursor);
    _pushed = true;
}

void WaitCursor::restore()
{
    if (!_pushed)
        return;
    QApplication::restoreOverrideCursor();
    _pushed = false;
}

namespace gui {

void AssertGuiThread()
{
    assert(QThread::currentThread() == QCoreApplication::instance()->thread());
}

void CollectPushButtons(QWidget* widget, std::vector<QPushButton*>& buttons)
{
    if (QPushButton* const button = qobject_cast<QPushButton*>(widget)) {
        buttons.push_back(button);
        return;
    }
    const QObjectList& children = widget->children();
    for (int i = 0; i < children.size(); ++i)
        if (QWidget* const child = qobject_cast<QWidget*>(children.at(i)))
            CollectPushButtons(child, buttons);
}

void PushButtonClick(QPushButton& button)
{
    button.animateClick(100);
}

bool AskCustomActionOrCancel(QWidget* parent, const char* title, const char* text, const char* actionText)
{
    QMessageBox box(QMessageBox::Question, str::ToQ(title), str::ToQ(text), QMessageBox::NoButton,
                    parent ? parent : dzApp->getDialogParent());
    const QPushButton* const action = box.addButton(str::ToQ(actionText), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == action;
}

} // namespace gui
} // namespace kst
