// Style sheets, markup and pictures for widgets.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

#include <QPixmap>
#include <QString>

class QColor;
class QImage;
class QLabel;
class QPushButton;
class QTableView;
class QWidget;

namespace kst {
namespace gui {

/// White bold text.
/// @param pointSize  of the text, in points
void SetButtonStyle(QPushButton& button, int pointSize);
/// @param px  room around each cell's text, in pixels
void setTableViewCellPadding(QTableView& view, int px);

/// @param selector  the style sheet's type selector, such as "QLineEdit"
void MakeControlBackgroundRed(QWidget& widget, std::string_view selector);
void MakeControlForegroundOrange(QWidget& widget, std::string_view selector);
void MakeLabelForegroundOrange(QLabel& label);

/// The text as rich text in the colours of MakeControlBackgroundRed, for a sentence about such a control.
/// @param text  rich text
std::string MakeErrorButtonStyle(std::string_view text);
/// Shows rich text in bold.
void SetErrorLabel(QLabel& label, std::string_view text);
/// The picture itself as rich text; empty for a null pixmap.
QString MakeHtmlImageTagQ(const QPixmap& pixmap);

/// A pixmap of one colour whose opacity is the image's.
QPixmap CreateAlphaPixmap(const QImage& image, const QColor& color);

/// Gives a control its help as tool tip. The text passes the help formatter; "%%" stands for the control's
/// own label without its mnemonic, which is shown quoted and bold. An empty text leaves the control as it is.
void SetHelp(QWidget& control, std::string_view text);

} // namespace gui
} // namespace kst
