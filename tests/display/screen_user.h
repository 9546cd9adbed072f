// Someone who sits before the program: looks at its windows, waits, and answers by mouse and keys.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/display/virtual_input.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <QPoint>
#include <QRect>

class QTreeWidget;
class QWidget;

/// Lives in a thread of its own, as the program's own thread stands still in modal windows. Looking is done
/// by functions that run in the program's thread between its events; only they may touch widgets.
///
/// Everything that is looked for is waited for. What does not come within a minute throws std::runtime_error
/// that names it.
class ScreenUser {
public:
    using Key = VirtualInput::Key;
    using Keys = std::vector<Key>;

    /// Asks in the program's thread.
    static void look(const std::function<void()>& question);
    static void waitUntil(const std::string& what, const std::function<bool()>& isSo);

    /// @param find  the place on the screen, asked in the program's thread; null while it cannot be seen. It
    ///              is waited for until it rests.
    void click(const std::string& what, const std::function<QRect()>& find, const Keys& held = {});
    void doubleClick(const std::string& what, const std::function<QRect()>& find);
    /// From the middle of the place to the right by its width.
    void dragRight(const std::string& what, const std::function<QRect()>& find);

    /// Presses all, releases all.
    void press(const Keys& keys);
    void pressWith(const Keys& held, char letter);
    /// Into the line that has the focus, in place of what it held.
    void retype(const std::string& text);

    /// The whole screen into a file of the folder that GANTREL_PICTURES names; without it nothing.
    static void takePicture(const std::string& name);

private:
    static QPoint restingMiddle(const std::string& what, const std::function<QRect()>& find, int* width);
    void clickAt(QPoint place);
    void pauseBetweenClicks() const;

    VirtualInput _input;
    std::chrono::steady_clock::time_point _lastClick;
};

/// Places on the screen; null for what is not visible, cannot be used now, or lies under a modal window.
QRect PlaceOf(const QWidget* widget);
/// Of a tree's entry, by the texts from its top level down; its first column.
QRect PlaceOf(const QTreeWidget& tree, const std::vector<std::string>& path);
/// The visible window whose title contains the text; null for none.
QWidget* WindowTitled(const char* title);
