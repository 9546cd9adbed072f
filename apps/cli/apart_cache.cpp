// The index of morph files where nothing is to be written.
// SPDX-License-Identifier: MIT

#include "apart_cache.h"

#include <cstdlib>

namespace cli {

namespace {

const char* const variable = "XDG_CACHE_HOME";

} // namespace

ApartCache::ApartCache() : _folder(TemporaryFolder::Lasting::ForRun)
{
    if (const char* const former = std::getenv(variable))
        _former = former;
    setenv(variable, _folder.path().c_str(), 1);
}

ApartCache::~ApartCache()
{
    if (_former)
        setenv(variable, _former->c_str(), 1);
    else
        unsetenv(variable);
}

} // namespace cli
