// The host's scene: selection, figures and OBJ files.
// SPDX-License-Identifier: MIT

#include "ks_daz-helpers.h"

#include "ks_daz-adaptation.h"
#include "ks_daz-managers.h"
#include "ks_exception.h"
#include "ks_string.h"

#include <memory>

#include <dzbone.h>
#include <dzexporter.h>
#include <dzfigure.h>
#include <dzfileiosettings.h>
#include <dzimporter.h>
#include <dznode.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <dzuri.h>

namespace kst {
namespace daz {

namespace {

struct StockFigure {
    BaseFigure figure;
    const char* assetUri;
};

// The vendor folder is spelled both ways, as the figures themselves do; the comparison ignores case.
const StockFigure stockFigures[] = {
    {BaseFigure::Genesis3Female, "/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#Genesis3Female"},
    {BaseFigure::Genesis8Female, "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female"},
    {BaseFigure::Genesis8_1Female,
     "/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female"},
    {BaseFigure::Genesis3Male, "/data/DAZ%203D/Genesis%203/Male/Genesis3Male.dsf#Genesis3Male"},
    {BaseFigure::Genesis8Male, "/data/Daz%203D/Genesis%208/Male/Genesis8Male.dsf#Genesis8Male"},
    {BaseFigure::Genesis8_1Male, "/data/Daz%203D/Genesis%208/Male%208_1/Genesis8_1Male.dsf#Genesis8_1Male"},
    {BaseFigure::Genesis9, "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9"},
};

} // namespace

std::vector<DzNode*> GetSceneSelection()
{
    std::vector<DzNode*> nodes;
    DzNodeListIterator iterator = dzScene->selectedNodeListIterator();
    while (iterator.hasNext())
        if (DzNode* const node = iterator.next())
            nodes.push_back(node);
    return nodes;
}

DzNode* GetPrimarySceneSelection(bool throwIfMissing)
{
    DzNode* const node = dzScene->getPrimarySelection();
    if (!node && throwIfMissing)
        throw Exception("nothing selected in scene");
    return node;
}

DzNode* ResolveBone(DzNode* node)
{
    const DzBone* const bone = qobject_cast<DzBone*>(node);
    return bone ? bone->getSkeleton() : node;
}

DzNode* ResolveSceneSelection()
{
    return ResolveBone(GetPrimarySceneSelection(false));
}

bool SetSceneSelection(DzNode& node)
{
    if (dzScene->getNumSelectedNodes() == 1 && dzScene->getSelectedNode(0) == &node)
        return false;
    dzScene->selectAllNodes(false);
    dzScene->setPrimarySelection(&node);
    return true;
}

DzFigure& ResolveToFigure_X(DzNode& node)
{
    DzFigure* const figure = qobject_cast<DzFigure*>(&node);
    if (!figure)
        throw Exception("node {} is not a DzFigure", str::Quote(node.getLabel()));
    return *figure;
}

std::string GetNodeAssetUri(const DzNode& node)
{
    return str::ToStd(node.getAssetUri().toString());
}

BaseFigure GetBaseFigure(std::string_view assetUri)
{
    for (const StockFigure& stock : stockFigures)
        if (str::EqualsCaseInsensitive(assetUri, stock.assetUri))
            return stock.figure;
    return BaseFigure::None;
}

void ExportOneObj_X(DzFileIOSettings& settings, std::string_view path)
{
    const std::unique_ptr<DzExporter> exporter(&GetObjExporter_X());
    settings.setIntValue(QLatin1String("RunSilent"), 1);
    const DzError result = exporter->writeFile(str::ToQ(path), &settings);
    if (result != DZ_NO_ERROR)
        throw Exception("failed to export OBJ {}: {}", str::Quote(path), KsHelpersDaz::GetErrorText(result));
}

void ImportOneObj_X(DzFileIOSettings& settings, std::string_view path)
{
    const std::unique_ptr<DzImporter> importer(&GetObjImporter_X());
    settings.setIntValue(QLatin1String("RunSilent"), 1);
    const DzError result = importer->readFile(str::ToQ(path), &settings);
    if (result != DZ_NO_ERROR)
        throw Exception("failed to export import OBJ {}: {}", str::Quote(path),
                        KsHelpersDaz::GetErrorText(result));
}

} // namespace daz
} // namespace kst
