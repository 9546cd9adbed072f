// Whether a dialog has room for all that it shows.
// SPDX-License-Identifier: MIT

#include "tests/windows/dialog_room.h"

#include "ks_string.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionGroupBox>
#include <QToolButton>

#include <gtest/gtest.h>

using kst::str::ToStd;

namespace {

/// What a group box needs for its title, frame included.
int TitleWidth(const QGroupBox& group)
{
    QStyleOptionGroupBox option;
    option.initFrom(&group);
    option.text = group.title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    return group.style()
        ->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &group)
        .width();
}

} // namespace

HalfAsLargeAgain::HalfAsLargeAgain() : _usual(QApplication::font())
{
    QFont font = _usual;
    font.setPointSizeF(_usual.pointSizeF() * 1.5);
    QApplication::setFont(font);
}

HalfAsLargeAgain::~HalfAsLargeAgain()
{
    QApplication::setFont(_usual);
}

std::string NameOf(const QWidget& widget)
{
    const QString name = widget.objectName().isEmpty() ? widget.accessibleName() : widget.objectName();
    return ToStd(QLatin1String(widget.metaObject()->className()) + QLatin1Char(' ') + name);
}

void ExpectNothingCutOff(const QWidget& dialog)
{
    for (const QWidget* const widget : dialog.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->isWindow())
            continue;
        const auto* const label = qobject_cast<const QLabel*>(widget);
        const QSize wanted = widget->sizeHint();
        if (label && label->wordWrap()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << NameOf(*widget);
        } else if (label || qobject_cast<const QPushButton*>(widget) ||
                   qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QRadioButton*>(widget) ||
                   qobject_cast<const QToolButton*>(widget)) {
            EXPECT_GE(widget->width(), wanted.width()) << NameOf(*widget);
            EXPECT_GE(widget->height(), wanted.height()) << NameOf(*widget);
        } else if (qobject_cast<const QLineEdit*>(widget)) {
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << NameOf(*widget);
        } else if (const auto* const group = qobject_cast<const QGroupBox*>(widget)) {
            EXPECT_GE(TitleWidth(*group), group->fontMetrics().horizontalAdvance(group->title()))
                << NameOf(*widget);
        }
        EXPECT_TRUE(dialog.rect().contains(
            QRect(widget->mapTo(const_cast<QWidget*>(&dialog), QPoint(0, 0)), widget->size())))
            << NameOf(*widget);
    }
}

void SavePictureOver(QWidget& below, QWidget& above, const std::string& name)
{
    const QString folder = qEnvironmentVariable("GANTREL_PICTURES");
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return;
    const QPixmap front = above.grab();
    QPixmap both(below.size().expandedTo(front.size()) + QSize(40, 40));
    both.fill(Qt::darkGray);
    QPainter painter(&both);
    painter.drawPixmap(20, 20, below.grab());
    QRect middle(QPoint(0, 0), front.size());
    middle.moveCenter(both.rect().center());
    painter.drawPixmap(middle.topLeft(), front);
    painter.drawRect(middle.adjusted(-1, -1, 0, 0));
    painter.end();
    both.save(QDir(folder).filePath(kst::str::ToQ(name) + QLatin1String(".png")));
}
