// Message boxes of scripts.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMessageBox>
#include <QObject>

namespace openhost {

/// Each blocks until the user answers and gives the index of the button; closing the box counts as the last
/// one, and so does a box that nobody can see.
class ScriptMessageBox : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE int information(const QString& text, const QString& title, const QString& button0,
                                const QString& button1 = QString());
    Q_INVOKABLE int warning(const QString& text, const QString& title, const QString& button0,
                            const QString& button1 = QString(), const QString& button2 = QString());
    Q_INVOKABLE int critical(const QString& text, const QString& title, const QString& button0,
                             const QString& button1 = QString());
    Q_INVOKABLE int question(const QString& text, const QString& title, const QString& button0,
                             const QString& button1 = QString(), const QString& button2 = QString());

private:
    static int ask(QMessageBox::Icon icon, const QString& text, const QString& title, QStringList buttons);
};

} // namespace openhost
