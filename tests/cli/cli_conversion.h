// Running `gantrel convert` on a small library.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_expectations.h"
#include "cli_workspace.h"

#include "geometry/vec3.h"

#include <nlohmann/json.hpp>

/// A library of its own for each test, with a source whose dials "Wide" and "Bulge" are at 0.
class ConversionTest : public ::testing::Test {
protected:
    ConversionTest();

    std::string library(const std::string& relative = "") const;
    std::string sourceFile() const { return library(sourcePath); }
    std::string targetFile() const { return library(targetPath); }
    /// Without a failure, nothing may be in the programs' temporary folder, and no file unfinished.
    void expectNoTraces() const;

    /// The arguments of a conversion of the source with "Wide" at 1 and "Bulge" at 0.5, to `morphName`.
    std::vector<std::string> arguments(const std::vector<std::string>& more = {}) const;
    /// The arguments of a conversion between other files, without dials.
    std::vector<std::string> argumentsFor(const std::string& source, const std::string& target,
                                          const std::vector<std::string>& more = {}) const;
    ProgramResult convert(const std::vector<std::string>& more = {}) const;
    /// What `--json` says about a conversion that succeeds.
    nlohmann::json report(const std::vector<std::string>& more = {}) const;
    static std::vector<std::string> saving(const std::string& library, std::vector<std::string> more = {});

    /// Nothing was made or left behind by a conversion that failed so.
    void expectFailure(const ProgramResult& result, int exitCode, const std::string& sentence) const;
    void expectFailureWith(const ProgramResult& result, int exitCode, const std::string& part) const;

    static const char* const sourcePath;
    static const char* const targetPath;
    static const char* const savedFolder; ///< of the morphs, in the library that they are saved into

    Workspace workspace;
    std::string morphName = "Vera"; ///< of arguments()
};

/// Rest positions of a figure file with a morph file's displacements added; cm.
std::vector<geometry::Vec3f> MorphedPositions(const std::string& figureFile, const std::string& morphFile);
/// Displacements of a morph file, one a vertex of the figure's mesh; cm.
std::vector<geometry::Vec3f> MorphDeltas(const std::string& figureFile, const std::string& morphFile);
float LargestDifference(const std::vector<geometry::Vec3f>& a, const std::vector<geometry::Vec3f>& b);
