// Refinements shared between figures.
// SPDX-License-Identifier: MIT

#include "subdivision_cache.h"

#include "app/work_memory.h"

#include <algorithm>

namespace openhost {

namespace {

struct Entry {
    std::weak_ptr<const geometry::Topology> cage;
    geometry::BoundaryRule rule;
    std::vector<geometry::Crease> creases;
    std::weak_ptr<const geometry::Subdivision> refinement;
};

/// What the morphs of one work share is not worth its memory after it.
class Fits {
public:
    explicit Fits(std::shared_ptr<const geometry::Subdivision> of) : _of(std::move(of)) {}
    ~Fits() { _of->forgetFits(); }
    Fits(const Fits&) = delete;
    Fits& operator=(const Fits&) = delete;

private:
    std::shared_ptr<const geometry::Subdivision> _of;
};

} // namespace

std::shared_ptr<const geometry::Subdivision>
FindSubdivision(const std::shared_ptr<const geometry::Topology>& cage, int levels,
                geometry::BoundaryRule rule, const std::vector<geometry::Crease>& creases)
{
    static std::vector<Entry> entries;
    entries.erase(
        std::remove_if(entries.begin(), entries.end(), [](const Entry& e) { return e.refinement.expired(); }),
        entries.end());
    for (const Entry& entry : entries) {
        const auto refinement = entry.refinement.lock();
        if (refinement && entry.cage.lock() == cage && entry.rule == rule && entry.creases == creases &&
            refinement->levels() >= levels)
            return refinement;
    }
    const auto made = std::make_shared<const geometry::Subdivision>(cage, levels, rule, creases);
    entries.push_back({cage, rule, creases, made});
    // One step deletes a figure, and a later one subdivides another one of its kind.
    KeepDuringWork(std::make_shared<const Fits>(made));
    return made;
}

} // namespace openhost
