// Where exceptions end: the host's calls answer with results.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"
#include "base/diagnostic.h"
#include "dzerror.h"

#include <exception>
#include <string>
#include <type_traits>

namespace openhost {

/// What a call does, for whoever reads that it failed.
struct HostCall {
    std::string file, asset;
    std::string doing; ///< stands before the reason, such as "cannot load the deltas"; may be empty
    base::Severity severity = base::Severity::Error;
};

struct HostFailure {
    base::Diagnostic diagnostic;
    std::string reason; ///< as it was thrown
    bool isIo = false;  ///< a file could not be opened, read or written
};

/// While it lives, this thread is within frames that no exception may pass, such as those of a script engine.
class ForeignFrames {
public:
    ForeignFrames() { ++Depth(); }
    ~ForeignFrames() { --Depth(); }
    ForeignFrames(const ForeignFrames&) = delete;
    ForeignFrames& operator=(const ForeignFrames&) = delete;

    static bool areAround() { return Depth() > 0; }

private:
    static int& Depth();
};

HostFailure FailureOf(const HostCall& call, const std::exception& error);
void ReportFailure(const HostFailure& failure);

/// Result codes by what went wrong.
struct ErrorCodes {
    DzError io = DZ_UNABLE_TO_OPEN_FILE_ERROR;
    DzError other = DZ_OPERATION_FAILED_ERROR;

    DzError operator()(const HostFailure& failure) const { return failure.isIo ? io : other; }
};

/// Runs the work. What it throws is reported, and the result is then what `failed` makes of it. Work that is
/// cancelled has not failed: whoever began it is told, or where foreign frames are around, nobody is.
template <class Work, class Failed>
std::invoke_result_t<Work> GuardHostCall(const HostCall& call, Work work, Failed failed)
{
    HostFailure failure;
    bool isReported = true;
    try {
        return work();
    } catch (const std::exception& error) {
        failure = FailureOf(call, error);
    } catch (const base::Cancelled&) {
        if (!ForeignFrames::areAround())
            throw;
        failure.reason = "cancelled";
        isReported = false;
    }
    // After the exception has ended, since what follows may run an event loop.
    if (isReported)
        ReportFailure(failure);
    return failed(failure);
}

/// Likewise, for calls that say with false that they failed.
template <class Work>
bool GuardHostCall(const HostCall& call, Work work)
{
    return GuardHostCall(call, work, [](const HostFailure&) { return false; });
}

} // namespace openhost
