// Style sheets, markup and pictures for widgets.
// SPDX-License-Identifier: MIT

#include "ks_gui_style.h"

#include "ks_help.h"
#include "ks_qt-compat.h"
#include "ks_string.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QColor>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTableView>

#include <fmt/format.h>

namespace kst {
namespace gui {

namespace {

const char* const errorStyle = "font-weight:600; background-color:#aa0000; border: none; ";
const char* const warningStyle = "font-weight:600; color:#FF9933; ";

QString LabelOf(const QWidget& control)
{
    if (const QAbstractButton* const button = qobject_cast<const QAbstractButton*>(&control))
        return button->text();
    if (const QGroupBox* const box = qobject_cast<const QGroupBox*>(&control))
        return box->title();
    return qt::AccessibleName(control);
}

QString WithoutMnemonic(const QString& label)
{
    QString text;
    for (int i = 0; i < label.size(); ++i) {
        // Of two in a row the second is meant as a character.
        if (label.at(i) == QLatin1Char('&') && ++i == label.size())
            break;
        text += label.at(i);
    }
    return text;
}

} // namespace

void SetButtonStyle(QPushButton& button, int pointSize)
{
    button.setStyleSheet(
        QString(QLatin1String("QPushButton { font-size: %1pt; font-weight: bold; color: #ffffff; }"))
            .arg(pointSize));
}

void setTableViewCellPadding(QTableView& view, int px)
{
    view.setStyleSheet(QString(QLatin1String("QTableView::item { border: 0px; padding: %1px; }")).arg(px));
}

void MakeControlBackgroundRed(QWidget& widget, std::string_view selector)
{
    widget.setStyleSheet(
        QString(QLatin1String("%1 {%2}")).arg(str::ToQ(selector), QLatin1String(errorStyle)));
}

void MakeControlForegroundOrange(QWidget& widget, std::string_view selector)
{
    widget.setStyleSheet(
        QString(QLatin1String("%1 { %2 }")).arg(str::ToQ(selector), QLatin1String(warningStyle)));
}

void MakeLabelForegroundOrange(QLabel& label)
{
    MakeControlForegroundOrange(label, "QLabel");
}

std::string MakeErrorButtonStyle(std::string_view text)
{
    return fmt::format("<span style=\"{}\">{}</span>", errorStyle, text);
}

void SetErrorLabel(QLabel& label, std::string_view text)
{
    label.setText(str::ToQ(fmt::format("<b>{}</b>", text)));
}

QString MakeHtmlImageTagQ(const QPixmap& pixmap)
{
    if (pixmap.isNull())
        return QString();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    pixmap.save(&buffer, "PNG");
    return QString(QLatin1String("<img src='data:image/png;base64,%1'>"))
        .arg(QString::fromLatin1(bytes.toBase64()));
}

QPixmap CreateAlphaPixmap(const QImage& image, const QColor& color)
{
    if (image.isNull())
        return QPixmap();
    QImage tinted = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&tinted);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(tinted.rect(), color);
    painter.end();
    return QPixmap::fromImage(tinted);
}

void SetHelp(QWidget& control, std::string_view text)
{
    if (text.empty())
        return;
    std::string help = daz::FormatHelp(text);
    const std::string label = str::HtmlEscape(WithoutMnemonic(LabelOf(control)));
    str::FindReplaceInPlace(help, "%%", str::BoldQuote(str::ToQ(label)));
    control.setToolTip(str::ToQ(help));
}

} // namespace gui
} // namespace kst
