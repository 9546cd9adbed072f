// Whether a program's memory can be limited here.
// SPDX-License-Identifier: MIT

#pragma once

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKIP_WITHOUT_MEMORY_LIMITS()                                                                         \
    GTEST_SKIP() << "the sanitizer takes more address space than a limit leaves"
#else
#define SKIP_WITHOUT_MEMORY_LIMITS() static_cast<void>(0)
#endif
