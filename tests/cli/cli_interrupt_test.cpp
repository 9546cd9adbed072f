// `gantrel convert` and Ctrl+C.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

using InterruptedConversion = ConversionTest;

TEST_F(InterruptedConversion, ends_at_the_next_step_and_makes_no_morphs)
{
    const auto hasFile = [this](const char* stem) {
        const std::vector<std::string> entries = workspace.entries();
        return std::any_of(entries.begin(), entries.end(), [stem](const std::string& entry) {
            return entry.find(std::string("/") + stem) != std::string::npos;
        });
    };
    const ProgramResult result =
        InterruptProgram(arguments({"--keep-temp"}), [&hasFile] { return hasFile("tempg8-src1-"); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    EXPECT_FALSE(hasFile("rigged-for-mlp-")) << "the last file of a conversion";
}

TEST_F(InterruptedConversion, ends_between_two_pictures)
{
    const std::string pictures = workspace.path("pictures");
    const ProgramResult result =
        InterruptProgram(arguments({"--pictures", pictures}), pictures + "/source.png");
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    EXPECT_FALSE(std::filesystem::exists(pictures + "/comparison-face.png")) << "the last one";
}
