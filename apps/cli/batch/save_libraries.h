// Whether the libraries that a batch saves into stay there.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_plan.h"

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace cli {

/// A disk that is taken away leaves nothing, or the folder that it was mounted on. To save there would fill
/// another disk, and hide what is on the first one.
class SaveLibraries {
public:
    explicit SaveLibraries(const std::vector<BatchRow>& rows);

    /// One that was never there is made by the first row. It costs one look at the folder.
    /// @return why the row may not save; empty when it may
    std::string whyLost(const BatchRow& row);

private:
    struct Place {
        enum class Kind { Nothing, Folder, Unknown } kind = Kind::Nothing;
        dev_t device = 0;
        ino_t node = 0;
    };
    static Place look(const std::string& folder);

    std::map<std::string, Place> _known;
};

} // namespace cli
