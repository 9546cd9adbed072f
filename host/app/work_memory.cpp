// Memory that long work keeps for its own later steps.
// SPDX-License-Identifier: MIT

#include "app/work_memory.h"

#include "dzprogress.h"

#include <algorithm>
#include <vector>

namespace openhost {

namespace {

std::vector<std::shared_ptr<const void>>& Kept()
{
    static std::vector<std::shared_ptr<const void>> kept;
    return kept;
}

} // namespace

void KeepDuringWork(std::shared_ptr<const void> value)
{
    std::vector<std::shared_ptr<const void>>& kept = Kept();
    if (DzProgress::getDepth() > 0 && std::find(kept.begin(), kept.end(), value) == kept.end())
        kept.push_back(std::move(value));
}

void EndWork()
{
    std::vector<std::shared_ptr<const void>> released;
    released.swap(Kept());
}

} // namespace openhost
