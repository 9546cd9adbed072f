// The figures and props of a file on their way into the scene.
// SPDX-License-Identifier: MIT

#include "scene_figures.h"

#include "base/errors.h"
#include "dzbone.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzscene.h"
#include "loading/channel_properties.h"
#include "preset_target.h"
#include "scene_dforms.h"
#include "scene_fitting.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

SceneFigures::SceneFigures(AssetLibrary& library, std::shared_ptr<const dson::Document> document,
                           DzNode* selected)
    : _load(library, std::move(document), selected), _placing(_load), _dials(_load)
{
}

void SceneFigures::prepare()
{
    _placing.placeAll();
    _dials.dialAll();
    _placing.markFavorites();
    _load.tellBeyondLimits();
    for (const LoadedFigure& figure : _load.figures.all())
        _load.report.addDuplicates(figure.assembly.duplicateOutputs());
    if (const std::string idle = _load.kept.idleParts(); !idle.empty() && !isEmpty())
        _load.report.warn("kept for saving and without effect here: " + idle);
    _load.report.tell(_load.sources.document().leftOut, isEmpty());
}

std::vector<DzNode*> SceneFigures::enter()
{
    std::vector<DzNode*> tops = enterScene();
    SceneFitting(_load).fitAll();
    _dials.dialSelection();
    _dials.tellOddities();
    for (const std::string& left : ConnectDFormers(_load.figures))
        _load.report.warn(left);
    animate();
    _load.report.handOver(isEmpty());
    _load.kept.handOver();
    return tops;
}

std::vector<DzNode*> SceneFigures::enterScene()
{
    const PropertyResolver elsewhere = [this](const std::string& uri) { return _load.figures.resolve(uri); };
    for (LoadedFigure& figure : _load.figures.all())
        figure.assembly.connectFormulas(elsewhere);
    _load.values.apply(_load.report);
    std::vector<DzNode*> tops;
    // Bones by themselves go last, as they are found last when the scene is saved and loaded again.
    std::vector<LoadedFigure*> ordered;
    for (LoadedFigure& figure : _load.figures.all())
        ordered.push_back(&figure);
    std::stable_partition(ordered.begin(), ordered.end(), [](const LoadedFigure* figure) {
        return figure->parent || !qobject_cast<DzBone*>(figure->node);
    });
    for (LoadedFigure* const next : ordered) {
        LoadedFigure& figure = *next;
        std::unique_ptr<DzNode> root = figure.assembly.takeRoot();
        if (figure.parent)
            figure.parent->addNodeChild(root.get(), figure.instance->inPlace);
        else if (!dzScene->addNode(root.get()))
            throw base::Error(root->getLabel().toStdString() + " cannot be added to the scene");
        if (figure.isTop)
            tops.push_back(root.get());
        root.release();
    }
    return tops;
}

void SceneFigures::animate()
{
    if (_load.figures.empty())
        return;
    DzNode& figure = *_load.figures.all().front().node;
    const PresetTarget first(figure);
    std::vector<std::string> missing;
    for (const dson::AnimatedValue& value : _load.sources.document().animations) {
        const dson::Uri uri = dson::ParseUri(value.url);
        DzNumericProperty* const property =
            NamesSelection(uri) ? first.find(uri) : _load.figures.resolve(value.url);
        if (property)
            AliasEnd(*property).setDoubleRawValue(value.value);
        else if (!IsOfMaterial(uri))
            missing.push_back(value.url);
        _load.kept.enter(value, property, figure);
    }
    if (!missing.empty())
        _load.report.warnLeftOut(fmt::format("{} of {} animated values {} nothing that is there{}",
                                             missing.size(), _load.sources.document().animations.size(),
                                             missing.size() == 1 ? "names" : "name", Examples(missing)));
}

} // namespace openhost
