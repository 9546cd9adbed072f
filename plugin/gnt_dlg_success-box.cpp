// A check box for a name of any length.
// SPDX-License-Identifier: MIT

#include "gnt_dlg_success-box.h"

#include <QFontMetrics>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextLayout>
#include <QTextOption>

namespace {

const int widestLine = 32; // characters
const int mostLines = 6;   // a window that is to stay on the screen has no room for more

QString WithoutMnemonics(const QString& text)
{
    QString copy = text;
    return copy.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

GntNameBox::GntNameBox(const QString& name, QWidget* parent)
    : QCheckBox(WithoutMnemonics(name), parent), _name(name)
{
}

GntNameBox::~GntNameBox() = default;

QString GntNameBox::lines() const
{
    const qreal width = widestLine * fontMetrics().averageCharWidth();
    QTextLayout layout(_name, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList all;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (all.size() + 1 == mostLines && line.textStart() + line.textLength() < _name.size()) {
            all.append(fontMetrics().elidedText(_name.mid(line.textStart()), Qt::ElideRight,
                                                static_cast<int>(width)));
            break;
        }
        all.append(_name.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return WithoutMnemonics(all.join(QLatin1String("\n")));
}

QSize GntNameBox::sizeHint() const
{
    ensurePolished();
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = lines();
    const QSize text =
        style()->itemTextRect(fontMetrics(), QRect(), Qt::TextShowMnemonic, false, option.text).size();
    return style()->sizeFromContents(QStyle::CT_CheckBox, &option, text, this);
}

QSize GntNameBox::minimumSizeHint() const
{
    return sizeHint();
}

void GntNameBox::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = lines();
    QStylePainter(this).drawControl(QStyle::CE_CheckBox, option);
}
