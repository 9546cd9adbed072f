// Which nodes of the files are converted, and how the others keep out of the way.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_figures.h"

#include "base/counted.h"
#include "command.h"
#include "dson/reader.h"
#include "dzmatrix3.h"
#include "dznode.h"
#include "dzscene.h"
#include "gnt_convert-figure.h"
#include "ks_morphlist.h"
#include "openhost/missing_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>

#include <fmt/format.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

std::string Quoted(const DzNode& node)
{
    return fmt::format("\"{}\"", node.getLabel().toStdString());
}

/// `"A", "B" and "C"`; of many the first ones.
std::string Names(const std::vector<DzNode*>& nodes)
{
    constexpr std::size_t most = 3;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(most, nodes.size()); ++i)
        names.push_back(Quoted(*nodes[i]));
    if (nodes.size() > most)
        names.push_back(fmt::format("{} more", nodes.size() - most));
    const std::string last = std::move(names.back());
    names.pop_back();
    return fmt::format("{}{}{}", fmt::join(names, ", "), names.empty() ? "" : " and ", last);
}

/// Also one whose shapes are missing, which is to be told and not to be passed over.
bool WearsShape(DzNode& node)
{
    return !kst::MorphList(node).getActiveProperties().empty() ||
           !openhost::FindMissingShapes(node).shapes.empty();
}

struct Wanted {
    bool (*fits)(const DzNode&);
    const char* name;
    bool wearsShape; ///< rather than none
};

DzNode& Choose(const std::vector<DzNode*>& came, const Wanted& wanted, const fs::path& file,
               base::Diagnostics& diagnostics)
{
    std::vector<DzNode*> fitting;
    std::copy_if(came.begin(), came.end(), std::back_inserter(fitting),
                 [&wanted](const DzNode* node) { return wanted.fits(*node); });
    if (fitting.empty())
        throw std::runtime_error(
            fmt::format("{}: has no {}, only {}", FileText(file), wanted.name, Names(came)));
    auto found = fitting.begin();
    if (wanted.wearsShape && fitting.size() > 1)
        found = std::find_if(fitting.begin(), fitting.end(), [](DzNode* node) { return WearsShape(*node); });
    DzNode& chosen = found == fitting.end() ? *fitting.front() : **found;
    const auto tell = [&](std::string what) {
        diagnostics.push_back({base::Severity::Warning, FileText(file), {}, std::move(what)});
    };
    if (fitting.size() > 1)
        tell(fmt::format("has {} figures that could be taken, {}; {} is", fitting.size(), Names(fitting),
                         &chosen == fitting.front() ? std::string("the first")
                                                    : Quoted(chosen) + ", the first that wears a shape,"));
    else if (&chosen != came.front())
        tell(fmt::format("{} is taken, the first {}; {} comes before it", Quoted(chosen), wanted.name,
                         Quoted(*came.front())));
    return chosen;
}

/// Where a node stands in the world: its position, then rotation and scale.
using Placement = std::array<double, 12>;

Placement PlacementOf(const DzNode& node)
{
    const DzVec3 position = node.getWSPos();
    const DzMatrix3 transform = node.getWSTransform();
    Placement placement{position.m_x, position.m_y, position.m_z};
    for (int i = 0; i < 9; ++i)
        placement[static_cast<std::size_t>(3 + i)] = transform.at(i / 3, i % 3);
    return placement;
}

bool IsLike(const Placement& a, const Placement& b)
{
    constexpr double tolerance = 1e-5; // of what single precision leaves
    return std::equal(a.begin(), a.end(), b.begin(), [](double one, double other) {
        return std::abs(one - other) <= tolerance * std::max(1.0, std::abs(one));
    });
}

/// Numbers as the host gives them to labels that are taken.
class FreeLabels {
public:
    explicit FreeLabels(const std::vector<DzNode*>& nodes)
    {
        for (const DzNode* const node : nodes)
            _taken.insert(node->getLabel());
    }

    QString next(const QString& taken)
    {
        int& number = _numbers[taken];
        QString label;
        do {
            label = QStringLiteral("%1 (%2)").arg(taken, QString::number(number++ + 2));
        } while (_taken.count(label) > 0);
        return label;
    }

private:
    std::set<QString> _taken;
    std::map<QString, int> _numbers;
};

std::vector<DzNode*> NodesOfScene()
{
    std::vector<DzNode*> nodes;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        nodes.push_back(dzScene->getNode(i));
    return nodes;
}

} // namespace

DzNode& ChooseSource(const std::vector<DzNode*>& came, bool isToWearShape, const fs::path& file,
                     base::Diagnostics& diagnostics)
{
    return Choose(came,
                  {&GntConverter::IsSource, "Genesis 3, 8 or 8.1 figure to convert from", isToWearShape},
                  file, diagnostics);
}

DzNode& ChooseTarget(const std::vector<DzNode*>& came, const fs::path& file, base::Diagnostics& diagnostics)
{
    return Choose(came, {&GntConverter::IsTarget, "Genesis 9 figure to convert to", false}, file,
                  diagnostics);
}

void StandAlone(DzNode& figure, const fs::path& file, base::Diagnostics& diagnostics)
{
    const auto tell = [&](std::string what) {
        diagnostics.push_back({base::Severity::Warning, FileText(file), Quoted(figure), std::move(what)});
    };
    if (DzNode* const parent = figure.getNodeParent()) {
        const Placement hanging = PlacementOf(figure);
        parent->removeNodeChild(&figure);
        if (!IsLike(hanging, PlacementOf(figure)))
            tell(fmt::format("hangs on {}, which is moved, turned or scaled; it is converted without that",
                             Quoted(*parent)));
    }
    if (!figure.isVisible()) {
        figure.setVisible(true);
        tell("is hidden and is shown for the conversion");
    }
}

void KeepLabelsFree(const DzNode& source, const DzNode& target, base::Diagnostics& diagnostics)
{
    const GntLoadedLabels loaded = GntConverter::LoadedLabels(source);
    const QString stock = QString::fromUtf8(loaded.stock), temporary = QString::fromUtf8(loaded.temporary);
    const std::vector<DzNode*> nodes = NodesOfScene();
    FreeLabels labels(nodes);
    std::vector<std::string> changed;
    for (DzNode* const node : nodes) {
        const QString label = node->getLabel();
        const bool isInTheWay = label == stock || (label == temporary && node != &target);
        if (!isInTheWay || node == &source)
            continue;
        node->setLabel(labels.next(label));
        changed.push_back(fmt::format("\"{}\" is {} meanwhile", label.toStdString(), Quoted(*node)));
    }
    if (changed.empty())
        return;
    diagnostics.push_back(
        {base::Severity::Warning,
         {},
         {},
         fmt::format("{} the label of a figure that the conversion loads: {}",
                     base::Counted(changed.size(), "node has", "nodes have"),
                     changed.size() > 1 ? changed.front() + ", and so on" : changed.front())});
}

std::shared_ptr<GntParams> ParamsOf(DzNode& source, DzNode& target)
{
    dzScene->selectAllNodes(false);
    source.select(true);
    target.select(true);
    return GntConverter::FindSourceAndTargetInSceneSelected_X();
}

} // namespace cli
