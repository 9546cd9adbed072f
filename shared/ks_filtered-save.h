// Saving through the host's asset filters.
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DzNode;

namespace kst {

/// One save. The option set lives as long as this object, also when the save fails.
class FilteredSave {
public:
    enum class RunGetOptions : int { Interactive, Silent, Skip };

    /// @throws Exception  "failed to find {}"
    explicit FilteredSave(const char* filterClassName);
    ~FilteredSave();
    FilteredSave(const FilteredSave&) = delete;
    FilteredSave& operator=(const FilteredSave&) = delete;

    /// Writes morphs of a node as data files that every later load of the figure finds.
    /// @param baseDataPath   content directory to save into
    /// @param propertyNames  morph names
    /// @return false when the host says that the user cancelled
    /// @throws Exception  "Daz Studio asset IO manager reported: {}"; CanceledException  the options were
    /// refused
    static bool SaveMorphSupportAsset_X(DzNode& node, std::string_view baseDataPath,
                                        std::string_view vendorName, std::string_view productName,
                                        const std::vector<std::string>& propertyNames, bool compress,
                                        bool showOptions);

    /// Write a file for users; a missing extension is added. The throws and the result are those above.
    /// @param path  the file
    static bool SaveScene_X(std::string_view path, bool compress);
    /// The selected nodes with what is below them.
    static bool SaveSceneSubset_X(std::string_view path, bool compress, bool showOptions);
    /// What the selected figure wears.
    /// @throws Exception  also when no node is selected
    static bool SaveWearablePreset_X(std::string_view path, bool compress, bool showOptions);
    /// How the selected figure stands.
    /// @throws Exception  also when no node is selected
    static bool SavePosePreset_X(std::string_view path, bool compress, bool showOptions);

private:
    bool run_X(std::string_view path, bool compress, RunGetOptions runGetOptions);

    struct Impl;
    std::unique_ptr<Impl> _pImpl;
};

} // namespace kst
