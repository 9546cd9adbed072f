// Small helpers around widgets: connections, visibility, a question.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class QAbstractButton;
class QAbstractItemView;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLayout;
class QLineEdit;
class QObject;
class QPushButton;
class QWidget;

namespace kst {
namespace gui {

/// Widgets and the scene belong to one thread; asserts that this is it.
void AssertGuiThread();

/// Connects, and asserts that it worked: a signal or slot that does not exist is a programming error.
/// @param pcszSignal  SIGNAL(...), types spelled as they were declared
/// @param pcszSlot    SLOT(...) or SIGNAL(...) of the receiver
void ConnectSignal(const QObject& o, const char* pcszSignal, const QObject* pReceiver, const char* pcszSlot);

// The usual signals of the usual widgets, connected by ConnectSignal; the slot takes the signal's arguments
// or fewer.
void ConnectButtonClicked(const QAbstractButton& button, const QObject* pReceiver, const char* pcszSlot);
void ConnectCheckBoxStateChanged(const QCheckBox& box, const QObject* pReceiver, const char* pcszSlot);
void ConnectLineEditTextChanged(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot);
void ConnectLineEditEditingFinished(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot);
void ConnectLineEditReturnPressed(const QLineEdit& edit, const QObject* pReceiver, const char* pcszSlot);
void ConnectComboBoxIndexChanged(const QComboBox& box, const QObject* pReceiver, const char* pcszSlot);
/// Asserts that the view has a selection model, which it gets with its model. A later model brings another
/// selection model, so connect again then.
void ConnectTableModelSelectionChanged(const QAbstractItemView& view, const QObject* pReceiver,
                                       const char* pcszSlot);
void ConnectTableActivated(const QAbstractItemView& view, const QObject* pReceiver, const char* pcszSlot);
/// The widget's context menu policy is the caller's to set.
void ConnectCustomContextMenuRequested(const QWidget& widget, const QObject* pReceiver, const char* pcszSlot);
void ConnectGroupBoxToggled(const QGroupBox& box, const QObject* pReceiver, const char* pcszSlot);

/// Appends the widget itself if it is a push button, otherwise every push button below it, depth first.
void CollectPushButtons(QWidget* widget, std::vector<QPushButton*>& buttons);
/// Clicks as a user would: the button is seen going down for 100 ms.
void PushButtonClick(QPushButton& button);

/// Shows or hides every widget of the layout and of the layouts in it.
void ShowHideLayout(QLayout& layout, bool show);
/// The same for a group box and everything in its layout.
void ShowHideGroupBox(QGroupBox& box, bool show);

/// A modal question with one button of its own and Cancel.
/// @param parent  null for the host's dialog parent
/// @return false when cancelled
bool AskCustomActionOrCancel(QWidget* parent, const char* title, const char* text, const char* actionText);

} // namespace gui
} // namespace kst
