// How far one figure's surface lies from another's, measured in the background.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_colors.h"
#include "geometry/polygon_mesh.h"
#include "geometry/surface_distance.h"

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <memory>
#include <vector>

class DzSkeleton;

namespace desktop {

/// Meshes apart from the scene, which goes on changing meanwhile.
using Surfaces = std::vector<geometry::PolygonMesh>;

struct DifferenceQuestion {
    Surfaces from, to; ///< about the same origin; cm
};

struct DifferenceAnswer {
    std::vector<std::vector<float>> distances; ///< cm, one per vertex of each surface; infinite where unknown
    geometry::DistanceSummary summary;         ///< cm; of those that are known
    app::ColorScale scale;
    std::size_t unknown = 0;
    QString trouble; ///< why there is nothing else; empty otherwise
};

/// Of each vertex to the nearest of the other surfaces.
DifferenceAnswer Measure(const DifferenceQuestion& question);

/// Answers one question after the other; of those that come meanwhile only the newest.
class DifferenceWork : public QObject {
    Q_OBJECT

public:
    DifferenceWork();
    ~DifferenceWork() override; ///< waits for the one under way

    bool isBusy() const { return _isBusy; }
    void ask(std::shared_ptr<const DifferenceQuestion> question);
    /// What is under way or waits is not answered any more.
    void drop();

signals:
    void answered(std::shared_ptr<const desktop::DifferenceAnswer> answer);

private:
    void start(std::shared_ptr<const DifferenceQuestion> question);
    void finish(std::shared_ptr<const DifferenceAnswer> answer, int round);

    QThreadPool _thread;
    std::shared_ptr<const DifferenceQuestion> _next;
    bool _isBusy = false;
    int _round = 0; ///< answers of earlier ones do not count
};

} // namespace desktop
