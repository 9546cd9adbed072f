// How far one figure's surface lies from another's, measured in the background.
// SPDX-License-Identifier: MIT

#include "difference_work.h"

#include "base/cancellation.h"

#include <QMetaObject>
#include <QRunnable>

#include <algorithm>
#include <cmath>

namespace desktop {

namespace {

std::vector<float> NearestOf(const geometry::PolygonMesh& from, const Surfaces& to)
{
    std::vector<float> nearest(from.vertexCount(), INFINITY);
    for (const geometry::PolygonMesh& surface : to) {
        if (surface.faceCount() == 0)
            continue;
        const std::vector<float> own = geometry::SurfaceDistances(from.positions, surface.view());
        std::transform(own.begin(), own.end(), nearest.begin(), nearest.begin(),
                       [](float a, float b) { return std::min(a, b); });
    }
    return nearest;
}

DifferenceAnswer MeasureOrTell(const DifferenceQuestion& question)
{
    DifferenceAnswer answer;
    try {
        answer = Measure(question);
    } catch (const std::exception& error) {
        answer.trouble = QString::fromUtf8(error.what());
    } catch (const base::Cancelled&) {
        answer.trouble = DifferenceWork::tr("the work was cancelled");
    }
    return answer;
}

} // namespace

DifferenceAnswer Measure(const DifferenceQuestion& question)
{
    DifferenceAnswer answer;
    std::vector<float> all;
    for (const geometry::PolygonMesh& surface : question.from) {
        answer.distances.push_back(NearestOf(surface, question.to));
        all.insert(all.end(), answer.distances.back().begin(), answer.distances.back().end());
    }
    answer.scale = app::ChooseScale(all);
    const auto known =
        std::partition(all.begin(), all.end(), [](float distance) { return std::isfinite(distance); });
    answer.unknown = static_cast<std::size_t>(all.end() - known);
    all.erase(known, all.end());
    answer.summary = geometry::Summarize(std::move(all));
    return answer;
}

DifferenceWork::DifferenceWork()
{
    _thread.setMaxThreadCount(1);
}

DifferenceWork::~DifferenceWork()
{
    _thread.waitForDone();
}

void DifferenceWork::ask(std::shared_ptr<const DifferenceQuestion> question)
{
    if (_isBusy)
        _next = std::move(question);
    else
        start(std::move(question));
}

void DifferenceWork::drop()
{
    ++_round;
    _next.reset();
}

void DifferenceWork::start(std::shared_ptr<const DifferenceQuestion> question)
{
    _isBusy = true;
    _thread.start(QRunnable::create([this, question = std::move(question), round = _round] {
        auto answer = std::make_shared<const DifferenceAnswer>(MeasureOrTell(*question));
        // Not delivered once this object has gone.
        QMetaObject::invokeMethod(
            this, [this, answer = std::move(answer), round] { finish(answer, round); }, Qt::QueuedConnection);
    }));
}

void DifferenceWork::finish(std::shared_ptr<const DifferenceAnswer> answer, int round)
{
    _isBusy = false;
    if (round == _round)
        emit answered(std::move(answer));
    // Whoever was told may have asked again.
    if (!_isBusy && _next)
        start(std::move(_next));
}

} // namespace desktop
