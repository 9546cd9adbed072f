// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/operations.h"

#include <functional>

namespace desktop {

/// What is to be done about what is seen.
struct ChangeAnswers {
    std::function<void()> onToggle;                 ///< there are changes now, or none any more
    std::function<bool(const QString&)> mayReplace; ///< whether the file may take the scene's place
    std::function<void(const QString&)> onLeftOut;  ///< what of a file does not come into the scene
};

/// Watches as long as it lives; one at a time.
class SceneChanges : public openhost::OperationListener {
public:
    explicit SceneChanges(ChangeAnswers answers);
    ~SceneChanges() override;
    SceneChanges(const SceneChanges&) = delete;
    SceneChanges& operator=(const SceneChanges&) = delete;

    bool isChanged() const { return _isChanged; }
    void setChanged(bool isChanged);

    bool allow(const QString& operation, const QString& detail) override;

private:
    ChangeAnswers _answers;
    bool _isChanged = false;
};

} // namespace desktop
