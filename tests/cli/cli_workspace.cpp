// A folder for one test, with small meshes in it.
// SPDX-License-Identifier: MIT

#include "cli_workspace.h"

#include "geometry/obj.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

std::string MakeFolder()
{
    std::string name = (fs::temp_directory_path() / "gantrel-test-XXXXXX").string();
    if (!mkdtemp(&name[0]))
        throw std::runtime_error("cannot make a temporary folder");
    return name;
}

} // namespace

Workspace::Workspace() : _folder(MakeFolder()), _temporaryFolder("TMPDIR", path("tmp"))
{
    fs::create_directory(path("tmp"));
}

Workspace::~Workspace()
{
    std::error_code ignored;
    fs::remove_all(_folder, ignored);
}

std::string Workspace::path(const std::string& name) const
{
    return (_folder / name).string();
}

std::string Workspace::write(const std::string& name, const std::string& text) const
{
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string Workspace::read(const std::string& name) const
{
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool Workspace::has(const std::string& name) const
{
    return fs::exists(path(name));
}

std::vector<std::string> Workspace::entries() const
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(_folder))
        if (entry.path() != _folder / "tmp")
            names.push_back(entry.path().lexically_relative(_folder).string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string CubeText(double lift)
{
    std::string text;
    for (const double z : {-1.0, 1.0})
        for (const double y : {-1.0, 1.0})
            for (const double x : {-1.0, 1.0})
                text += "v " + std::to_string(x) + ' ' + std::to_string(y + lift) + ' ' + std::to_string(z) +
                        '\n';
    return text + "f 1 3 4 2\nf 5 6 8 7\nf 1 2 6 5\nf 3 7 8 4\nf 1 5 7 3\nf 2 4 8 6\n";
}

std::string FineCubeText(int n)
{
    std::map<std::array<int, 3>, int> numbers;
    std::string vertices, faces;
    const auto number = [&](std::array<int, 3> at) {
        const auto [found, isNew] = numbers.emplace(at, static_cast<int>(numbers.size()) + 1);
        if (isNew) {
            vertices += 'v';
            for (const int i : at)
                vertices += ' ' + std::to_string(2.0 * i / n - 1.0);
            vertices += '\n';
        }
        return ' ' + std::to_string(found->second);
    };
    for (int axis = 0; axis < 3; ++axis)
        for (const int side : {0, n})
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) {
                    // Counterclockwise from outside: the two directions change places with the side.
                    const auto corner = [&](int a, int b) {
                        std::array<int, 3> at{};
                        at[static_cast<std::size_t>(axis)] = side;
                        at[static_cast<std::size_t>((axis + 1) % 3)] = side ? i + a : i + b;
                        at[static_cast<std::size_t>((axis + 2) % 3)] = side ? j + b : j + a;
                        return number(at);
                    };
                    const std::string ring[] = {corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)};
                    faces += 'f' + ring[0] + ring[1] + ring[2] + ring[3] + '\n';
                }
    return vertices + faces;
}
