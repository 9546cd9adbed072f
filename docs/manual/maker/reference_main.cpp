// Writes the manual's reference for scripts.
// SPDX-License-Identifier: MIT

#include "header_texts.h"
#include "host_session.h"
#include "script_conversion.h"
#include "script_reference.h"

#include <QFile>

#include <cstdio>
#include <exception>
#include <stdexcept>

int main(int argc, char** argv)
try {
    if (argc < 3) {
        std::fputs("usage: manual_reference CHAPTER.md HEADERS...\n", stderr);
        return 2;
    }
    QStringList folders;
    for (int i = 2; i < argc; ++i)
        folders << QFile::decodeName(argv[i]);
    cli::HostSession session({}, false);
    const cli::ScriptConversions conversions(session, false);
    const QByteArray text = manual::ScriptReference(manual::HeaderTexts(folders)).toUtf8();
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
        throw std::runtime_error("cannot write " + std::string(argv[1]));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "manual_reference: %s\n", error.what());
    return 1;
}
