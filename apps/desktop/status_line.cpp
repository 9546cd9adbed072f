// What the window's lowest line tells for as long as it holds.
// SPDX-License-Identifier: MIT

#include "status_line.h"

#include "openhost/plain_tip.h"

#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>

namespace desktop {

void StatusLine::tell(Subject subject, const QString& text)
{
    if (text == _texts.value(subject))
        return;
    _texts.remove(subject);
    if (!text.isEmpty())
        _texts.insert(subject, text);
    _window.setStatusBar(nullptr);
    for (const QString& one : qAsConst(_texts)) {
        auto* const label = new QLabel(one);
        label->setTextFormat(Qt::PlainText);
        label->setToolTip(openhost::PlainTip(one));
        // A long text is cut, and does not make the window wider.
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        _window.statusBar()->addWidget(label, 1);
    }
}

} // namespace desktop
