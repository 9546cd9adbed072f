// Strings under settings in which an English letter has no upper case of one byte.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/base/scoped_variable.h"
#include "tests/base/scratch_folder.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <string>

namespace {

/// Of Turkey, made anew, since few machines have it; until the end of the scope.
class TurkishLocale {
public:
    TurkishLocale()
    {
        const std::string place = (_folder.path() / "tr").string();
        const std::string make = "localedef --quiet -i tr_TR -f ISO-8859-9 '" + place + "' 2>/dev/null";
        _isSet = std::system(make.c_str()) == 0 && std::setlocale(LC_CTYPE, "tr");
    }
    ~TurkishLocale() { std::setlocale(LC_CTYPE, _before.c_str()); }
    TurkishLocale(const TurkishLocale&) = delete;
    TurkishLocale& operator=(const TurkishLocale&) = delete;

    bool isSet() const { return _isSet && std::toupper('i') != 'I'; }

private:
    const ScratchFolder _folder;
    const ScopedVariable _place{"LOCPATH", _folder.path()};
    const std::string _before = std::setlocale(LC_CTYPE, nullptr);
    bool _isSet = false;
};

} // namespace

TEST(StringsInTurkish, keep_to_english_letters_and_leave_parts_of_characters_alone)
{
    using namespace kst::str;
    const TurkishLocale locale;
    ASSERT_TRUE(locale.isSet()) << "localedef makes no Turkish settings; scripts/setup installs locales";
    EXPECT_EQ(ToUpper("import"), "IMPORT");
    EXPECT_EQ(ToLower("IMPORT"), "import");
    EXPECT_EQ(FindCaseInsensitive("figure.obj", "FIG"), 0u);
    EXPECT_EQ(MakeSentence("importing failed"), "Importing failed.");
    EXPECT_EQ(ToUpper("\xC3\xB6"), "\xC3\xB6");
    EXPECT_EQ(trimmed("\xC2\xA0"), "\xC2\xA0");
}
