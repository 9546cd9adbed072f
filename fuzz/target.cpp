// What is fed with the bytes of strangers.
// SPDX-License-Identifier: MIT

#include "fuzz/target.h"

#include "tests/content/temp_folder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

namespace {

std::vector<Target>& Registered()
{
    static std::vector<Target> targets;
    return targets;
}

} // namespace

Registration::Registration(const Target& target)
{
    Registered().push_back(target);
}

const std::vector<Target>& Targets()
{
    return Registered();
}

const Target* FindTarget(std::string_view name)
{
    const auto found = std::find_if(Targets().begin(), Targets().end(),
                                    [name](const Target& target) { return target.name == name; });
    return found == Targets().end() ? nullptr : &*found;
}

void Demand(bool holds, const char* law)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", law);
    std::abort();
}

const std::filesystem::path& ScratchFolder()
{
    static const TempFolder folder;
    return folder.path();
}

std::filesystem::path WriteScratch(const std::string& name, std::string_view bytes)
{
    const std::filesystem::path file = ScratchFolder() / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
}

} // namespace fuzz
