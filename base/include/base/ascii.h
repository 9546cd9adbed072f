// Letters of names that files and programs agree on.
// SPDX-License-Identifier: MIT

#pragma once

namespace base {

/// The C library's functions go by the locale, and a Turkish i has no upper case in one byte.
constexpr char ToLowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool IsLetterOrDigitAscii(char c)
{
    const char lower = ToLowerAscii(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9');
}

} // namespace base
