// One conversion from files to files, as the command line runs it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "conversions/dials_used.h"
#include "dials.h"
#include "files_used.h"
#include "geometry/surface_distance.h"
#include "gnt_outcome.h"
#include "planned_files.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class DzNode;

namespace cli {

class HostSession;
class Progress;

/// A request of the product, with the files that it begins and ends with.
struct ConversionRequest {
    std::vector<std::filesystem::path> contentDirectories;
    std::filesystem::path source, target;
    std::vector<NameValue> dials; ///< of the source
    GntRequest morphs;            ///< its temporary files go with the conversion
    bool adjustsRig = false;      ///< the target's joints follow the new morphs
    bool registers = false;       ///< the target's neutral shape has features elsewhere than the source's
    std::optional<GntSaveOptions> save;
    std::string author;              ///< whom saved files name; empty for the vendor
    std::filesystem::path exportObj; ///< empty for none
    std::filesystem::path pictures;  ///< folder; empty for none
    std::filesystem::path page;      ///< a report to look at; empty for none
    std::string command;             ///< as a shell takes it, for the page
    bool drawsThumbnail = false;     ///< for a page of many conversions
    bool acceptsMissing = false;     ///< converts without worn shapes whose displacements cannot be had
    bool mayOverwrite = false;       ///< replaces files of morphs that have the new ones' names
    bool keepTemporary = false;      ///< the folder of temporary files stays, also after a failure
    bool isDryRun = false;           ///< ends before the first step, with the files that would be written
    bool verbose = false;
    bool tellsFilesUsed = false; ///< in the report
    /// Called when everything is made, before morphs are put in place; what it throws ends the conversion.
    std::function<void()> beforeSaving;
};

struct FigureReport {
    std::string label, kind, assetUri;
    std::size_t vertices = 0;
};

struct MorphReport {
    std::string name, label, kind, path;
    std::size_t verticesMoved = 0;       ///< of the cage
    std::size_t detailVerticesMoved = 0; ///< of all subdivision levels
    double largestDisplacementMm = 0.0;
    std::optional<std::size_t> jointsMoved; ///< only when the rig was adjusted
    double largestJointShiftMm = 0.0;
    std::string savedFile; ///< empty if not saved
};

/// cm; a list for the figure's mesh and for each of its parts, a distance for each vertex.
struct MeasuredDistances {
    std::vector<std::vector<float>> source, target;

    std::vector<float> all() const;
};

struct ConversionReport {
    FigureReport source, target;
    DialsUsed sourceDials, targetDials; ///< the latter without the new morphs
    std::string cloneShape;
    std::vector<std::string> jobs;
    std::size_t activeMorphs = 0;
    std::optional<int> subdLevel; ///< without one, the morphs are of base resolution
    std::vector<MorphReport> created;
    std::vector<std::pair<std::string, double>> missing; ///< morphs lost on the way, with their values
    /// Vertices of either figure to the surface of the other, both in the pose of the conversion and before
    /// any joint follows; cm. Only measured when the created morphs make the whole figure.
    std::optional<geometry::DistanceEstimate> distance;
    MeasuredDistances
        distances; ///< what that sums up, where a picture is to show it; otherwise a sample is measured
    std::vector<std::string> measuredParts; ///< eyes, mouth, ... that the distance counts in, of both figures
    std::vector<std::filesystem::path> files; ///< written besides the morphs
    FilesUsed filesUsed;                      ///< of both figures, where that is asked for
    std::filesystem::path page;               ///< one of them; empty for none
    std::string thumbnail;                    ///< as DrawThumbnail() has it; empty for none
    std::filesystem::path temporaryFolder;    ///< empty unless it was to be kept
    bool wasDryRun = false;
    std::vector<std::string> plannedNames; ///< of morphs, of a dry run
    PlannedFiles planned;                  ///< likewise
    base::Diagnostics diagnostics;
};

/// What the command line calls the bases.
const char* BaseName(GntBase base);

/// Loads both figures, converts, measures and writes what is asked for, each step a stage of the progress.
/// @throws UsageError           a name or folder of the request cannot be used
/// @throws std::runtime_error   with one phrase for the user; kst::Exception from the conversion likewise
ConversionReport Convert(const ConversionRequest& request, Progress& progress);

/// The same for figures that are in a session's scene, as they are: content directories and dials of the
/// request do not count, and its files only name the figures. The target wears what was made then; after a
/// failure both are as they were, but that a morph which was to be replaced is gone.
ConversionReport ConvertFigures(HostSession& session, DzNode& source, DzNode& target,
                                const ConversionRequest& request, Progress& progress);

} // namespace cli
