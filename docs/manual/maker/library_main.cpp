// Writes the sample library, for the pictures of the manual.
// SPDX-License-Identifier: MIT

#include "sample_content/sample_library.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::fputs("usage: manual_library DIR\n", stderr);
        return 2;
    }
    content::WriteSampleLibrary(argv[1], {});
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "manual_library: %s\n", error.what());
    return 1;
}
