// Turns the manual's chapters into one PDF.
// SPDX-License-Identifier: MIT

#include "manual_pages.h"

#include <QGuiApplication>
#include <QStringList>

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
try {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5) {
        std::fputs("usage: manual_pdf FILE.pdf VERSION DIR CHAPTER.md...\n", stderr);
        return 2;
    }
    manual::WriteManual(arguments[1], {arguments[2], arguments.mid(4), arguments[3]});
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "manual_pdf: %s\n", error.what());
    return 1;
}
