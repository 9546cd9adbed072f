// Names of the user as names of files.
// SPDX-License-Identifier: MIT

#include "library/content_paths.h"
#include "openhost/morph_names.h"
#include "saving/file_names.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using openhost::FileName;

} // namespace

TEST(FileNames, keep_what_people_call_their_morphs)
{
    for (const char* const name : {"Vera", "Vera 1", "Vera_1", "FBM-Vera", "Zoë", "Вера", "ヴェラ", "فيرا",
                                   "🦊", "Vera (old), v1.2 & more!", "it's"})
        EXPECT_EQ(FileName(name), name);
}

TEST(FileNames, hold_nothing_that_a_disk_or_a_url_takes_for_something_else)
{
    EXPECT_EQ(FileName("a/b\\c:d*e?f\"g<h>i|j%k#l"), "a%2Fb%5Cc%3Ad%2Ae%3Ff%22g%3Ch%3Ei%7Cj%25k%23l");
    EXPECT_EQ(FileName("two\nlines\tand a bell\a"), "two%0Alines%09and a bell%07");
    EXPECT_EQ(FileName(".hidden"), "%2Ehidden");
    EXPECT_EQ(FileName("end."), "end%2E");
    EXPECT_EQ(FileName(" both "), "%20both%20");
    EXPECT_EQ(FileName("a\xC2\xA0z"), "a%C2%A0z") << "a blank that looks like another";
    EXPECT_EQ(FileName("back\xE2\x80\xAEwards"), "back%E2%80%AEwards") << "which nobody sees";
    for (const char* const device : {"CON", "nul", "Com1", "LPT9", "COM²", "aux.v2"})
        EXPECT_EQ(FileName(device)[0], '%') << device;
    EXPECT_EQ(FileName("Connie"), "Connie");
    EXPECT_EQ(FileName("COMB"), "COMB");
}

TEST(FileNames, begin_with_no_digit)
{
    EXPECT_EQ(FileName("1 Vera"), "_1 Vera");
    EXPECT_EQ(FileName("_1 Vera"), "%5F1 Vera");
    EXPECT_EQ(FileName("_Vera"), "_Vera");
}

TEST(FileNames, stay_apart)
{
    std::vector<std::string> names{"Zoë", "Zoé",   "Zoe",  "Vera 1", "Vera_1",  "Vera%201", "Vera%5F1",
                                   "_1",  "1",     "%5F1", "Vera.",  "Vera%2E", "Vera",     "Vera ",
                                   "a/b", "a%2Fb", "a:b",  "a?b",    "🦊",    "🐻",        "Ви",
                                   "Ві",  "a  b",  "a b",  "a_b",    "a__b",    "_",        "__",
                                   "-",   "con",   "%63on"};
    for (int length = 98; length < 140; ++length) {
        names.push_back(std::string(length, 'x'));
        names.push_back(std::string(length, 'x') + "y");
        names.push_back(std::string(length, ':'));
        std::string accents;
        for (int i = 0; i < length; ++i)
            accents += "é";
        names.push_back(accents);
    }
    std::map<std::string, std::string> users;
    for (const std::string& name : names) {
        const std::string file = openhost::FoldCase(FileName(name));
        const auto [at, isNew] = users.emplace(file, name);
        EXPECT_TRUE(isNew || at->second == name) << name << " and " << at->second << " are both " << file;
        EXPECT_LE(FileName(name).size(), 100u);
    }
}

TEST(FileNames, are_one_for_two_ways_to_write_a_letter)
{
    EXPECT_EQ(FileName("Zoe\xCC\x88"), FileName("Zo\xC3\xAB"));
}

TEST(FileNames, end_between_two_characters_when_they_are_cut)
{
    std::string accents, encoded;
    for (int i = 0; i < 80; ++i) {
        accents += "é";
        encoded += "?";
    }
    for (const char* const before : {"", "a", "ab"}) {
        const std::string cut = FileName(before + accents), other = FileName(before + encoded);
        EXPECT_EQ(cut[cut.size() - 17], '_');
        EXPECT_EQ(cut.substr(cut.size() - 19, 2), "é") << cut;
        EXPECT_EQ(other.substr(other.size() - 20, 3), "%3F") << other;
    }
}

TEST(FileNames, are_none_for_blanks)
{
    for (const char* const blank : {"", " ", "\t\n", "\xC2\xA0", "\xE2\x80\x8B\xE2\x80\x8D"})
        EXPECT_TRUE(openhost::IsBlankName(QString::fromUtf8(blank))) << blank;
    EXPECT_FALSE(openhost::IsBlankName(QStringLiteral(" x ")));
}
