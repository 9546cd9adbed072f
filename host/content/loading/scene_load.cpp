// One load of a character or scene file.
// SPDX-License-Identifier: MIT

#include "scene_load.h"

#include "base/counted.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "preset_target.h"

namespace openhost {

bool NamesSelection(const dson::Uri& uri)
{
    return uri.node.compare(0, 12, "//@selection") == 0;
}

SceneLoad::SceneLoad(AssetLibrary& library, std::shared_ptr<const dson::Document> document, DzNode* selection)
    : report(document->file.string()), sources(library, std::move(document), report), selected(selection),
      kept(sources.document())
{
}

DzNode* SceneLoad::selectedNode(const std::string& reference) const
{
    const dson::Uri uri = dson::ParseUri(reference);
    if (!NamesSelection(uri) || !selected)
        return nullptr;
    DzNode& figure = FigureOf(*selected);
    DzNode* const part = FindByPath(figure, uri.node);
    return part ? part : &figure;
}

void SceneLoad::setValue(const FigureAssembly& assembly, DzNumericProperty& property, double value)
{
    if (assembly.isAlias(property))
        values.setAlias(property, value);
    else
        values.set(property, value);
}

void SceneLoad::noteBeyondLimits(const std::vector<std::string>& labels)
{
    _beyondLimits.insert(_beyondLimits.end(), labels.begin(), labels.end());
}

void SceneLoad::tellBeyondLimits()
{
    if (!_beyondLimits.empty())
        report.warn(base::Counted(_beyondLimits.size(),
                                  "value is beyond the limits of its dial, which holds it",
                                  "values are beyond the limits of their dials, which hold them") +
                    Examples(_beyondLimits));
}

} // namespace openhost
