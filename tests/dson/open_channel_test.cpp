// Channels of nodes that do not say of what type they are.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "tests/content/temp_folder.h"

#include <gtest/gtest.h>

namespace {

class OpenChannel : public testing::Test {
protected:
    /// @param channel  in the `extra` of a node's instance
    dson::Document read(const std::string& channel) const
    {
        return dson::ReadDocument(
            _folder.write("open.duf", R"({"file_version": "0.6.0.0", "scene": {"nodes": [
            {"id": "A", "extra": [{"type": "studio_node_channels", "channels": [{"channel": )" +
                                          channel + "}]}]}]}}"));
    }
    static bool isSilent(const dson::Document& document) { return document.diagnostics.empty(); }

    const TempFolder _folder;
};

} // namespace

TEST_F(OpenChannel, may_hold_a_list_or_a_text_that_is_kept_without_a_word)
{
    for (const char* const value : {"[1, 2]", "\"soft\"", "{\"a\": 1}"}) {
        const dson::Document document =
            read(std::string(R"({"id": "own", "current_value": )") + value + ", \"value\": " + value + "}");
        EXPECT_TRUE(isSilent(document)) << document.diagnostics[0].what;
        const dson::NodeInstance& node = document.nodeInstances.at(0);
        EXPECT_TRUE(node.properties.empty());
        ASSERT_EQ(node.kept.extras.size(), 1u);
        EXPECT_NE(node.kept.extras[0].find("\"own\""), std::string::npos);
    }
}

TEST_F(OpenChannel, holds_a_number_where_there_is_one)
{
    for (const char* const values : {"\"value\": 0.5", "\"current_value\": 0.5, \"value\": [1]",
                                     "\"current_value\": \"0.5\"", "\"current_value\": [1], \"value\": 0.5"})
        EXPECT_EQ(
            read(std::string("{\"id\": \"own\", ") + values + "}").nodeInstances.at(0).properties.at("own"),
            0.5)
            << values;
}

TEST_F(OpenChannel, that_holds_too_large_a_number_is_told)
{
    EXPECT_FALSE(isSilent(read(R"({"id": "own", "value": 1e300})")));
}

TEST_F(OpenChannel, is_none_that_says_its_type)
{
    EXPECT_FALSE(isSilent(read(R"({"id": "own", "type": "float", "value": [1, 2]})")));
}
