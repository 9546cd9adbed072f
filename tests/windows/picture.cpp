// Pictures of windows, for looking at.
// SPDX-License-Identifier: MIT

#include "tests/windows/picture.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

void SavePicture(QWidget& window, const char* name)
{
    const QString folder = qEnvironmentVariable("GANTREL_PICTURES");
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return;
    window.grab().save(QDir(folder).filePath(QLatin1String(name) + QLatin1String(".png")));
}

LargeFont::LargeFont() : _usual(QApplication::font())
{
    QFont font = _usual;
    font.setPointSize(18);
    QApplication::setFont(font);
}

LargeFont::~LargeFont()
{
    QApplication::setFont(_usual);
}
