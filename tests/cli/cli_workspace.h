// A folder for one test, with small meshes in it.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/base/scoped_variable.h"

#include <filesystem>
#include <string>
#include <vector>

/// A temporary folder, removed at the end, that programs started by the test also use for their temporary
/// files.
class Workspace {
public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    std::string path(const std::string& name) const;
    std::string write(const std::string& name, const std::string& text) const; ///< the path
    std::string read(const std::string& name) const;
    bool has(const std::string& name) const;
    /// Names of all files and folders, relative, sorted; the programs' temporary folder is among them when
    /// something was left in it.
    std::vector<std::string> entries() const;

private:
    std::filesystem::path _folder;
    const ScopedVariable _temporaryFolder;
};

/// A cube as OBJ text: eight vertices, six quads, moved up by so much.
std::string CubeText(double lift);
/// The same surface with each face cut into n by n quads; vertices shared.
std::string FineCubeText(int n);
