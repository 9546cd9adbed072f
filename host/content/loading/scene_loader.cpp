// Loading content files into the scene.
// SPDX-License-Identifier: MIT

#include "loading/scene_loader.h"

#include "add_ons.h"
#include "base/errors.h"
#include "dznode.h"
#include "dzscene.h"
#include "preset_loader.h"
#include "scene_figures.h"

#include <memory>
#include <vector>

namespace openhost {

namespace {

/// Tells the scene that a load is going on, also on the way of an exception.
struct LoadBracket {
    LoadBracket() { dzScene->beginLoad(); }
    ~LoadBracket() { dzScene->endLoad(); }
};

} // namespace

bool LoadIntoScene(AssetLibrary& library, const std::filesystem::path& file, bool replace)
{
    const std::shared_ptr<const dson::Document> document = library.read(file);
    const LoadBracket bracket;
    if (IsPreset(*document))
        return LoadPreset(*document);
    SceneFigures figures(library, document, replace ? nullptr : dzScene->getPrimarySelection());
    figures.prepare();
    if (figures.isEmpty())
        throw base::FormatError("{}: none of its figures could be loaded", file.string());
    if (replace)
        dzScene->clear();
    const std::vector<DzNode*> roots = figures.enter();
    LoadAddOns(library, *document, roots);
    if (roots.empty())
        return true;
    dzScene->selectAllNodes(false);
    for (DzNode* const root : roots)
        root->select(true);
    dzScene->setPrimarySelection(roots.front());
    return true;
}

} // namespace openhost
