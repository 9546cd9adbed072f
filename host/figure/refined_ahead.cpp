// Refining figures beside one another before work that does it one by one.
// SPDX-License-Identifier: MIT

#include "openhost/refined_ahead.h"

#include "dznode.h"
#include "dzobject.h"
#include "figure/pipeline.h"
#include "subdivision_cache.h"

namespace openhost {

RefinedAhead::RefinedAhead(const std::vector<const DzNode*>& nodes, int level)
{
    std::vector<RefinedCage> cages;
    for (const DzNode* const node : nodes)
        if (const DzObject* const object = node->getObject(); object && object->pipeline().hasMesh())
            cages.push_back(object->pipeline().refinedCage());
    for (auto& refinement : FindSubdivisions(cages, level))
        if (refinement)
            _refinements.push_back(std::move(refinement));
}

RefinedAhead::~RefinedAhead() = default;

} // namespace openhost
