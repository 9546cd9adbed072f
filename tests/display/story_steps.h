// What users do again and again in the desktop application.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/display/screen_user.h"

#include <functional>
#include <string>
#include <vector>

#include <QLineEdit>

class DzFigure;
class DzFloatSlider;
class QAbstractButton;

/// An environment variable.
std::string Setting(const char* variable);

// To be asked in the program's thread; null for what there is not.

QWidget* Pane(const char* className);
/// A button or box by its text, without its mnemonic.
QAbstractButton* ButtonIn(const QWidget* window, const char* text);
/// The visible slider with this label in the Parameters pane.
DzFloatSlider* DialLabelled(const std::string& label);
DzFigure* SelectedFigure();
/// The first child of the class, or the one of that name.
template <class Widget>
Widget* In(const QWidget* window, const char* name = nullptr)
{
    return window ? window->findChild<Widget*>(name ? QLatin1String(name) : QString()) : nullptr;
}

// Steps of a user. All wait for what they need; what does not come throws std::runtime_error.

void WaitForMainWindow(ScreenUser& user);
/// Until so many figures are in the scene and no modal window is open.
void WaitForFigures(ScreenUser& user, int number);
void PressInMainWindow(ScreenUser& user, const ScreenUser::Keys& held, char letter);
void ClickButton(ScreenUser& user, const char* windowTitle, const char* text);
void ClickInScene(ScreenUser& user, const std::string& label, const ScreenUser::Keys& held = {});
/// By mouse, into a line that is looked for, in place of what it holds.
void Retype(ScreenUser& user, const std::string& what, const std::function<QLineEdit*()>& find,
            const std::string& text);
/// By the Tab key, until what is looked for has the focus in the active window.
void TabTo(ScreenUser& user, const std::string& what, const std::function<QWidget*()>& find);

void OpenFromContentLibrary(ScreenUser& user, const std::vector<std::string>& folders,
                            const std::string& file);
void OpenFromMenu(ScreenUser& user, const std::string& file); ///< by keys
/// Answers the box that tells of a saved morph.
void ConfirmSaved(ScreenUser& user);
/// The last step; the program ends with it.
void QuitWithoutSaving(ScreenUser& user);

/// Where the selected figure's shape ends: its least and its greatest coordinates in centimetres.
void WriteExtent(const std::string& file);
