// Makes the manual's pictures of the real windows.
// SPDX-License-Identifier: MIT

#include "openhost/openhost.h"
#include "picture_story.h"

#include <QDir>
#include <QTemporaryDir>

#include <clocale>
#include <cstdio>
#include <stdexcept>

namespace {

void MakePictures(int argc, char** argv)
{
    const QString pictures = QString::fromLocal8Bit(argv[3]);
    if (!QDir().mkpath(pictures))
        throw std::runtime_error("cannot make the folder of the pictures");
    const QTemporaryDir own; // nothing of the user's, neither settings nor files
    qputenv("TMPDIR", own.path().toLocal8Bit());
    openhost::OpenHost::Options options;
    options.settingsFolder = own.filePath(QStringLiteral("settings"));
    options.logFilename = own.filePath(QStringLiteral("log.txt"));
    options.tempPath = own.path();
    options.headless = false;
    desktop::DesktopAttendant attendant;
    options.attendant = &attendant;
    const QString library = QString::fromLocal8Bit(argv[1]);
    const QString plugins = QString::fromLocal8Bit(argv[2]);
    const openhost::OpenHost host(argc, argv, options);
    std::setlocale(LC_NUMERIC, "C");
    manual::PictureStory(attendant, library, plugins, pictures).tell();
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc != 4) {
        std::fputs("usage: manual_pictures LIBRARY PLUGINS PICTURES\n", stderr);
        return 2;
    }
    MakePictures(argc, argv);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "manual_pictures: %s\n", error.what());
    return 1;
}
