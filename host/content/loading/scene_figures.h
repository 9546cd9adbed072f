// The figures and props of a file on their way into the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "figure_placing.h"
#include "instance_dials.h"
#include "scene_load.h"

#include <memory>
#include <vector>

class DzNode;

namespace openhost {

/// Of one character or scene file.
class SceneFigures {
public:
    /// @param selected  what references to the selection mean; null for nothing
    SceneFigures(AssetLibrary& library, std::shared_ptr<const dson::Document> document, DzNode* selected);

    /// Makes everything and tells what is missing; the scene is as it was.
    void prepare();
    /// Whether nothing could be made.
    bool isEmpty() const { return _load.figures.empty(); }
    /// Hands it all to the scene.
    /// @return what is to be selected: what neither hangs on anything nor is worn by what is selected
    std::vector<DzNode*> enter();

private:
    std::vector<DzNode*> enterScene();
    /// A scene that moves is loaded as it is at its beginning.
    void animate();

    SceneLoad _load;
    FigurePlacing _placing;
    InstanceDials _dials;
};

} // namespace openhost
