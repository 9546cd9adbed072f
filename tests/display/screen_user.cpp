// Someone who sits before the program: looks at its windows, waits, and answers by mouse and keys.
// SPDX-License-Identifier: MIT

#include "tests/display/screen_user.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QTreeWidget>

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 60s;
constexpr auto glance = 20ms;

QTreeWidgetItem* ChildNamed(const QTreeWidgetItem& parent, const std::string& text)
{
    for (int i = 0; i < parent.childCount(); ++i)
        if (parent.child(i)->text(0) == QString::fromStdString(text))
            return parent.child(i);
    return nullptr;
}

} // namespace

void ScreenUser::look(const std::function<void()>& question)
{
    QMetaObject::invokeMethod(qApp, question, Qt::BlockingQueuedConnection);
}

void ScreenUser::waitUntil(const std::string& what, const std::function<bool()>& isSo)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (true) {
        bool isSoNow = false;
        look([&] { isSoNow = isSo(); });
        if (isSoNow)
            return;
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("waited in vain for: " + what);
        std::this_thread::sleep_for(glance);
    }
}

QPoint ScreenUser::restingMiddle(const std::string& what, const std::function<QRect()>& find, int* width)
{
    QRect last;
    waitUntil(what, [&] {
        const QRect place = find();
        const bool rests = !place.isNull() && place == last;
        last = place;
        return rests;
    });
    if (width)
        *width = last.width();
    return last.center();
}

void ScreenUser::clickAt(QPoint place)
{
    _input.moveTo(place.x(), place.y());
    _input.pressButton();
    _input.releaseButton();
    _lastClick = std::chrono::steady_clock::now();
}

/// Faster clicks would count as a double click, wherever they are.
void ScreenUser::pauseBetweenClicks() const
{
    std::this_thread::sleep_until(_lastClick + 2 * std::chrono::milliseconds(qApp->doubleClickInterval()));
}

void ScreenUser::click(const std::string& what, const std::function<QRect()>& find, const Keys& held)
{
    const QPoint place = restingMiddle(what, find, nullptr);
    pauseBetweenClicks();
    for (const Key key : held)
        _input.pressKey(key);
    clickAt(place);
    for (const Key key : held)
        _input.releaseKey(key);
    _input.send();
}

void ScreenUser::doubleClick(const std::string& what, const std::function<QRect()>& find)
{
    const QPoint place = restingMiddle(what, find, nullptr);
    pauseBetweenClicks();
    clickAt(place);
    clickAt(place);
    _input.send();
}

void ScreenUser::dragRight(const std::string& what, const std::function<QRect()>& find)
{
    int width = 0;
    const QPoint place = restingMiddle(what, find, &width);
    pauseBetweenClicks();
    _input.moveTo(place.x(), place.y());
    _input.pressButton();
    constexpr int steps = 10;
    for (int step = 1; step <= steps; ++step)
        _input.moveTo(place.x() + step * width / steps, place.y());
    _input.releaseButton();
    _input.send();
    _lastClick = std::chrono::steady_clock::now();
}

void ScreenUser::press(const Keys& keys)
{
    for (const Key key : keys)
        _input.pressKey(key);
    for (const Key key : keys)
        _input.releaseKey(key);
    _input.send();
}

void ScreenUser::pressWith(const Keys& held, char letter)
{
    for (const Key key : held)
        _input.pressKey(key);
    _input.type(std::string(1, letter));
    for (const Key key : held)
        _input.releaseKey(key);
    _input.send();
}

void ScreenUser::retype(const std::string& text)
{
    pressWith({Key::Control}, 'a');
    _input.type(text);
    _input.send();
}

void ScreenUser::takePicture(const std::string& name)
{
    const QString folder = qEnvironmentVariable("GANTREL_PICTURES");
    if (folder.isEmpty())
        return;
    look([&] {
        const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
        screen.save(QDir(folder).filePath(QString::fromStdString(name) + QLatin1String(".png")));
    });
}

QRect PlaceOf(const QWidget* widget)
{
    const QWidget* const modal = QApplication::activeModalWidget();
    if (!widget || !widget->isVisible() || !widget->isEnabled() || (modal && widget->window() != modal))
        return QRect();
    const QRect seen = widget->visibleRegion().boundingRect();
    return seen.isEmpty() ? QRect() : QRect(widget->mapToGlobal(seen.topLeft()), seen.size());
}

QRect PlaceOf(const QTreeWidget& tree, const std::vector<std::string>& path)
{
    const QTreeWidgetItem* item = tree.invisibleRootItem();
    for (const std::string& text : path) {
        item = ChildNamed(*item, text);
        if (!item)
            return QRect();
    }
    const QRect inside = tree.visualItemRect(item) & tree.viewport()->rect();
    if (inside.isEmpty() || PlaceOf(&tree).isNull())
        return QRect();
    return QRect(tree.viewport()->mapToGlobal(inside.topLeft()), inside.size());
}

QWidget* WindowTitled(const char* title)
{
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowTitle().contains(QLatin1String(title)))
            return widget;
    return nullptr;
}
