// The two figures that are looked at against each other.
// SPDX-License-Identifier: MIT

#include "compared_figures.h"

#include <dzbox3.h>
#include <dzscene.h>

#include <utility>

namespace desktop {

namespace {

QVector<QPointer<DzSkeleton>> FiguresOfScene()
{
    QVector<QPointer<DzSkeleton>> figures;
    for (int i = 0; i < dzScene->getNumSkeletons(); ++i)
        if (DzSkeleton* const figure = dzScene->getSkeleton(i);
            !figure->getFollowTarget() && figure->getWSBoundingBox().isValid())
            figures.append(figure);
    return figures;
}

bool IsTarget(const DzSkeleton& figure)
{
    return figure.getName().startsWith(QLatin1String("Genesis9"));
}

} // namespace

ComparedFigures::ComparedFigures()
{
    // A figure comes with many nodes.
    _soon.setSingleShot(true);
    connect(&_soon, SIGNAL(timeout()), SLOT(update()));
    connect(dzScene, SIGNAL(nodeListChanged()), &_soon, SLOT(start()));
    update();
}

void ComparedFigures::update()
{
    _all = FiguresOfScene();
    if (!_all.contains(_source))
        _source = nullptr;
    if (!_all.contains(_result))
        _result = nullptr;
    if (_all.size() < 2) {
        _source = _result = nullptr;
    } else if (!_source && !_result) {
        _source = _all[0];
        _result = _all[1];
        if (IsTarget(*_source) && !IsTarget(*_result))
            std::swap(_source, _result);
    } else if (!_source || !_result) {
        QPointer<DzSkeleton>& missing = _source ? _result : _source;
        const QPointer<DzSkeleton>& other = _source ? _source : _result;
        missing = _all[0] == other ? _all[1] : _all[0];
    }
    emit changed();
}

void ComparedFigures::setSource(DzSkeleton* figure)
{
    if (!_all.contains(figure) || figure == _source)
        return;
    if (figure == _result)
        _result = _source;
    _source = figure;
    emit changed();
}

void ComparedFigures::setResult(DzSkeleton* figure)
{
    if (!_all.contains(figure) || figure == _result)
        return;
    if (figure == _source)
        _source = _result;
    _result = figure;
    emit changed();
}

} // namespace desktop
