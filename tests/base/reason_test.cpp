// The system's reasons under settings of another language.
// SPDX-License-Identifier: MIT

#include "base/ascii.h"
#include "base/reason.h"
#include "tests/base/scoped_variable.h"
#include "tests/base/scratch_folder.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>

#include <libintl.h>

namespace {

/// A catalogue of one translation.
std::string Catalogue(const std::string& english, const std::string& other)
{
    const std::uint32_t textsAt = 44;
    const auto size = [](const std::string& text) { return static_cast<std::uint32_t>(text.size()); };
    const std::uint32_t head[] = {0x950412DE,
                                  0,
                                  1,
                                  28,
                                  36,
                                  0,
                                  textsAt,
                                  size(english),
                                  textsAt,
                                  size(other),
                                  textsAt + size(english) + 1};
    return std::string(reinterpret_cast<const char*>(head), sizeof head) + english + '\0' + other + '\0';
}

} // namespace

TEST(Reason, is_english_where_the_system_speaks_another_language)
{
    const std::string english = base::ReasonOf(ENOSPC);
    EXPECT_EQ(english, "No space left on device");
    const ScratchFolder folder;
    std::filesystem::create_directories(folder.path() / "de" / "LC_MESSAGES");
    std::ofstream(folder.path() / "de" / "LC_MESSAGES" / "libc.mo", std::ios::binary)
        << Catalogue(english, "Kein Platz");
    const ScopedVariable language("LANGUAGE", "de");
    bindtextdomain("libc", folder.path().c_str());
    const bool hasLocale = std::setlocale(LC_ALL, "C.UTF-8");
    const std::string ofSystem = std::strerror(ENOSPC);
    const std::string reason = base::ReasonOf(ENOSPC);
    const std::string ofCode = base::ReasonOf(std::make_error_code(std::errc::no_space_on_device));
    std::setlocale(LC_ALL, "C");
    ASSERT_TRUE(hasLocale) << "the C library has no C.UTF-8";
    ASSERT_EQ(ofSystem, "Kein Platz") << "the catalogue is not read, so nothing would be tried";
    EXPECT_EQ(reason, english);
    EXPECT_EQ(ofCode, english);
}

TEST(Reason, of_an_unknown_number_is_told_all_the_same)
{
    EXPECT_NE(base::ReasonOf(987654).find("987654"), std::string::npos);
}

TEST(Ascii, letters_are_those_of_ascii_alone)
{
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        EXPECT_EQ(base::ToLowerAscii(c), static_cast<char>(std::tolower(byte))) << byte; // of the C locale
        EXPECT_EQ(base::IsLetterOrDigitAscii(c), std::isalnum(byte) != 0) << byte;
    }
}
