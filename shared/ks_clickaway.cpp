// Answering the host's known pop-ups while an operation runs unattended.
// SPDX-License-Identifier: MIT

#include "ks_clickaway.h"

#include "ks_gui.h"

#include <vector>

#include <QApplication>
#include <QPushButton>
#include <QTimer>

namespace kst {

namespace {

const int intervalMilliseconds = 300;

void PressOneOfTwo(QWidget& window, bool first)
{
    std::vector<QPushButton*> buttons;
    gui::CollectPushButtons(&window, buttons);
    if (buttons.size() == 2)
        gui::PushButtonClick(*buttons[first ? 0 : 1]);
}

void PressAccept(QWidget& window)
{
    std::vector<QPushButton*> buttons;
    gui::CollectPushButtons(&window, buttons);
    for (QPushButton* const button : buttons) {
        if (button->text() == QLatin1String("Accept")) {
            gui::PushButtonClick(*button);
            return;
        }
    }
}

/// Answering one window may have deleted another of the same look.
bool IsToplevel(const QWidget* widget)
{
    return QApplication::topLevelWidgets().contains(const_cast<QWidget*>(widget));
}

} // namespace

bool ToplevelWindowLess::operator()(const std::shared_ptr<ToplevelWindow>& a,
                                    const std::shared_ptr<ToplevelWindow>& b) const
{
    return a->objectName != b->objectName ? a->objectName < b->objectName : a->windowTitle < b->windowTitle;
}

Snapshot::Snapshot()
{
    gui::AssertGuiThread();
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* const widget : widgets)
        if (!widget->windowTitle().isEmpty())
            windows.insert(std::make_shared<ToplevelWindow>(
                ToplevelWindow{widget->objectName(), widget->windowTitle(), widget}));
}

class Clickaway::Impl {
public:
    QTimer timer;
    Snapshot before;
};

Clickaway::Clickaway(bool pressFirstButton) : _pressFirstButton(pressFirstButton), _pImpl(new Impl)
{
    gui::ConnectSignal(_pImpl->timer, SIGNAL(timeout()), this, SLOT(slotTimeout()));
    _pImpl->timer.start(intervalMilliseconds);
}

Clickaway::~Clickaway() = default;

void Clickaway::slotTimeout()
{
    const Snapshot now;
    for (const std::shared_ptr<ToplevelWindow>& window : now.windows)
        if (_pImpl->before.windows.count(window) == 0 && IsToplevel(window->widget))
            handle(*window);
}

void Clickaway::handle(const ToplevelWindow& window)
{
    const bool isUnnamed = window.objectName.isEmpty();
    QWidget& widget = *window.widget;
    if (window.objectName == QLatin1String("MissingAssetsDialog") &&
        window.windowTitle == QLatin1String("Missing Files")) {
        ++_handled[MissingFiles];
        widget.close();
    } else if (isUnnamed && window.windowTitle == QLatin1String("Error opening file")) {
        ++_handled[OpenError];
        widget.close();
    } else if (isUnnamed && window.windowTitle == QLatin1String("Duplicate Formulas Found")) {
        ++_handled[DuplicateFormulas];
        widget.close();
    } else if (isUnnamed && window.windowTitle == QLatin1String("Preset Exceeds Limits")) {
        ++_handled[PresetLimits];
        PressOneOfTwo(widget, _pressFirstButton);
    } else if (window.objectName == QLatin1String("DzDFormPresetLoadOptionsDlg") &&
               window.windowTitle.startsWith(QLatin1String("D-Former Load Options"))) {
        ++_handled[DFormOptions];
        PressAccept(widget);
    }
}

} // namespace kst
