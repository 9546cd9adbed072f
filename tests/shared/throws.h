// The message of an exception, for tests that assert it whole.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_exception.h"

#include <string>

/// What the call throws; a text that no message equals when it throws nothing.
template <class Call>
std::string MessageOf(Call call)
{
    try {
        call();
    } catch (const kst::Exception& error) {
        return error.what();
    }
    return "(nothing was thrown)";
}

/// A text as messages quote it.
inline std::string Quoted(const std::string& text)
{
    return "\xE2\x80\x9C" + text + "\xE2\x80\x9D";
}
