// Joints that follow what an action makes of a figure's shape.
// SPDX-License-Identifier: MIT

#include "rig_follower.h"

#include <dzaction.h>
#include <dzapp.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <openhost/rig_adjustment.h>

#include <QMessageBox>

#include <vector>

namespace desktop {

namespace {

std::vector<DzMorph*> MorphsOf(const DzNode& figure)
{
    std::vector<DzMorph*> morphs;
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i)))
            morphs.push_back(morph);
    return morphs;
}

} // namespace

void RigFollower::watch(const DzAction& action)
{
    connect(&action, SIGNAL(preExecute()), SLOT(noteMorphs()), Qt::UniqueConnection);
    // The action is connected to this itself, and earlier.
    connect(&action, SIGNAL(triggered()), SLOT(followNewMorphs()), Qt::UniqueConnection);
}

void RigFollower::noteMorphs()
{
    if (_running)
        return;
    _running = sender();
    _known.clear();
    for (int i = 0; _isWanted && i < dzScene->getNumSkeletons(); ++i) {
        DzNode* const figure = dzScene->getSkeleton(i);
        QSet<QString> names;
        for (const DzMorph* const morph : MorphsOf(*figure))
            names.insert(morph->getName());
        _known.emplace_back(figure, names);
    }
}

void RigFollower::followNewMorphs()
{
    if (_running != sender())
        return;
    _running = nullptr;
    QStringList troubles;
    for (const auto& [figure, names] : _known)
        if (figure)
            follow(*figure, names, troubles);
    _known.clear();
    if (!troubles.isEmpty())
        QMessageBox::warning(dzApp->getInterface(), tr("Joints Follow New Morphs"),
                             troubles.join(QLatin1Char('\n')));
}

void RigFollower::follow(DzNode& figure, const QSet<QString>& known, QStringList& troubles) const
{
    std::vector<DzMorph*> fresh;
    for (DzMorph* const morph : MorphsOf(figure))
        if (!known.contains(morph->getName()))
            fresh.push_back(morph);
    if (fresh.empty())
        return;
    try {
        openhost::AdjustRig(figure, openhost::WholeAndParts(fresh));
    } catch (const std::exception& error) {
        troubles.append(tr("The joints of %1 do not follow: %2.")
                            .arg(figure.getLabel(), QString::fromUtf8(error.what())));
    }
}

} // namespace desktop
