// Message boxes of scripts.
// SPDX-License-Identifier: MIT

#include "message_box.h"

#include "dzapp.h"

#include <QPushButton>
#include <QTextDocument>

namespace openhost {

int ScriptMessageBox::information(const QString& text, const QString& title, const QString& button0,
                                  const QString& button1)
{
    return ask(QMessageBox::Information, text, title, {button0, button1});
}

int ScriptMessageBox::warning(const QString& text, const QString& title, const QString& button0,
                              const QString& button1, const QString& button2)
{
    return ask(QMessageBox::Warning, text, title, {button0, button1, button2});
}

int ScriptMessageBox::critical(const QString& text, const QString& title, const QString& button0,
                               const QString& button1)
{
    return ask(QMessageBox::Critical, text, title, {button0, button1});
}

int ScriptMessageBox::question(const QString& text, const QString& title, const QString& button0,
                               const QString& button1, const QString& button2)
{
    return ask(QMessageBox::Question, text, title, {button0, button1, button2});
}

int ScriptMessageBox::ask(QMessageBox::Icon icon, const QString& text, const QString& title,
                          QStringList buttons)
{
    buttons.removeAll(QString());
    QMessageBox box(icon, title, text, QMessageBox::NoButton, dzApp->getDialogParent());
    box.setTextFormat(Qt::mightBeRichText(text) ? Qt::RichText : Qt::PlainText); // scripts may use markup
    QList<QAbstractButton*> pushButtons;
    for (const QString& button : buttons)
        pushButtons.append(box.addButton(button, QMessageBox::AcceptRole));
    if (pushButtons.size() > 1)
        box.setEscapeButton(pushButtons.last());
    box.exec();
    return std::max(0, pushButtons.indexOf(box.clickedButton()));
}

} // namespace openhost
