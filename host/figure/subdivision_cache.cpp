// Refinements shared between figures.
// SPDX-License-Identifier: MIT

#include "subdivision_cache.h"

#include "app/work_memory.h"
#include "geometry/errors.h"

#include <tbb/parallel_for.h>

#include <algorithm>

namespace openhost {

namespace {

using Refinement = std::shared_ptr<const geometry::Subdivision>;

/// What the morphs of one work share is not worth its memory after it.
class Fits {
public:
    explicit Fits(Refinement of) : _of(std::move(of)) {}
    ~Fits() { _of->forgetFits(); }
    Fits(const Fits&) = delete;
    Fits& operator=(const Fits&) = delete;

private:
    Refinement _of;
};

struct Entry {
    std::weak_ptr<const geometry::Topology> topology;
    geometry::BoundaryRule rule;
    std::vector<geometry::Crease> creases;
    std::weak_ptr<const geometry::Subdivision> refinement;
    std::weak_ptr<const Fits> fits;

    bool isOf(const RefinedCage& cage) const
    {
        return topology.lock() == cage.topology && rule == cage.rule && creases == cage.creases;
    }

    /// One step deletes a figure, and a later one subdivides another one of its kind.
    void keepDuringWork(const Refinement& own)
    {
        std::shared_ptr<const Fits> kept = fits.lock();
        if (!kept)
            kept = std::make_shared<const Fits>(own);
        fits = kept;
        KeepDuringWork(std::move(kept));
    }
};

std::vector<Entry>& Entries()
{
    static std::vector<Entry> entries;
    return entries;
}

/// Null where there is none.
Refinement Known(const RefinedCage& cage, int levels)
{
    for (Entry& entry : Entries())
        if (Refinement refinement = entry.refinement.lock();
            refinement && entry.isOf(cage) && refinement->levels() >= levels) {
            entry.keepDuringWork(refinement);
            return refinement;
        }
    return nullptr;
}

Refinement Make(const RefinedCage& cage, int levels)
{
    return std::make_shared<const geometry::Subdivision>(cage.topology, levels, cage.rule, cage.creases);
}

void Note(const RefinedCage& cage, const Refinement& made)
{
    std::vector<Entry>& entries = Entries();
    entries.erase(
        std::remove_if(entries.begin(), entries.end(), [](const Entry& e) { return e.refinement.expired(); }),
        entries.end());
    entries.push_back({cage.topology, cage.rule, cage.creases, made, {}});
    entries.back().keepDuringWork(made);
}

} // namespace

Refinement FindSubdivision(const RefinedCage& cage, int levels)
{
    if (Refinement known = Known(cage, levels))
        return known;
    Refinement made = Make(cage, levels);
    Note(cage, made);
    return made;
}

std::vector<Refinement> FindSubdivisions(base::Span<const RefinedCage> cages, int levels)
{
    std::vector<Refinement> found(cages.size());
    std::vector<std::size_t> missing;
    for (std::size_t c = 0; c < cages.size(); ++c) {
        found[c] = Known(cages[c], levels);
        const auto isSame = [&](std::size_t other) { return cages[other] == cages[c]; };
        if (!found[c] && std::none_of(missing.begin(), missing.end(), isSame))
            missing.push_back(c);
    }
    // OpenSubdiv keeps but one thread for a cage.
    tbb::parallel_for(std::size_t{0}, missing.size(), [&](std::size_t m) {
        try {
            found[missing[m]] = Make(cages[missing[m]], levels);
        } catch (const geometry::TopologyError&) {
            // Told by whoever needs it.
        }
    });
    for (const std::size_t c : missing)
        if (found[c])
            Note(cages[c], found[c]);
    for (std::size_t c = 0; c < cages.size(); ++c)
        if (!found[c])
            found[c] = Known(cages[c], levels);
    return found;
}

} // namespace openhost
