// Progress on a terminal.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_terminal.h"

namespace {

const char* const steps[] = {"Loading the figures ...",
                             "Exporting source as OBJ ...",
                             "Running Transfer Utility to create morphs in fit suit OBJ ...",
                             "Creating head morph ...",
                             "Creating body morph ...",
                             "Measuring the result ..."};

class ProgressOnTerminal : public ConversionTest {};

/// Lines end in both on a terminal.
std::string WithoutCarriageReturns(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

} // namespace

TEST_F(ProgressOnTerminal, shows_each_step_and_leaves_nothing_of_it)
{
    const TerminalResult result = RunOnTerminal(arguments(), 100);
    EXPECT_EQ(result.exitCode, 0);
    std::size_t at = 0;
    for (const char* step : steps) {
        const std::size_t found = result.bytes.find(step, at);
        ASSERT_NE(found, std::string::npos) << step;
        at = found;
    }
    ASSERT_FALSE(result.screen.empty());
    EXPECT_EQ(result.screen.front(), "figures");
    for (const std::string& line : result.screen)
        EXPECT_EQ(line.find(" ..."), std::string::npos) << line;
}

TEST_F(ProgressOnTerminal, leaves_the_error_alone_on_the_line)
{
    const TerminalResult result =
        RunOnTerminal(argumentsFor(sourceFile(), targetFile(), {"--dial", "Wide=0"}), 200);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.bytes.find(steps[0]), std::string::npos);
    ASSERT_EQ(result.screen.size(), 1u);
    EXPECT_EQ(result.screen.front(), "gantrel: Source figure \xE2\x80\x9CGenesis 8 Female\xE2\x80\x9D has no "
                                     "morphs dialed in; nothing to do.");
}

TEST_F(ProgressOnTerminal, keeps_to_one_line_of_a_narrow_window)
{
    // "Reading" and the file's whole path are longer than that.
    const unsigned short columns = 40;
    ASSERT_GT(targetFile().size(), columns);
    const TerminalResult result =
        RunOnTerminal({"render", targetFile(), "--out", workspace.path("a.png"), "--size", "20x20"}, columns);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_GT(result.longestCleared, 0u);
    EXPECT_LT(result.longestCleared, columns);
    EXPECT_EQ(result.screen, std::vector<std::string>{workspace.path("a.png") + ": 20 x 20 pixels"});
}

TEST_F(ProgressOnTerminal, is_not_shown_with_json)
{
    const TerminalResult result = RunOnTerminal(arguments({"--json"}), 100);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.bytes.front(), '{');
    EXPECT_EQ(result.bytes.find('\x1b'), std::string::npos);
    EXPECT_NO_THROW(nlohmann::json::parse(WithoutCarriageReturns(result.bytes)));
}

TEST_F(ProgressOnTerminal, is_not_shown_to_a_pipe)
{
    const ProgramResult result = convert();
    ExpectSuccess(result);
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
}
