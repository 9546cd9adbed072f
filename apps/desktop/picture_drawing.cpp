// What draws pictures of files for the desktop application.
// SPDX-License-Identifier: MIT

#include "picture_drawing.h"

#include "program_folders.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace desktop {

openhost::PictureDrawing DrawingOfPictures()
{
    openhost::PictureDrawing drawing;
    drawing.folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                     QLatin1String("/gantrel/pictures");
    const QString folder = QString::fromStdString(app::ProgramFolder().u8string());
    // Beside this program where it is installed; in a build each has a folder of its own.
    for (const char* const place : {"/gantrel", "/../cli/gantrel"})
        if (QFileInfo(folder + QLatin1String(place)).isExecutable() &&
            QFileInfo(folder + QLatin1String(place)).isFile()) {
            drawing.program = folder + QLatin1String(place);
            break;
        }
    return drawing;
}

} // namespace desktop
