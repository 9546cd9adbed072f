// Where files may be put while somebody works who is not trusted with all of them.
// SPDX-License-Identifier: MIT

#include "base/write_bounds.h"

#include "base/errors.h"

#include <algorithm>
#include <utility>

namespace base {

namespace fs = std::filesystem;

namespace {

const WriteBounds* g_current = nullptr;

/// The place itself, as far as it is there.
fs::path Real(const fs::path& path)
{
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    const fs::path real = fs::weakly_canonical(whole, error);
    // A trailing separator leaves an empty last step, which no file below shares.
    return (error ? whole.lexically_normal() : real) / "";
}

bool IsBelow(const fs::path& file, const fs::path& folder)
{
    const auto last = std::prev(folder.end());
    return std::mismatch(folder.begin(), last, file.begin(), file.end()).first == last;
}

} // namespace

WriteBounds::WriteBounds(const std::vector<fs::path>& folders, std::string reason)
    : _reason(std::move(reason)), _former(std::exchange(g_current, this))
{
    for (const fs::path& folder : folders)
        _folders.push_back(Real(folder));
}

WriteBounds::~WriteBounds()
{
    g_current = _former;
}

bool WriteBounds::hold(const fs::path& file) const
{
    const fs::path place = Real(file);
    return std::any_of(_folders.begin(), _folders.end(),
                       [&place](const fs::path& folder) { return IsBelow(place, folder); });
}

const WriteBounds* WriteBounds::Current()
{
    return g_current;
}

void ThrowIfOutOfBounds(const fs::path& file)
{
    if (g_current && !g_current->hold(file))
        throw IoError("cannot write {}: {}", file.string(), g_current->reason());
}

} // namespace base
