// Why a file cannot be written.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/atomic_file.h"
#include "base/errors.h"

#include <filesystem>
#include <string>

/// The text of the error that writing "new" into the file throws; empty for none.
inline std::string Refusal(const std::filesystem::path& file)
{
    try {
        base::WriteFileAtomically(file, "new");
        return {};
    } catch (const base::IoError& error) {
        return error.what();
    }
}
