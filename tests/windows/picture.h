// Pictures of windows, for looking at.
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QWidget>

/// Saves the window's picture in the folder that the environment variable GANTREL_PICTURES names; without it
/// nothing is saved.
void SavePicture(QWidget& window, const char* name);

/// Texts of 18 points in every window made within its life.
class LargeFont {
public:
    LargeFont();
    ~LargeFont();
    LargeFont(const LargeFont&) = delete;
    LargeFont& operator=(const LargeFont&) = delete;

private:
    QFont _usual;
};
