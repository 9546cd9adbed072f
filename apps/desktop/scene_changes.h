// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/operations.h"

#include <functional>

namespace desktop {

/// Watches as long as it lives; one at a time.
class SceneChanges : public openhost::OperationListener {
public:
    /// @param onToggle    called when the answer changes
    /// @param mayReplace  whether a file may take the scene's place; asked with its path
    SceneChanges(std::function<void()> onToggle, std::function<bool(const QString&)> mayReplace);
    ~SceneChanges() override;
    SceneChanges(const SceneChanges&) = delete;
    SceneChanges& operator=(const SceneChanges&) = delete;

    bool isChanged() const { return _isChanged; }
    void setChanged(bool isChanged);

    bool allow(const QString& operation, const QString& detail) override;

private:
    std::function<void()> _onToggle;
    std::function<bool(const QString&)> _mayReplace;
    bool _isChanged = false;
};

} // namespace desktop
