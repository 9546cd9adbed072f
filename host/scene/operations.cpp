// Asking the listener before operations.
// SPDX-License-Identifier: MIT

#include "openhost/operations.h"

namespace openhost {

namespace {

OperationListener* g_listener = nullptr;

} // namespace

OperationListener::~OperationListener() = default;

void SetOperationListener(OperationListener* listener)
{
    g_listener = listener;
}

bool IsListening()
{
    return g_listener != nullptr;
}

bool AllowOperation(const char* operation, const QString& detail)
{
    return !g_listener || g_listener->allow(QLatin1String(operation), detail);
}

} // namespace openhost
