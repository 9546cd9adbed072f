// What mouse and keys do in the view.
// SPDX-License-Identifier: MIT

#include "mouse_help.h"

#include "overlay.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QMenu>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

namespace desktop {

namespace {

struct MouseHelp {
    Q_DECLARE_TR_FUNCTIONS(MouseHelp)
};

QString Row(const QString& what, const QString& does)
{
    return QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(what.toHtmlEscaped(), does.toHtmlEscaped());
}

QString KeyRows(const QMenu& menu)
{
    QString rows;
    for (const QAction* const entry : menu.actions())
        if (entry->menu())
            rows += KeyRows(*entry->menu());
        else if (!entry->shortcut().isEmpty())
            rows += Row(entry->shortcut().toString(QKeySequence::NativeText),
                        entry->text().remove(QLatin1Char('&')));
    return rows;
}

QString Table(const QMenu& menu)
{
    return QStringLiteral("<table>") +
           Row(MouseHelp::tr("Left button"), MouseHelp::tr("Turns the view about the place that you hold")) +
           Row(MouseHelp::tr("Middle or right button"),
               MouseHelp::tr("Moves the view up, down and sideways")) +
           Row(MouseHelp::tr("Wheel"),
               MouseHelp::tr("Comes nearer to what is under the pointer, or goes farther away")) +
           Row(MouseHelp::tr("Click"),
               MouseHelp::tr("Selects the figure under the pointer; with Ctrl, one more")) +
           Row(MouseHelp::tr("Double click"),
               MouseHelp::tr("Brings the figure under the pointer into view")) +
           KeyRows(menu) + QStringLiteral("</table>");
}

} // namespace

QWidget* MakeMouseHelp(QWidget& view, QAction& entry, const QMenu& menu)
{
    auto* const help = new Overlay(view, Qt::AlignCenter);
    help->setObjectName(QStringLiteral("MouseHelp"));
    help->setAccessibleName(MouseHelp::tr("Mouse and keys"));
    auto* const text = new QTextBrowser;
    text->setAccessibleName(MouseHelp::tr("Mouse and keys"));
    text->setHtml(Table(menu));
    text->setFrameShape(QFrame::NoFrame);
    const int character = help->fontMetrics().averageCharWidth(), line = help->fontMetrics().lineSpacing();
    text->document()->setTextWidth(60 * character);
    text->setMinimumHeight(3 * line);
    auto* const close = new QDialogButtonBox(QDialogButtonBox::Close);
    auto* const column = new QVBoxLayout(help);
    column->addWidget(text);
    column->addWidget(close);
    help->setPreferredSize(QSize(66 * character, int(text->document()->size().height()) + 9 * line));
    help->hide();
    entry.setCheckable(true);
    QObject::connect(close, &QDialogButtonBox::rejected, &entry, [&entry] { entry.setChecked(false); });
    QObject::connect(help, &Overlay::dismissed, &entry, [&entry] { entry.setChecked(false); });
    QObject::connect(&entry, &QAction::toggled, help, [help, close](bool isShown) {
        help->setVisible(isShown);
        help->raise();
        if (isShown)
            close->button(QDialogButtonBox::Close)->setFocus();
    });
    return help;
}

} // namespace desktop
