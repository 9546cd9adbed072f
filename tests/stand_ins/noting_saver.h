// The host's saving, noting what is asked for instead of writing files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"

#include <string>
#include <vector>

/// In this program two functions of the host are these: a filter's question for its options, and the
/// manager's save. None of the host's own filters lets a save be cancelled that has a name to save under.
namespace noting {

/// Options as JSON.
struct OptionsQuestion {
    std::string filter, options, filename;
    bool useInterface;
};
struct SaveOrder {
    std::string filter, options, filename, startingDir, category;
    bool showOptions;
};

inline std::vector<OptionsQuestion> questions;
inline std::vector<SaveOrder> orders;
/// What the user says to the options.
inline bool isAccepted = true;
/// What a save comes to.
inline DzError saveResult = DZ_NO_ERROR;

/// As when the program starts.
void ForgetSaves();

} // namespace noting
