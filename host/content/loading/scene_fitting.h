// Figures of a file that wear others.
// SPDX-License-Identifier: MIT

#pragma once

#include "scene_load.h"

#include <string>

namespace openhost {

/// Fits the figures of a load, which are in the scene by then, to what their instances name.
class SceneFitting {
public:
    explicit SceneFitting(SceneLoad& load);

    void fitAll();

private:
    DzNode* fitTarget(const std::string& reference) const; ///< null for none
    void fit(const LoadedFigure& figure);
    /// What of a graft does not fit, now that all is fitted.
    void tellGraft(const DzNode& node) const;

    SceneLoad& _load;
};

} // namespace openhost
