// One load of a character or scene file.
// SPDX-License-Identifier: MIT

#pragma once

#include "alias_values.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "kept_instances.h"
#include "load_report.h"
#include "loaded_figures.h"
#include "scene_sources.h"

#include <memory>
#include <string>
#include <vector>

#include <QPointer>

class DzNode;
class DzNumericProperty;

namespace openhost {

bool NamesSelection(const dson::Uri& uri);

/// What those who place, dial and fit have in common.
struct SceneLoad {
    /// @param selection  what references to the selection mean; null for nothing
    SceneLoad(AssetLibrary& library, std::shared_ptr<const dson::Document> document, DzNode* selection);
    SceneLoad(const SceneLoad&) = delete;
    SceneLoad& operator=(const SceneLoad&) = delete;

    /// What a reference to the selection means in the scene; null for other references.
    DzNode* selectedNode(const std::string& reference) const;
    /// Sets it now, or what it stands for later.
    void setValue(const FigureAssembly& assembly, DzNumericProperty& property, double value);
    void noteBeyondLimits(const std::vector<std::string>& labels); ///< of dials
    void tellBeyondLimits();

    LoadReport report;
    SceneSources sources;
    QPointer<DzNode> selected; ///< when the load began
    LoadedFigures figures;
    AliasValues values;
    KeptInstances kept;

private:
    std::vector<std::string> _beyondLimits; ///< labels of dials
};

} // namespace openhost
