// Where exceptions end: the host's calls answer with results.
// SPDX-License-Identifier: MIT

#include "app/guard.h"

#include "base/errors.h"
#include "base/file_failure.h"
#include "openhost/diagnostics.h"

#include <new>

namespace openhost {

int& ForeignFrames::Depth()
{
    thread_local int depth = 0;
    return depth;
}

HostFailure FailureOf(const HostCall& call, const std::exception& error)
{
    HostFailure failure;
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
    failure.reason = isMemory ? "there is not enough memory" : error.what();
    failure.isIo = dynamic_cast<const base::IoError*>(&error) != nullptr;
    failure.diagnostic = base::FailureOfFile(call.severity, call.file, failure.reason);
    failure.diagnostic.asset = call.asset;
    if (!call.doing.empty())
        failure.diagnostic.what = call.doing + ": " + failure.diagnostic.what;
    return failure;
}

void ReportFailure(const HostFailure& failure)
{
    Report(failure.diagnostic);
}

} // namespace openhost
