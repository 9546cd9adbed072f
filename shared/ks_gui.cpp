// Small helpers around widgets: connections, visibility, a question.
// SPDX-License-Identifier: MIT

#include "ks_gui.h"

#include "ks_assert.h"
#include "ks_string.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include <dzapp.h>

namespace kst {

namespace gui {

void AssertGuiThread()
{
    assert(QThread::currentThread() == QCoreApplication::instance()->thread());
}

void ConnectSignal(const QObject& o, const char* pcszSignal, const QObject* pReceiver, const char* pcszSlot)
{
    assert(QObject::connect(&o, pcszSignal, pReceiver, pcszSlot) && "QObject connection failed");
}

void ConnectButtonClicked(const QAbstractButton& button, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(button, SIGNAL(clicked()), pReceiver, pcszSlot);
}

void ConnectCheckBoxStateChanged(const QCheckBox& box, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(box, SIGNAL(stateChanged(int)), pReceiver, pcszSlot);
}

void ConnectLineEditTextChanged(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(edit, SIGNAL(textChanged(const QString&)), pReceiver, pcszSlot);
}

void ConnectLineEditEditingFinished(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(edit, SIGNAL(editingFinished()), pReceiver, pcszSlot);
}

void ConnectLineEditReturnPressed(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(edit, SIGNAL(returnPressed()), pReceiver, pcszSlot);
}

void ConnectComboBoxIndexChanged(const QComboBox& box, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(box, SIGNAL(currentIndexChanged(int)), pReceiver, pcszSlot);
}

void ConnectTableModelSelectionChanged(const QAbstractItemView& view, const QObject* pReceiver,
                                       const char* pcszSlot)
{
    const QItemSelectionModel* const pObj = view.selectionModel();
    assert(pObj);
    ConnectSignal(*pObj, SIGNAL(selectionChanged(const QItemSelection&, const QItemSelection&)), pReceiver,
                  pcszSlot);
}

void ConnectTableActivated(const QAbstractItemView& view, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(view, SIGNAL(activated(const QModelIndex&)), pReceiver, pcszSlot);
}

void ConnectCustomContextMenuRequested(const QWidget& widget, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(widget, SIGNAL(customContextMenuRequested(const QPoint&)), pReceiver, pcszSlot);
}

void ConnectGroupBoxToggled(const QGroupBox& box, const QObject* pReceiver, const char* pcszSlot)
{
    ConnectSignal(box, SIGNAL(toggled(bool)), pReceiver, pcszSlot);
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
    AssertGuiThread();
    button.animateClick(100);
}

void ShowHideLayout(QLayout& layout, bool show)
{
    AssertGuiThread();
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem* const item = layout.itemAt(i);
        if (QWidget* const widget = item->widget())
            widget->setVisible(show);
        else if (QLayout* const inner = item->layout())
            ShowHideLayout(*inner, show);
    }
}

void ShowHideGroupBox(QGroupBox& box, bool show)
{
    if (QLayout* const layout = box.layout())
        ShowHideLayout(*layout, show);
    box.setVisible(show);
}

bool AskCustomActionOrCancel(QWidget* parent, const char* title, const char* text, const char* actionText)
{
    AssertGuiThread();
    QMessageBox box(QMessageBox::Question, str::ToQ(title), str::ToQ(text), QMessageBox::NoButton,
                    parent ? parent : dzApp->getDialogParent());
    const QPushButton* const action = box.addButton(str::ToQ(actionText), QMessageBox::AcceptRole);
    box.addButton(QMessageBox::Cancel);
    box.exec();
    return box.clickedButton() == action;
}

} // namespace gui
} // namespace kst
