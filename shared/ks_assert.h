// Assertions that hold in every build.
// SPDX-License-Identifier: MIT

#pragma once

#include <cassert>

// A programming error must stop the host rather than go on with a user's work, in release builds too; some
// checked expressions also do the work, such as making a connection.
#ifdef NDEBUG
#error "assertions stay active in every build: do not define NDEBUG"
#endif
