// What only tests do to the host: refusing operations, answering, taking away.
// SPDX-License-Identifier: MIT

#include "app/operations.h"

#include "app/app_access.h"
#include "app/app_parts.h"
#include "dzapp.h"
#include "openhost/testing.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace openhost {

namespace {

/// The newest last.
std::vector<OperationWatch*>& Watches()
{
    static std::vector<OperationWatch*> watches;
    return watches;
}

} // namespace

OperationWatch::OperationWatch()
{
    Watches().push_back(this);
}

OperationWatch::~OperationWatch()
{
    Watches().erase(std::remove(Watches().begin(), Watches().end(), this), Watches().end());
}

bool IsWatched()
{
    return !Watches().empty();
}

bool Allows(Operation operation, const QString& detail)
{
    return !IsWatched() || Watches().back()->allow(operation, detail);
}

AttendantOverride::AttendantOverride(Attendant& attendant)
    : _former(std::exchange(AppAccess::AttendantOf(*dzApp), &attendant))
{
}

AttendantOverride::~AttendantOverride()
{
    AppAccess::AttendantOf(*dzApp) = _former;
}

bool RemoveManager(const QString& className)
{
    return AppAccess::Parts(*dzApp).remove(className);
}

} // namespace openhost
