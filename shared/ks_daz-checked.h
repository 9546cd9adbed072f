// What the host returned, or the exception for what it did not.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_exception.h"

namespace kst {
namespace daz {

/// @throws Exception  with that message, when the object is null and the flag is set
template <class T>
T* CheckedIf(T* object, bool throwIfMissing, const char* message)
{
    if (!object && throwIfMissing)
        throw Exception(message);
    return object;
}

template <class T>
T& Checked(T* object, const char* message)
{
    return *CheckedIf(object, true, message);
}

} // namespace daz
} // namespace kst
