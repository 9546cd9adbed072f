// Lists the morphs of a DSON document, plain or compressed: list_morphs FILE.dsf
// SPDX-License-Identifier: MIT

#include <base/errors.h>
#include <dson/reader.h>
#include <geometry/deltas.h>

#include <iostream>

int main(int argc, char** argv)
try {
    if (argc != 2)
        throw base::Error("usage: list_morphs FILE.dsf");
    for (const dson::Modifier& modifier : dson::ReadDocument(argv[1]).modifiers)
        if (modifier.morph)
            std::cout << modifier.name << ": " << modifier.morph->deltas.size() << " of "
                      << modifier.morph->vertexCount << " vertices, up to "
                      << geometry::LargestLength(modifier.morph->deltas) << " cm\n";
} catch (const base::Error& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
