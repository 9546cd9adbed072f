// A notice that goes away by itself.
// SPDX-License-Identifier: MIT

#include "ks_dlg_timed-notice.h"

#include "ks_gui.h"
#include "ks_product.h"
#include "ks_string.h"

#include <QTimer>

#include <fmt/format.h>

namespace kst {

TimedNoticeBox::TimedNoticeBox(QWidget* parent, std::string_view text, int milliseconds)
    : QMessageBox((gui::AssertGuiThread(), parent))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(str::ToQ(product::TITLE));
    // Said aloud, since a box that was given no buttons at all adds one when it is shown.
    setStandardButtons(QMessageBox::NoButton);
    setTextFormat(Qt::RichText);
    setText(str::ToQ(fmt::format("<h2>{}</h2>", text)));
    setModal(false);
    show();
    repaint();
    QTimer::singleShot(milliseconds, this, SLOT(slotDelayedDelete()));
}

TimedNoticeBox::~TimedNoticeBox() = default;

void TimedNoticeBox::slotDelayedDelete()
{
    deleteLater();
}

} // namespace kst
