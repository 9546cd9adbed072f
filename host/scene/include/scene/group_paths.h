// The groups that files put properties into.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string>
#include <vector>

class DzProperty;

namespace openhost {

/// Where a pane shows the properties of a file.
class GroupPaths {
public:
    /// Groups beyond what a tree holds are left out, and the property is noted.
    void set(DzProperty& property, const QString& path);
    /// Of each that lost groups.
    const std::vector<std::string>& cutNames() const { return _cutNames; }

private:
    std::vector<std::string> _cutNames;
};

} // namespace openhost
