// Files that are read without the displacements in them.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/delta_skip.h"
#include "dson/file_text.h"
#include "dson/gzip.h"
#include "dson/reader.h"
#include "tests/content/temp_folder.h"
#include "tests/content/throws.h"

#include <gtest/gtest.h>

namespace {

/// The text without its displacements; itself where it has none that can be left out.
std::string Skipped(const std::string& text)
{
    std::string shorter;
    return dson::SkipDeltas(text, shorter) ? shorter : text;
}

std::string WithDeltas(const std::string& list, const std::string& label = "x")
{
    return R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Up", "label": ")" + label +
           R"(", "morph": {"vertex_count": 9, "deltas": )" + list + R"(, "hd_url": "/Up.dhdm"}}]})";
}

class LazyDeltas : public testing::Test {
protected:
    dson::Document read(const std::string& text) const
    {
        return dson::ReadDocument(_folder.write("lazy.dsf", text), {false});
    }
    void expectError(const std::string& text, const std::string& what) const
    {
        EXPECT_THROW_MSG(read(text), base::FormatError, (_folder.path() / "lazy.dsf").string() + ": " + what);
    }
    std::vector<std::uint32_t> vertices(base::Diagnostics& met) const
    {
        return dson::ReadDeltas(_folder.path() / "lazy.dsf", "Up", &met).vertices;
    }

    const TempFolder _folder;
};

} // namespace

TEST(SkippedDeltas, leave_an_empty_list)
{
    const char* const empty = R"("deltas": {"count": 2, "values": []}, "b": 1)";
    EXPECT_EQ(Skipped(R"("deltas": {"count": 2, "values": [[1, 0, 1.5e-3, 0], [2, 0, -1, 0]]}, "b": 1)"),
              empty);
    EXPECT_EQ(Skipped("\"deltas\"\n:\t{ \"count\" : 2 ,\r\n \"values\" : [\n[ 1,0,1,0 ] ,\n[ 2,0,1,0 ]\n] }"),
              "\"deltas\"\n:\t{ \"count\" : 2 ,\r\n \"values\" : [] }");
    EXPECT_EQ(Skipped(R"({"deltas": {"values": [[1, 0, 1, 0]]}})"), R"({"deltas": {"values": []}})");
    EXPECT_EQ(Skipped(R"({"deltas": [[1, 0, 1, 0]]})"), R"({"deltas": []})");
    EXPECT_EQ(Skipped(R"([{"deltas": [[1]]}, {"deltas": [[2], [3]]}, {"deltas": []}])"),
              R"([{"deltas": []}, {"deltas": []}, {"deltas": []}])");
}

TEST(SkippedDeltas, are_no_other_lists)
{
    for (const char* const text :
         {R"({"values": [[1, 2]]})", R"({"a": "deltas", "b": [[1]]})", R"({"\"deltas\": [[1]]": 2})",
          R"({"deltas": [1, 2]})", R"({"deltas": [["]", 2]]})", R"({"deltas": [[1 /* ]] */]]})",
          R"({"deltas": [[[1], 2]]})", R"({"deltas": [[[1], [2]]]})",
          R"({"deltas": {"extra": 1, "values": [[1]]}})", R"({"deltas": [[1], )", R"({"deltas": [[1)",
          R"({"deltas")", R"("deltas":)", R"({"deltas": {"count": })", ""})
        EXPECT_EQ(Skipped(text), text);
    const std::string endless = R"({"deltas": [[1)" + std::string(1000, ' ') + "]]}";
    EXPECT_EQ(Skipped(endless), endless);
}

TEST_F(LazyDeltas, come_later_and_the_rest_at_once)
{
    const dson::Document document =
        read(WithDeltas(R"({"count": 2, "values": [[1, 0, 1, 0], [3, 0, 1, 0]]})"));
    const dson::Modifier& modifier = document.modifiers.at(0);
    EXPECT_EQ(modifier.morph->vertexCount, 9);
    EXPECT_EQ(modifier.morph->hdUrl, "/Up.dhdm");
    EXPECT_TRUE(modifier.morph->deltas.empty());
    base::Diagnostics met;
    EXPECT_EQ(vertices(met), (std::vector<std::uint32_t>{1, 3}));
    EXPECT_TRUE(met.empty());
}

TEST_F(LazyDeltas, tell_their_oddities_when_they_are_read)
{
    EXPECT_TRUE(read(WithDeltas("[[1, 0, NaN, 0],\n [3, 0, 1, 0]]")).diagnostics.empty());
    base::Diagnostics met;
    EXPECT_EQ(vertices(met), std::vector<std::uint32_t>{3});
    ASSERT_EQ(met.size(), 2u);
    EXPECT_EQ(met[0].what, "has 1 number that is not finite, left out: line 1, column 124");
    EXPECT_EQ(met[1].what, "1 row of deltas is not four numbers and left out");
}

TEST_F(LazyDeltas, are_told_with_the_rest_of_an_odd_file_by_the_same_words)
{
    const dson::Document document = read(WithDeltas("[[1, 0, 1, 0,], [3, 0, 1, 0]]", "a\tb"));
    EXPECT_EQ(document.modifiers.at(0).channel.label, "a\tb");
    base::Diagnostics met;
    EXPECT_EQ(vertices(met), (std::vector<std::uint32_t>{1, 3}));
    EXPECT_EQ(met, document.diagnostics);
    EXPECT_EQ(met.size(), 2u);
}

TEST_F(LazyDeltas, of_a_file_that_was_cut_are_refused_at_its_end)
{
    const std::string text = WithDeltas("[[1, 0, 1, 0], [3, 0, 1, 0]]");
    for (std::size_t size = 1; size < text.size(); ++size)
        expectError(text.substr(0, size), "ends too early, at line 1, column " + std::to_string(size + 1));
}

TEST_F(LazyDeltas, of_a_compressed_file_need_no_true_length_in_it)
{
    const std::string text = WithDeltas("[[1, 0, 1, 0]" + std::string(500000, ' ') + "]");
    std::string packed = dson::Compress(text);
    EXPECT_EQ(dson::ReadText(_folder.write("packed.dsf", packed)), text);
    packed.replace(packed.size() - 8, 8, 8, '\0');
    EXPECT_EQ(dson::ReadText(_folder.write("packed.dsf", packed)), text);
}
