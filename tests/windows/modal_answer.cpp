// Answering a modal window that the code under test opens.
// SPDX-License-Identifier: MIT

#include "tests/windows/modal_answer.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QtTest/QTest>

#include <algorithm>

namespace {

const int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

QString PlainLabel(const QAbstractButton& button)
{
    return button.text().remove(QLatin1Char('&'));
}

} // namespace

ModalAnswer::ModalAnswer(std::function<void(QWidget&)> answer) : _answer(std::move(answer))
{
    QObject::connect(&_timer, &QTimer::timeout, [this] { poll(); });
    _timer.start(1);
}

ModalAnswer::~ModalAnswer() = default;

void ModalAnswer::poll()
{
    const QPointer<QWidget> window = QApplication::activeModalWidget();
    if (!window)
        return;
    _timer.stop();
    note(*window);
    if (_answer)
        _answer(*window);
    if (auto* const dialog = qobject_cast<QDialog*>(window.data()); dialog && dialog->isVisible())
        dialog->done(QDialog::Rejected);
}

void ModalAnswer::note(QWidget& window)
{
    seen = true;
    title = window.windowTitle();
    isModal = window.isModal();
    parent = window.parentWidget();
    const auto* const box = qobject_cast<QMessageBox*>(&window);
    if (!box)
        return;
    text = box->text();
    icon = box->icon();
    auto boxButtons = box->buttons();
    std::sort(boxButtons.begin(), boxButtons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    for (const QAbstractButton* const button : boxButtons)
        buttons << PlainLabel(*button);
}

std::function<void(QWidget&)> Press(const char* buttonText)
{
    return [buttonText](QWidget& window) {
        if (QPushButton* const button = FindButton(window, buttonText))
            QTest::mouseClick(button, Qt::LeftButton);
    };
}

std::function<void(QWidget&)> PressKey(Qt::Key key)
{
    return [key](QWidget& window) {
        // The focus comes with the activation, and the button that has it takes the return key.
        if (QTest::qWaitForWindowActive(&window, patienceMilliseconds))
            QTest::keyClick(&window, key);
    };
}

QPushButton* FindButton(const QWidget& window, const char* text)
{
    for (QPushButton* const button : window.findChildren<QPushButton*>())
        if (PlainLabel(*button) == QLatin1String(text))
            return button;
    return nullptr;
}
