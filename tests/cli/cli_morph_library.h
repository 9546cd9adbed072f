// Running `gantrel convert-morphs` on a small library with morphs that tests write by hand.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_conversion.h"

class MorphLibraryTest : public ConversionTest {
protected:
    /// A file of the source figure's, as other programs write them: some vertices at the top, forward by 2
    /// cm.
    /// @param channel, members  further members of the channel and of the morph
    /// @return the file
    std::string writeMorph(const std::string& name, const std::string& channel = {},
                           const std::string& members = {},
                           const std::string& deltas = "[[440, 0, 0, 2], [441, 0, 0, 2], [442, 0, 0, 2]]",
                           const std::string& detailUrl = {}) const;
    /// A dial without a shape.
    void writeControl(const std::string& name, const std::string& formulas) const;
    /// A formula of the file that drives one morph by another: output, then operations.
    static std::string formula(const std::string& output, const std::string& operations,
                               const std::string& more = {});
    static std::string push(const std::string& name);
    static std::string uriOf(const std::string& name);
    /// A scene of the source figure with a modifier's value, and a turn of its hip.
    std::string writeScene(const std::string& name, const std::string& modifier,
                           const std::string& hipRotation) const;

    std::vector<std::string> argumentsOf(const std::vector<std::string>& more, const std::string& saved,
                                         const std::string& source) const;
    ProgramResult convertMorphs(const std::vector<std::string>& more, const std::string& saved,
                                const std::string& source = {}) const;
    /// What `--json` says of a run that succeeds.
    nlohmann::json report(const std::vector<std::string>& more, const std::string& saved,
                          const std::string& source = {}) const;

    static std::string fileOf(const std::string& saved, const std::string& morph);
    static std::string read(const std::string& file);
    /// Its modifier as it stands in its file.
    static nlohmann::json morphIn(const std::string& saved, const std::string& morph);
    std::vector<geometry::Vec3f> deltasOf(const std::string& saved, const std::string& morph) const;
    /// Offsets of all corners of all levels, one level behind the other; zero where nothing is moved.
    std::vector<geometry::Vec3f> detailOf(const std::string& saved, const std::string& morph) const;
};
