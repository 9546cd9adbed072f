// Small helpers around widgets.
// SPDX-License-Identifier: MIT

#pragma once

#include <vector>

class QObject;
class QPushButton;
class QWidget;

namespace kst {

/// The wait cursor for a scope; restored when it ends, also on the way of an exception.
class WaitCursor {
public:
    /// @param busyOnly  the arrow with an hourglass, which says that the user may go on
    explicit WaitCursor(bool busyOnly = false);
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

    void again(); ///< pushes the cursor again after restore()
    void restore();

private:
    bool _busyOnly;
    bool _pushed = false;
};

namespace gui {

void AssertGuiThread();

/// Appends the widget itself if it is a push button, otherwise every push button below it, depth first.
void CollectPushButtons(QWidget* widget, std::vector<QPushButton*>& buttons);
/// Clicks as a user would: the button is seen going down for 100 ms.
void PushButtonClick(QPushButton& button);

/// A modal question with one button of its own and Cancel.
/// @param parent  null for the host's dialog parent
/// @return false when cancelled
bool AskCustomActionOrCancel(QWidget* parent, const char* title, const char* text, const char* actionText);

} // namespace gui
} // namespace kst
