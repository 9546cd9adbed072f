// Why the system refused something, in the program's language.
// SPDX-License-Identifier: MIT

#include "base/reason.h"

#include <cstring>

namespace base {

std::string ReasonOf(int errorNumber)
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 32))
    if (const char* const text = strerrordesc_np(errorNumber))
        return text;
#endif
    return std::strerror(errorNumber);
}

std::string ReasonOf(const std::error_code& error)
{
    const bool isOfSystem =
        error.category() == std::system_category() || error.category() == std::generic_category();
    return isOfSystem ? ReasonOf(error.value()) : error.message();
}

} // namespace base
