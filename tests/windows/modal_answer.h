// Answering a modal window that the code under test opens.
// SPDX-License-Identifier: MIT

#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

class QPushButton;

/// Waits for the next modal window, notes what it shows and lets `answer` press something. The window is
/// closed in any case, so a wrong answer fails a test and does not hang it. Make it before the window opens.
class ModalAnswer {
public:
    explicit ModalAnswer(std::function<void(QWidget&)> answer = {});
    ~ModalAnswer();

    bool seen = false;
    QString title;
    QString text;        ///< of a message box
    QStringList buttons; ///< of a message box, from left to right
    int icon = -1;       ///< QMessageBox::Icon of a message box
    bool isModal = false;
    QWidget* parent = nullptr; ///< to be compared only

private:
    void poll();
    void note(QWidget& window);

    std::function<void(QWidget&)> _answer;
    QTimer _timer;
};

/// Presses a message box's button by its text.
std::function<void(QWidget&)> Press(const char* buttonText);
/// Presses a key in the window.
std::function<void(QWidget&)> PressKey(Qt::Key key);
/// The push button with this text, without mnemonic; null if there is none.
QPushButton* FindButton(const QWidget& window, const char* text);
