// Buttons whose clicks run a callback.
// SPDX-License-Identifier: MIT

#include "ks_gui_button.h"

#include "ks_critical-box.h"
#include "ks_ctl_slider.h"
#include "ks_gui.h"
#include "ks_gui_style.h"
#include "ks_property-setting.h"
#include "ks_qt-compat.h"
#include "ks_string.h"

#include <algorithm>
#include <utility>

#include <QBoxLayout>
#include <QFontMetrics>
#include <QIcon>
#include <QImage>
#include <QMenu>
#include <QPalette>
#include <QPushButton>
#include <QToolButton>

#include <dzapp.h>
#include <dzstyle.h>
#include <dzstyledefs.h>

#include <fmt/format.h>

namespace kst {

namespace {

std::string ToolTipOf(std::string_view text, std::string_view tooltip)
{
    return tooltip.empty() ? fmt::format("<b>{}</b>", text) : fmt::format("<b>{}:</b> {}", text, tooltip);
}

} // namespace

ButtonHandler::ButtonHandler() = default;
ButtonHandler::~ButtonHandler() = default;

void ButtonHandler::connect(QAbstractButton& button, std::function<void()> callback, std::string_view help)
{
    _callback = std::move(callback);
    gui::SetHelp(button, help);
    gui::ConnectButtonClicked(button, this, SLOT(slotClicked()));
}

QToolButton& ButtonHandler::createAndConnectToolButton(QBoxLayout& layout, std::string_view iconPath,
                                                       std::function<void()> callback, std::string_view text,
                                                       std::string_view tooltip, int index)
{
    QToolButton& button = *new QToolButton(layout.parentWidget());
    gui::SetUpToolButton(button, iconPath, text, tooltip);
    layout.insertWidget(index, &button);
    connect(button, std::move(callback));
    return button;
}

void ButtonHandler::slotClicked()
{
    // A copy: the callback may close the dialog that owns this handler.
    const std::function<void()> callback = _callback;
    daz::CallOutermost("Unhandled exception in button handler", nullptr, callback);
}

ToolButtons::ToolButtons() = default;
ToolButtons::~ToolButtons() = default;

QToolButton& ToolButtons::addToolButton(QBoxLayout& layout, std::string_view iconPath,
                                        std::function<void()> callback, std::string_view text,
                                        std::string_view tooltip, int index)
{
    _handlers.push_back(std::make_shared<ButtonHandler>());
    return _handlers.back()->createAndConnectToolButton(layout, iconPath, std::move(callback), text, tooltip,
                                                        index);
}

void ToolButtons::addLeftDefaultRightToolButtons(QBoxLayout& layout, std::string_view dialName,
                                                 const std::shared_ptr<FloatPropertySetting>& pSetting,
                                                 const std::shared_ptr<FloatSliderController>& pController)
{
    const std::string dial = str::Quote(dialName);
    const auto add = [&](const char* iconPath, std::function<void()> callback, const char* text,
                         const std::string& tooltip) {
        QToolButton& button = addToolButton(layout, iconPath, std::move(callback), text, std::string_view());
        // Past the help formatter, which would take what it knows of the name for marks of the text.
        button.setToolTip(str::ToQ(ToolTipOf(text, tooltip)));
    };
    add(
        ":/bootstrap/24/chevron-bar-left.png",
        [pSetting, pController] { pController->setWidgetValue(pSetting->getMin()); }, "Min",
        fmt::format("Sets the {} dial to the minimum value ({:03.1f}%).", dial, pSetting->getMin() * 100));
    add(
        ":/bootstrap/24/stop-circle.png",
        [pSetting, pController] { pController->setWidgetValue(pSetting->getDefault()); }, "Default",
        fmt::format("Sets the {} dial to the default value ({:03.1f}%).", dial,
                    pSetting->getDefault() * 100));
    add(
        ":/bootstrap/24/chevron-bar-right.png",
        [pSetting, pController] { pController->setWidgetValue(pSetting->getMax()); }, "Max",
        fmt::format("Sets the {} dial to the maximum value ({:03.1f}%).", dial, pSetting->getMax() * 100));
}

namespace gui {

namespace {

QIcon TintedIcon(const QPalette& palette, const QString& iconPath)
{
    const QImage image(iconPath);
    QIcon icon;
    if (image.isNull())
        return icon;
    icon.addPixmap(CreateAlphaPixmap(image, palette.color(QPalette::Normal, QPalette::ButtonText)),
                   QIcon::Normal);
    icon.addPixmap(CreateAlphaPixmap(image, palette.color(QPalette::Disabled, QPalette::ButtonText)),
                   QIcon::Disabled);
    return icon;
}

bool SetIcon(QToolButton& button, const QString& iconPath)
{
    const DzStyle* const style = dzApp->getStyle();
    if (style && style->setStyledIcon(&button, iconPath))
        return true;
    const QIcon icon = TintedIcon(button.palette(), iconPath);
    button.setIcon(icon);
    return !icon.isNull();
}

} // namespace

QPushButton* CreateAndConnectButtonClicked(std::string_view text, const QObject* pReceiver,
                                           const char* pcszSlot, QWidget* parent)
{
    QPushButton* const button = new QPushButton(str::ToQ(text), parent);
    ConnectButtonClicked(*button, pReceiver, pcszSlot);
    return button;
}

void GiveRoomForText(QAbstractButton& button)
{
    const QFontMetrics metrics = button.fontMetrics();
    button.setMinimumWidth(metrics.boundingRect(button.text()).width() + 4 * metrics.averageCharWidth());
}

QPushButton* CreateDialogButton(std::string_view text, QWidget* parent)
{
    QPushButton* const button = new QPushButton(str::ToQ(text), parent);
    GiveRoomForText(*button);
    const DzStyle* const style = dzApp->getStyle();
    button->setMinimumWidth(
        std::max(button->minimumWidth(), style ? style->pixelMetric(DZ_PM_ButtonMinWidth) : 0));
    button->setMinimumHeight(style ? style->pixelMetric(DZ_PM_ButtonHeight) : 0);
    return button;
}

QPushButton* CreateTinyPushButton(std::string_view text, QWidget* parent)
{
    QPushButton* const button = new QPushButton(str::ToQ(text), parent);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    button->setAutoDefault(false);
    // The frame alone asks for some dozens of pixels more than a text of one letter.
    const QFontMetrics metrics = button->fontMetrics();
    button->setMaximumWidth(metrics.boundingRect(button->text()).width() + 2 * metrics.height());
    return button;
}

QPushButton* CreateDropDownMenuButton(QMenu& menu, QWidget* parent)
{
    QPushButton* const button = new QPushButton(menu.title(), parent);
    button->setStyleSheet(QLatin1String("QPushButton { font-size: 12pt; }"));
    button->setMenu(&menu);
    return button;
}

void SetUpToolButton(QToolButton& button, std::string_view iconPath, std::string_view text,
                     std::string_view tooltip)
{
    button.setText(str::ToQ(text));
    qt::SetAccessibleName(button, str::ToQ(text));
    button.setStyleSheet(QLatin1String("QToolButton { padding: 0px; margin: 0px; }"));
    SetHelp(button, ToolTipOf(text, tooltip));
    const int side = button.fontMetrics().height();
    button.setIconSize(QSize(side, side));
    button.setToolButtonStyle(SetIcon(button, str::ToQ(iconPath)) ? Qt::ToolButtonIconOnly
                                                                  : Qt::ToolButtonTextOnly);
}

} // namespace gui
} // namespace kst
