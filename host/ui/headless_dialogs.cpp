// Modal windows where nobody can answer them.
// SPDX-License-Identifier: MIT

#include "headless_dialogs.h"

#include "openhost/diagnostics.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTimer>

namespace openhost {

namespace {

QString PlainText(const QString& text)
{
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

/// The button that closing the box stands for; null for a box that cannot be closed.
QAbstractButton* ClosingButton(const QMessageBox& box)
{
    if (box.escapeButton())
        return box.escapeButton();
    const QList<QAbstractButton*> buttons = box.buttons();
    for (const QMessageBox::ButtonRole role : {QMessageBox::RejectRole, QMessageBox::NoRole})
        for (QAbstractButton* const button : buttons)
            if (box.buttonRole(button) == role)
                return button;
    return buttons.isEmpty() ? nullptr : buttons.last();
}

/// What the dialog says, on one line.
QString TextOf(const QDialog& dialog)
{
    if (const auto* const box = qobject_cast<const QMessageBox*>(&dialog))
        return PlainText(box->text()).simplified();
    QStringList texts;
    for (const QLabel* const label : dialog.findChildren<QLabel*>())
        if (!label->text().isEmpty())
            texts.append(PlainText(label->text()).simplified());
    return texts.join(QLatin1Char(' '));
}

/// Each way may be refused, and any may delete the dialog.
void End(const QPointer<QDialog>& dialog)
{
    const auto* const box = qobject_cast<QMessageBox*>(dialog.data());
    QAbstractButton* const button = box ? ClosingButton(*box) : nullptr;
    if (button && button->isEnabled())
        button->click();
    if (dialog && dialog->isVisible())
        dialog->reject();
    if (dialog && dialog->isVisible())
        dialog->QDialog::done(QDialog::Rejected);
}

void Answer(QDialog& dialog)
{
    const QString text = TextOf(dialog);
    const QString what = QStringLiteral("not shown without display: ") + dialog.windowTitle() +
                         (text.isEmpty() ? QString() : QStringLiteral(": ") + text);
    Report({base::Severity::Warning, {}, {}, what.toStdString()});
    End(&dialog);
}

} // namespace

bool HeadlessDialogs::eventFilter(QObject* watched, QEvent* event)
{
    auto* const dialog = event->type() == QEvent::Show ? qobject_cast<QDialog*>(watched) : nullptr;
    // A progress display is no question, and closing it would mean to cancel.
    if (dialog && dialog->isModal() && !qobject_cast<QProgressDialog*>(dialog))
        QTimer::singleShot(0, dialog, [dialog] {
            if (dialog->isVisible())
                Answer(*dialog);
        });
    return QObject::eventFilter(watched, event);
}

} // namespace openhost
