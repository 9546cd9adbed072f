// Refining figures beside one another before work that does it one by one.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <vector>

class DzNode;

namespace openhost {

/// The refinements of some nodes' meshes, made at once on all processors, where each by itself keeps one of
/// them busy for a good part of the time. Whatever subdivides meshes of the same topology uses them as long
/// as this lives.
class RefinedAhead {
public:
    /// @param nodes   with or without a mesh; what cannot be refined is left to whoever needs it
    /// @param level   1 or more
    /// @throws base::Cancelled
    RefinedAhead(const std::vector<const DzNode*>& nodes, int level);
    ~RefinedAhead();
    RefinedAhead(const RefinedAhead&) = delete;
    RefinedAhead& operator=(const RefinedAhead&) = delete;

private:
    std::vector<std::shared_ptr<const void>> _refinements;
};

} // namespace openhost
