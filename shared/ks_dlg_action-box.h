// A message box with buttons, check boxes and widgets of one's own.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_dlg_base.h"

#include <memory>
#include <string_view>

class QCheckBox;
class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace kst {

/// exec() gives the result code of the button pressed. Escape and the window's close button count as Cancel.
class ActionBoxDialog : public DialogBase {
    Q_OBJECT

public:
    enum Icon { NoIcon, Question, Information, Warning, Critical };
    /// The buttons to begin with. The affirmative one stands at the right edge and is the default.
    enum ButtonMode { OK, OKCancel, YesNo, YesNoCancel, CancelOnly, CustomButtons };
    /// Result codes of these buttons; codes of one's own begin at CustomResult.
    enum Result {
        ResultCancel = QDialog::Rejected,
        ResultOK = QDialog::Accepted,
        ResultYes = ResultOK,
        ResultNo = 2,
        CustomResult = 3
    };

    /// @param heading  rich text, made a sentence and shown in bold
    /// @param message  rich text, made a sentence
    /// @param title    of the window; null for the product's alone
    ActionBoxDialog(QWidget* parent, Icon icon, std::string_view heading, std::string_view message,
                    const char* title, ButtonMode mode);
    ~ActionBoxDialog() override;

    void setIcon(Icon icon);
    /// Appends a paragraph of rich text below the message. Like what the other functions make, it belongs to
    /// the dialog.
    QLabel& addLabel(std::string_view text);
    /// @param tooltip  as for gui::SetHelp; may be empty
    QCheckBox& addCheckBox(std::string_view text, std::string_view tooltip);
    /// Appends a widget, which the dialog owns from now on.
    void addWidget(QWidget& widget);
    /// Adds a button left of those that are there; the first one of all becomes the default.
    /// @param resultCode  what exec() gives when it is pressed
    QPushButton& addButton(std::string_view text, int resultCode);

    QVBoxLayout& getMainLayout() const;
    QHBoxLayout& getButtonLayout() const;

private:
    void addButtons(ButtonMode mode);
    void finish(int resultCode);

    class Impl;
    std::unique_ptr<Impl> _pImpl;
};

} // namespace kst
