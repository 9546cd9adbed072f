// Whether a dialog has room for all that it shows.
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QWidget>

#include <string>

/// Texts of one and a half times the usual size in every window made within its life.
class HalfAsLargeAgain {
public:
    HalfAsLargeAgain();
    ~HalfAsLargeAgain();
    HalfAsLargeAgain(const HalfAsLargeAgain&) = delete;
    HalfAsLargeAgain& operator=(const HalfAsLargeAgain&) = delete;

private:
    QFont _usual;
};

/// The class and the object name of a widget, or what screen readers call it.
std::string NameOf(const QWidget& widget);
/// Fails for every label, button, line and title that does not show whole.
void ExpectNothingCutOff(const QWidget& dialog);
/// As SavePicture, with a window that stands over another one.
void SavePictureOver(QWidget& below, QWidget& above, const std::string& name);
