// Where files may be put while somebody works who is not trusted with all of them.
// SPDX-License-Identifier: MIT

#include "base/write_bounds.h"

#include "base/errors.h"

#include <utility>

namespace base {

namespace fs = std::filesystem;

namespace {

const WriteBounds* g_current = nullptr;

} // namespace

WriteBounds::WriteBounds(const std::vector<fs::path>& folders, std::string reason)
    : _folders(folders), _reason(std::move(reason)), _former(std::exchange(g_current, this))
{
}

WriteBounds::~WriteBounds()
{
    g_current = _former;
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
