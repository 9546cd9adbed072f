// The index of morph files where nothing is to be written.
// SPDX-License-Identifier: MIT

#pragma once

#include "temporary_folder.h"

#include <optional>
#include <string>

namespace cli {

/// While it lives, this process and those that it starts keep the index in a temporary folder. It is made
/// anew there, as opening the user's own would change it. No other thread may read the environment meanwhile.
class ApartCache {
public:
    ApartCache();
    ~ApartCache();
    ApartCache(const ApartCache&) = delete;
    ApartCache& operator=(const ApartCache&) = delete;

private:
    TemporaryFolder _folder;
    std::optional<std::string> _former;
};

} // namespace cli
