// Checks of the string functions on the user's machine.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include "ks_exception.h"

namespace kst {
namespace str {

namespace {

typedef std::set<std::string> StringSet;

} // namespace

void ThrowUnless(bool holds, std::string_view condition)
{
    if (!holds)
        throw Exception("Test failed: {}", condition);
}

void TestCasesOrThrow()
{
    ThrowUnless(Implode("_!_", StringSet{"123", "456", "789"}) == "123_!_456_!_789",
                "kst::str::Implode(\"_!_\", StringSet{ \"123\", \"456\", \"789\" }) == \"123_!_456_!_789\"");
    const std::string str2 = Implode(",", std::set<int>{1, 2, 3, 4, 5});
    ThrowUnless(str2 == "1,2,3,4,5", "str2 == \"1,2,3,4,5\"");
    const std::string_view str3 = trimmed(" 123 ");
    ThrowUnless(str3 == "123", "str3 == \"123\"");
    const std::string_view str4 = trimmed(" 1 ");
    ThrowUnless(str4 == "1", "str4 == \"1\"");
    const std::string_view str5 = trimmed("  ");
    ThrowUnless(str5.empty(), "str5.empty()");
}

} // namespace str
} // namespace kst
