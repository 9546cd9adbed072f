// Figures that are loaded beside those that stand there.
// SPDX-License-Identifier: MIT

#include "standing_room.h"

#include <dzaction.h>
#include <dzbox3.h>
#include <dzfloatproperty.h>
#include <dznode.h>
#include <dzpresentation.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <openhost/diagnostics.h>
#include <openhost/length_unit.h>
#include <openhost/script_function.h>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

constexpr float gap = 15.0f; ///< cm between two figures

bool IsActor(const DzNode& node)
{
    const DzPresentation* const presentation = node.getPresentation();
    return node.isRootNode() && presentation && presentation->getType().startsWith(QLatin1String("Actor")) &&
           node.getWSBoundingBox().isValid();
}

/// Not clothes and hair, which belong where the figure is.
QList<QPointer<DzNode>> Actors()
{
    QList<QPointer<DzNode>> actors;
    for (int i = 0; i < dzScene->getNumSkeletons(); ++i)
        if (DzSkeleton* const figure = dzScene->getSkeleton(i);
            !figure->getFollowTarget() && IsActor(*figure))
            actors.append(figure);
    return actors;
}

bool IsInItsPlace(const DzNode& node)
{
    return node.getXPosControl()->getValue() == 0.0f && node.getZPosControl()->getValue() == 0.0f;
}

bool AreInOneAnother(const DzBox3& a, const DzBox3& b)
{
    return a.getMin().m_x < b.getMax().m_x && b.getMin().m_x < a.getMax().m_x &&
           a.getMin().m_z < b.getMax().m_z && b.getMin().m_z < a.getMax().m_z;
}

/// In the unit that the user has chosen.
QString ShownLength(float centimetres)
{
    switch (openhost::ShownLengthUnit()) {
    case openhost::LengthUnit::Metre:
        return StandingRoom::tr("%1 m").arg(double(centimetres) / 100.0, 0, 'f', 2);
    case openhost::LengthUnit::Inch:
        return StandingRoom::tr("%1 in").arg(double(centimetres) / 2.54, 0, 'f', 1);
    default:
        return StandingRoom::tr("%1 cm").arg(centimetres);
    }
}

} // namespace

StandingRoom::StandingRoom()
{
    connect(dzScene, SIGNAL(sceneLoadStarting()), SLOT(handleLoadStarting()));
    connect(dzScene, SIGNAL(sceneLoaded()), SLOT(handleLoaded()));
}

void StandingRoom::watch(const DzAction& action)
{
    if (!action.inherits("GntConvertFigureAction"))
        return;
    connect(&action, SIGNAL(preExecute()), SLOT(handleActionStarting()), Qt::UniqueConnection);
    // The action is connected to this itself, and earlier.
    connect(&action, SIGNAL(triggered()), SLOT(handleActionDone()), Qt::UniqueConnection);
}

void StandingRoom::handleActionStarting()
{
    _isConverting = true;
}

void StandingRoom::handleActionDone()
{
    _isConverting = false;
}

void StandingRoom::handleLoadStarting()
{
    _before = Actors();
}

void StandingRoom::handleLoaded()
{
    if (_isConverting || openhost::IsScriptRunning())
        return;
    const QList<QPointer<DzNode>> now = Actors();
    QList<QPointer<DzNode>> added, others;
    for (const QPointer<DzNode>& figure : now)
        (_before.contains(figure) ? others : added).append(figure);
    if (added.size() != 1 || others.isEmpty() || !IsInItsPlace(*added.first()))
        return;
    const DzBox3 box = added.first()->getWSBoundingBox();
    bool isInside = false;
    float right = -INFINITY;
    for (const QPointer<DzNode>& other : others) {
        const DzBox3 taken = other->getWSBoundingBox();
        isInside = isInside || AreInOneAnother(box, taken);
        right = std::max(right, taken.getMax().m_x);
    }
    if (!isInside)
        return;
    const float way = std::ceil(right + gap - box.getMin().m_x);
    added.first()->getXPosControl()->setValue(way);
    openhost::Report({base::Severity::Note,
                      {},
                      added.first()->getLabel().toStdString(),
                      tr("was put %1 to the right, beside the figure that stood there")
                          .arg(ShownLength(way))
                          .toStdString()});
    emit figurePlaced();
}

} // namespace desktop
