// Buttons whose clicks run a callback.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include <QObject>

class QAbstractButton;
class QBoxLayout;
class QMenu;
class QPushButton;
class QToolButton;
class QWidget;

namespace kst {

class FloatPropertySetting;
class FloatSliderController;

/// Runs a callback when a button is clicked. Whatever std::exception the callback throws is shown in the
/// critical box, an empty callback's too. Must live as long as its button can be clicked; one handler holds
/// one callback.
class ButtonHandler : public QObject {
    Q_OBJECT

public:
    ButtonHandler();
    ~ButtonHandler() override;

    /// @param help  the button's tool tip, as for gui::SetHelp
    void connect(QAbstractButton& button, std::function<void()> callback,
                 std::string_view help = std::string_view());

    /// Makes a tool button, owned by the layout's widget, as gui::SetUpToolButton shows it.
    /// @param index  place in the layout; -1 for the end
    QToolButton& createAndConnectToolButton(QBoxLayout& layout, std::string_view iconPath,
                                            std::function<void()> callback, std::string_view text,
                                            std::string_view tooltip, int index = -1);

private slots:
    void slotClicked();

private:
    std::function<void()> _callback;
};

/// Makes tool buttons and keeps their handlers. Must live as long as the buttons can be clicked.
class ToolButtons {
public:
    ToolButtons();
    ~ToolButtons();
    ToolButtons(const ToolButtons&) = delete;
    ToolButtons& operator=(const ToolButtons&) = delete;

    /// The parameters are those of ButtonHandler::createAndConnectToolButton.
    QToolButton& addToolButton(QBoxLayout& layout, std::string_view iconPath, std::function<void()> callback,
                               std::string_view text, std::string_view tooltip, int index = -1);

    /// Appends "Min", "Default" and "Max" for a dial. A click moves the slider alone; the setting follows
    /// when the dialog accepts.
    /// @param dialName    rich text, as the tool tips name the dial; shown as it is
    /// @param pSetting    its limits and default, in dial units (1.0 shows as 100 %)
    void addLeftDefaultRightToolButtons(QBoxLayout& layout, std::string_view dialName,
                                        const std::shared_ptr<FloatPropertySetting>& pSetting,
                                        const std::shared_ptr<FloatSliderController>& pController);

private:
    std::vector<std::shared_ptr<ButtonHandler>> _handlers;
};

namespace gui {

/// Makes a push button, owned by the parent, and connects its click.
QPushButton* CreateAndConnectButtonClicked(std::string_view text, const QObject* pReceiver,
                                           const char* pcszSlot, QWidget* parent = nullptr);
/// Lets a button be no narrower than its text and some room beside it take.
void GiveRoomForText(QAbstractButton& button);
/// A push button of the size that the host gives its own; the caller or the parent owns it.
QPushButton* CreateDialogButton(std::string_view text, QWidget* parent);
/// A push button no wider than its text needs; the caller or the parent owns it.
QPushButton* CreateTinyPushButton(std::string_view text, QWidget* parent = nullptr);
/// A push button that opens the menu, which it does not own; the caller or the parent owns the button.
QPushButton* CreateDropDownMenuButton(QMenu& menu, QWidget* parent = nullptr);

/// Shows the picture in the colours of the host's buttons and about as high as their text, or the text where
/// there is no such picture.
/// @param iconPath  a resource, or a name that the host's style knows
/// @param text      plain; names the button in its tool tip and to screen readers
/// @param tooltip   may be empty
void SetUpToolButton(QToolButton& button, std::string_view iconPath, std::string_view text,
                     std::string_view tooltip);

} // namespace gui
} // namespace kst
