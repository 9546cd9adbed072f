// What can be refused when a failure is tried out.
// SPDX-License-Identifier: MIT

#pragma once

namespace openhost {

/// What is done to the scene or to files, at the calls by which others do it.
enum class Operation {
    Select,
    Add,
    Remove,
    Rename,
    Show, ///< or hide
    SetValue,
    AddMorph,
    Export,
    Import,
    OpenFile,
    SaveAsset,
    CreateMorph, ///< from a file
    Transfer
};

} // namespace openhost
