// The conversion that the manual's pictures show.
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop_attendant.h"
#include "desktop_window.h"

#include <QString>

class DzFigure;
class QWidget;

namespace manual {

/// Converts a sample figure in the desktop application as a user does, and saves a picture of each window on
/// the way. The host must be running, with windows.
class PictureStory {
public:
    /// @param library  content folder with the sample figures
    /// @param attendant  the running host's
    /// @param plugins  folder of the module
    /// @param pictures  where the pictures go; must be there
    PictureStory(desktop::DesktopAttendant& attendant, QString library, QString plugins, QString pictures);

    /// @throws std::runtime_error  something does not come out as for a user, or cannot be written
    void tell();

private:
    void start();
    void showMistake();
    void showConvertDialog(QWidget& dialog);
    void convert();
    void showResult();
    void showDials();
    void showSourceAndResult();
    void showHeadAndBody();
    DzFigure& open(const char* relativePath);
    void setDial(const char* morph, float value);
    void triggerConversion();
    void save(const QPixmap& picture, const char* name) const;

    const QString _library;
    const QString _plugins;
    const QString _pictures;
    desktop::DesktopWindow _desktop;
    DzFigure* _source = nullptr;
    DzFigure* _target = nullptr;
};

} // namespace manual
