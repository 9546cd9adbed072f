// A message box with buttons, check boxes and widgets of one's own.
// SPDX-License-Identifier: MIT

#include "ks_dlg_action-box.h"

#include "ks_critical-box.h"
#include "ks_gui_button.h"
#include "ks_gui_style.h"
#include "ks_string.h"

#include "ui_ks_dlg_action-box.h"

#include <vector>

#include <QCheckBox>
#include <QFontMetrics>
#include <QPushButton>
#include <QStyle>

namespace kst {

namespace {

QStyle::StandardPixmap StandardPixmapOf(ActionBoxDialog::Icon icon)
{
    switch (icon) {
    case ActionBoxDialog::Question:
        return QStyle::SP_MessageBoxQuestion;
    case ActionBoxDialog::Warning:
        return QStyle::SP_MessageBoxWarning;
    case ActionBoxDialog::Critical:
        return QStyle::SP_MessageBoxCritical;
    default:
        return QStyle::SP_MessageBoxInformation;
    }
}

} // namespace

class ActionBoxDialog::Impl {
public:
    Ui_ActionBox ui;
    std::vector<std::unique_ptr<ButtonHandler>> handlers;
    QPushButton* leftmostButton = nullptr;
};

ActionBoxDialog::ActionBoxDialog(QWidget* parent, Icon icon, std::string_view heading,
                                 std::string_view message, const char* title, ButtonMode mode)
    : DialogBase(parent), _pImpl(new Impl)
{
    Ui_ActionBox& ui = _pImpl->ui;
    ui.setupUi(this);
    ui.plblMessage->setText(str::ToQ(daz::MakeBoxBody(heading, message)));
    // Wrapped text has no width of its own; about sixty characters a line read well.
    ui.plblMessage->setMinimumWidth(60 * ui.plblMessage->fontMetrics().averageCharWidth());
    setIcon(icon);
    // Before the buttons: a change of the window's flags takes the focus from what has it.
    initCommon(title, QString(), QString());
    addButtons(mode);
}

ActionBoxDialog::~ActionBoxDialog() = default;

void ActionBoxDialog::setIcon(Icon icon)
{
    QLabel& label = *_pImpl->ui.plblIcon;
    label.setVisible(icon != NoIcon);
    if (icon == NoIcon)
        return;
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    label.setPixmap(style()->standardIcon(StandardPixmapOf(icon), nullptr, this).pixmap(size, size));
}

QLabel& ActionBoxDialog::addLabel(std::string_view text)
{
    QLabel& label = *new QLabel(str::ToQ(text));
    label.setTextFormat(Qt::RichText);
    label.setWordWrap(true);
    addWidget(label);
    return label;
}

QCheckBox& ActionBoxDialog::addCheckBox(std::string_view text, std::string_view tooltip)
{
    QCheckBox& box = *new QCheckBox(str::ToQ(text));
    gui::SetHelp(box, tooltip);
    addWidget(box);
    return box;
}

void ActionBoxDialog::addWidget(QWidget& widget)
{
    _pImpl->ui.pvertForCheckbox->addWidget(&widget);
}

QPushButton& ActionBoxDialog::addButton(std::string_view text, int resultCode)
{
    QPushButton& button = *gui::CreateDialogButton(text, this);
    getButtonLayout().insertWidget(1, &button); // behind the stretch
    if (_pImpl->leftmostButton) {
        setTabOrder(&button, _pImpl->leftmostButton);
    } else {
        button.setDefault(true);
        // The toolkit would give the focus, and with it the return key, to the leftmost button.
        button.setFocus();
    }
    _pImpl->leftmostButton = &button;
    _pImpl->handlers.push_back(std::unique_ptr<ButtonHandler>(new ButtonHandler));
    _pImpl->handlers.back()->connect(button, [this, resultCode] { finish(resultCode); });
    return button;
}

QVBoxLayout& ActionBoxDialog::getMainLayout() const
{
    return *_pImpl->ui.pvertMain;
}

QHBoxLayout& ActionBoxDialog::getButtonLayout() const
{
    return *_pImpl->ui.phorzButtons;
}

void ActionBoxDialog::addButtons(ButtonMode mode)
{
    if (mode == OK || mode == OKCancel)
        addButton("OK", ResultOK);
    if (mode == YesNo || mode == YesNoCancel) {
        addButton("Yes", ResultYes);
        addButton("No", ResultNo);
    }
    if (mode == OKCancel || mode == YesNoCancel || mode == CancelOnly)
        addButton("Cancel", ResultCancel);
}

void ActionBoxDialog::finish(int resultCode)
{
    saveWindowPos(nullptr);
    done(resultCode);
}

} // namespace kst
