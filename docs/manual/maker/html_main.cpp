// Turns the manual's chapters into one page for browsers.
// SPDX-License-Identifier: MIT

#include "manual_html.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
try {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 6) {
        std::fputs("usage: manual_html FILE.html VERSION DIR FRAME CHAPTER.md...\n", stderr);
        return 2;
    }
    manual::WriteManualPage(arguments[1], {arguments[2], arguments.mid(5), arguments[3], arguments[4]});
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "manual_html: %s\n", error.what());
    return 1;
}
