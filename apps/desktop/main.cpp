// The desktop application: the host with a window, and the plug-ins that it loads.
// SPDX-License-Identifier: MIT

#include "desktop_attendant.h"
#include "desktop_options.h"
#include "desktop_window.h"
#include "languages.h"
#include "large_arrays.h"
#include "openhost/openhost.h"
#include "program_folders.h"

#include <clocale>
#include <cstdio>
#include <iostream>

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTextCodec>

namespace {

/// The toolkit would end the process with a trap.
bool HasDisplay()
{
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

QString LogFile()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QLatin1String("/gantrel");
    QDir().mkpath(folder);
    return folder + QLatin1String("/desktop-log.txt");
}

} // namespace

int main(int argc, char** argv)
{
    app::TreatLargeArraysWell();
    desktop::Options options;
    if (const std::optional<int> code = desktop::ParseOptions(argc, argv, options, std::cout, std::cerr))
        return *code;
    if (!HasDisplay()) {
        std::fputs("gantrel-desktop: There is no display to show a window on.\n", stderr);
        return 1;
    }
    // Content's file names are UTF-8 whatever the locale is, and numbers in files have decimal points.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    desktop::DesktopAttendant attendant;
    openhost::OpenHost::Options hostOptions;
    hostOptions.attendant = &attendant;
    hostOptions.headless = false;
    hostOptions.documentationPath = QString::fromStdString(app::DocumentationFolder().u8string());
    hostOptions.logFilename = LogFile();
    // The host makes the first windows as soon as there is an application.
    qAddPreRoutine([] { desktop::Translate(desktop::RememberedLanguage()); });
    if (options.rightToLeft)
        qAddPreRoutine([] { QGuiApplication::setLayoutDirection(Qt::RightToLeft); });
    openhost::OpenHost host(argc, argv, hostOptions);
    std::setlocale(LC_NUMERIC, "C");
    // What a desktop without window names tells windows' programs by.
    QGuiApplication::setDesktopFileName(QStringLiteral("gantrel-desktop"));
    desktop::DesktopWindow window(attendant);
    window.show();
    window.start(options);
    return host.exec();
}
