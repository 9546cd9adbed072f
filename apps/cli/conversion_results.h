// Looking at what a conversion made.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversion.h"
#include "gnt_convert-figure.h"

class DzFigure;

namespace cli {

FigureReport DescribeFigure(DzFigure& figure);
std::vector<std::string> JobNames(GntJobs jobs);
MorphReport DescribeMorph(DzFigure& target, const GntCreatedMorph& morph);
/// Where the created morphs were saved.
void AddSavedFiles(DzFigure& target, const std::filesystem::path& library, ConversionReport& report);

/// Dials the new morphs up so that the figure looks converted: the full one, or else the head's and the
/// body's.
void WearMorphs(const std::vector<GntCreatedMorph>& created);
bool MakesWholeFigure(GntJobs jobs);

/// Source against target in the place, pose and resolution of the conversion. Both are put back.
geometry::DistanceSummary MeasureDistance(const GntParams& params, GntResolution resolution);

/// @throws base::IoError  the file cannot be written
void ExportFigure(DzFigure& figure, const std::filesystem::path& file, GntResolution resolution);

/// Source and target, and both side by side from several directions.
/// @return the files
std::vector<std::filesystem::path> DrawPictures(const GntParams& params, const std::filesystem::path& folder,
                                                GntResolution resolution);

} // namespace cli
