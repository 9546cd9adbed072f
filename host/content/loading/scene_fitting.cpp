// Figures of a file that wear others.
// SPDX-License-Identifier: MIT

#include "scene_fitting.h"

#include "dznode.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "figure/fitting.h"
#include "figure/pipeline.h"
#include "preset_target.h"

#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

bool FollowsInTheEnd(const DzSkeleton& figure, const DzSkeleton& followed)
{
    std::set<const DzSkeleton*> met;
    const DzSkeleton* next = &figure;
    while (next && next != &followed && met.insert(next).second)
        next = next->getFollowTarget();
    return next == &followed;
}

} // namespace

SceneFitting::SceneFitting(SceneLoad& load) : _load(load) {}

void SceneFitting::fitAll()
{
    for (const LoadedFigure& figure : _load.figures.all())
        fit(figure);
    for (const LoadedFigure& figure : _load.figures.all())
        tellGraft(*figure.node);
}

DzNode* SceneFitting::fitTarget(const std::string& reference) const
{
    if (const LoadedFigures::Place* const place = _load.figures.placeOf(reference))
        return place->node;
    if (DzNode* const selected = _load.selectedNode(reference))
        return selected;
    // An id without its mark.
    const LoadedFigures::Place* const place = _load.figures.placeOf("#" + reference);
    return place ? place->node : nullptr;
}

void SceneFitting::fit(const LoadedFigure& figure)
{
    const std::string& reference = figure.instance->conformTarget;
    if (reference.empty())
        return;
    const std::string label = figure.node->getLabel().toStdString();
    auto* const follower = qobject_cast<DzSkeleton*>(figure.node);
    const DzNode* const node = fitTarget(reference);
    DzSkeleton* const target = node ? node->getSkeleton() : nullptr;
    if (!follower)
        _load.report.warnLeftOut(fmt::format("{} is no figure that could be fitted to anything", label));
    else if (!target || IsBelow(*target, *follower))
        _load.report.warnLeftOut(fmt::format("there is nothing that {} can be fitted to", label));
    else if (FollowsInTheEnd(*target, *follower))
        _load.report.warnLeftOut(
            fmt::format("{} is to be fitted to {}, which is fitted to it; it is left as it is", label,
                        target->getLabel().toStdString()));
    else
        FitTo(*follower, *target);
    if (follower && target && node != target)
        _load.report.warn(fmt::format("{} is to be fitted to {}; the figure that has it is taken", label,
                                      node->getLabel().toStdString()));
}

void SceneFitting::tellGraft(const DzNode& node) const
{
    DzObject* const object = node.getObject();
    if (!object || !qobject_cast<const DzSkeleton*>(&node))
        return;
    object->pipeline().graft();
    const std::string& problem = object->pipeline().graftProblem();
    if (!problem.empty())
        _load.report.tellLogged(node.getLabel().toStdString() + " " + problem);
}

} // namespace openhost
