// The host's Morph Loader Pro, run by a fixed script.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

class QString;

namespace kst {

/// The same load as MorphLoaderBatch::Exec_X, done by the host's script engine on the scene's primary
/// selection.
struct MorphLoaderProScript {
    /// Parameters are MorphLoad's members; importSettingsJson may not be empty here.
    /// @return what the host's loader reports
    /// @throws Exception  "missing import OBJ file", "missing morph name", "missing property group path",
    /// "failed to execute script to run Morph Loader Pro", or a text that begins with "Script error: "
    static std::string ScriptExec(std::string_view objFile, std::string_view morphName,
                                  const QString& importSettingsJson, bool subdivide, int builtResolution,
                                  std::string_view propertyGroupPath, bool reverseDeformations,
                                  std::string_view attenuateMapPath, float attenuateStrength);
};

} // namespace kst
