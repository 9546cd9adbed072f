// Files that are nested deeper than anybody reads.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/reader.h"
#include "tests/content/temp_folder.h"
#include "tests/content/throws.h"

#include <gtest/gtest.h>

namespace {

using Phrases = std::vector<std::string>;

/// The levels that a member of the outermost object may have.
constexpr int deepest = 1022;

std::string Lists(int levels)
{
    const auto count = static_cast<std::size_t>(levels);
    return std::string(count, '[') + "7" + std::string(count, ']');
}

std::string Objects(int levels, const std::string& innermost)
{
    std::string text = innermost;
    for (int i = 0; i < levels; ++i)
        text = "{\"in\": " + text + "}";
    return text;
}

class DeepText : public testing::Test {
protected:
    dson::Document read(const std::string& deep) const
    {
        return dson::ReadDocument(
            _folder.write("deep.dsf", "{\"file_version\": \"0.6.0.0\",\n\"x\": " + deep +
                                          ",\n\"modifier_library\": [{\"id\": \"Up\"}]}"));
    }
    static Phrases told(const dson::Document& document)
    {
        Phrases phrases;
        for (const base::Diagnostic& diagnostic : document.diagnostics)
            phrases.push_back(diagnostic.what);
        return phrases;
    }
    void expectError(const std::string& deep, const std::string& what) const
    {
        EXPECT_THROW_MSG(read(deep), base::FormatError, (_folder.path() / "deep.dsf").string() + ": " + what);
    }

    const TempFolder _folder;
};

} // namespace

TEST_F(DeepText, is_read_whole_as_far_as_the_parser_goes)
{
    const dson::Document document = read(Lists(deepest));
    EXPECT_EQ(document.modifiers.size(), 1u);
    EXPECT_EQ(told(document), Phrases{});
}

TEST_F(DeepText, loses_the_branch_that_is_too_deep_and_nothing_else)
{
    for (const std::string& deep : {Lists(deepest + 1), Lists(100000), Objects(3000, "1"),
                                    Objects(1100, R"(["]", '}', /* [ */ "\\\"[", {}, 1.5])")}) {
        const dson::Document document = read(deep);
        ASSERT_EQ(document.modifiers.size(), 1u);
        EXPECT_EQ(document.modifiers[0].id, "Up");
        ASSERT_FALSE(document.diagnostics.empty());
        EXPECT_EQ(told(document)[0].find("has 1 branch that is nested too deeply, left out: line 2, column "),
                  0u)
            << told(document)[0];
    }
    EXPECT_EQ(told(read(Lists(deepest + 1))),
              Phrases{"has 1 branch that is nested too deeply, left out: line 2, column 1020"});
    EXPECT_EQ(
        told(read("[" + Lists(deepest) + "," + Lists(deepest) + "]")),
        Phrases{"has 2 branches that are nested too deeply, left out: the first at line 2, column 1020"});
}

TEST_F(DeepText, has_to_be_closed_as_it_was_opened)
{
    expectError(std::string(5000, '[') + "7" + std::string(4999, ']') + "}",
                "line 2, column 10006 is not valid JSON");
    expectError(std::string(2000, '['), "line 3, column 35 is not valid JSON");
    expectError(std::string(2000, '[') + "\"", "ends too early, at line 3, column 36");
}
