// Running `gantrel convert` on a small library.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "dson/reader.h"
#include "geometry/deltas.h"
#include "tests/plugin/mini_library.h"

#include <limits>

const char* const ConversionTest::sourcePath =
    "/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";
const char* const ConversionTest::targetPath = "/People/Genesis 9/Genesis 9.duf";
const char* const ConversionTest::savedFolder = "data/DAZ 3D/Genesis 9/Base/Morphs/Acme/Heroes";

ConversionTest::ConversionTest()
{
    WriteMiniLibrary(library());
}

std::string ConversionTest::library(const std::string& relative) const
{
    return workspace.path("lib") + relative;
}

std::vector<std::string> ConversionTest::argumentsFor(const std::string& source, const std::string& target,
                                                      const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"convert", "--content", library(), "--source", source, "--target", target};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

std::vector<std::string> ConversionTest::arguments(const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"--dial", "Wide=1", "--dial", "Bulge=0.5", "--name", morphName};
    all.insert(all.end(), more.begin(), more.end());
    return argumentsFor(sourceFile(), targetFile(), all);
}

ProgramResult ConversionTest::convert(const std::vector<std::string>& more) const
{
    return RunProgram(arguments(more));
}

nlohmann::json ConversionTest::report(const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"--json"};
    all.insert(all.end(), more.begin(), more.end());
    const ProgramResult result = convert(all);
    ExpectSuccess(result);
    expectNoTraces();
    return nlohmann::json::parse(result.out);
}

std::vector<std::string> ConversionTest::saving(const std::string& library, std::vector<std::string> more)
{
    for (const char* const text :
         {"--save-library", library.c_str(), "--vendor", "Acme", "--product", "Heroes"})
        more.push_back(text);
    return more;
}

void ConversionTest::expectNoTraces() const
{
    for (const std::string& entry : workspace.entries()) {
        EXPECT_NE(entry.compare(0, 4, "tmp/"), 0) << entry;
        EXPECT_EQ(entry.find(".part"), entry.npos) << entry;
    }
}

void ConversionTest::expectFailure(const ProgramResult& result, int exitCode,
                                   const std::string& sentence) const
{
    ExpectError(result, exitCode, sentence);
    expectNoTraces();
}

void ConversionTest::expectFailureWith(const ProgramResult& result, int exitCode,
                                       const std::string& part) const
{
    EXPECT_EQ(result.exitCode, exitCode);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.compare(0, 9, "gantrel: "), 0) << result.err;
    EXPECT_NE(result.err.find(part), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    expectNoTraces();
}

std::vector<geometry::Vec3f> MorphDeltas(const std::string& figureFile, const std::string& morphFile)
{
    const dson::Document figure = dson::ReadDocument(figureFile), morph = dson::ReadDocument(morphFile);
    return geometry::ToDense(morph.modifiers.at(0).morph.value().deltas,
                             figure.geometries.at(0).mesh.vertexCount());
}

std::vector<geometry::Vec3f> MorphedPositions(const std::string& figureFile, const std::string& morphFile)
{
    std::vector<geometry::Vec3f> positions = dson::ReadDocument(figureFile).geometries.at(0).mesh.positions;
    const std::vector<geometry::Vec3f> deltas = MorphDeltas(figureFile, morphFile);
    for (std::size_t v = 0; v < positions.size(); ++v)
        positions[v] = positions[v] + deltas[v];
    return positions;
}

float LargestDifference(const std::vector<geometry::Vec3f>& a, const std::vector<geometry::Vec3f>& b)
{
    if (a.size() != b.size())
        return std::numeric_limits<float>::infinity();
    float largest = 0.0f;
    for (std::size_t v = 0; v < a.size(); ++v)
        largest = std::max(largest, geometry::Length(a[v] - b[v]));
    return largest;
}
