// How often a program looks for what others have left unfinished.
// SPDX-License-Identifier: MIT

#pragma once

namespace base {

/// From now on sets of files search each folder once for unfinished files of programs that have ended, as
/// single files do, rather than each time: a program that puts thousands of sets into one folder would list
/// it thousands of times, longer each time. Sets that were left are finished all the same; what else is left
/// meanwhile goes with the next start of a program.
void SearchFoldersOnce();

} // namespace base
