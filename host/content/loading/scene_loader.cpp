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

#include <fmt/format.h>

namespace openhost {

namespace {

/// Files that open each other, as those do that a script opens when it hears that one was opened. Each takes
/// a good part of the stack.
constexpr int mostNestedLoads = 8;

/// Tells the scene that a load is going on, also on the way of an exception.
class LoadBracket {
public:
    explicit LoadBracket(const std::filesystem::path& file)
    {
        if (g_nested >= mostNestedLoads)
            throw base::Error(
                fmt::format("{}: more than {} files open each other", file.string(), mostNestedLoads));
        ++g_nested;
        dzScene->beginLoad();
    }
    ~LoadBracket()
    {
        dzScene->endLoad(); // tells those who may open the next
        --g_nested;
    }
    LoadBracket(const LoadBracket&) = delete;
    LoadBracket& operator=(const LoadBracket&) = delete;

private:
    static int g_nested;
};

int LoadBracket::g_nested = 0;

} // namespace

bool LoadIntoScene(AssetLibrary& library, const std::filesystem::path& file, bool replace)
{
    const std::shared_ptr<const dson::Document> document = library.read(file);
    const LoadBracket bracket(file);
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
