// Feeds one target with what the compiler's own fuzzer thinks of: gantrel_fuzz TARGET [OPTION...]
// [FOLDER|FILE...]. A folder that is empty is filled with the target's seeds. SPDX-License-Identifier: MIT

#include "fuzz/target.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

const fuzz::Target* g_target = nullptr;

void FillWithSeeds(const std::filesystem::path& folder)
{
    int number = 0;
    for (const std::string& seed : g_target->seeds())
        std::ofstream(folder / ("seed-" + std::to_string(++number)), std::ios::binary) << seed;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments)
{
    char** const given = *arguments;
    g_target = *count > 1 ? fuzz::FindTarget(given[1]) : nullptr;
    if (!g_target) {
        std::fprintf(stderr, "usage: gantrel_fuzz TARGET [OPTION...] [FOLDER|FILE...], with a target of:\n");
        for (const fuzz::Target& target : fuzz::Targets())
            std::fprintf(stderr, "%s\n", target.name);
        std::exit(2);
    }
    // The fuzzer reads what follows the target's name.
    given[1] = given[0];
    ++*arguments;
    --*count;
    for (int i = 1; i < *count; ++i)
        if (std::filesystem::is_directory((*arguments)[i]) && std::filesystem::is_empty((*arguments)[i]))
            FillWithSeeds((*arguments)[i]);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    g_target->feed({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
