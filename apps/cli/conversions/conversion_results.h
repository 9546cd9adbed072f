// Looking at what a conversion made.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"

class DzFigure;

namespace cli {

FigureReport DescribeFigure(DzFigure& figure);
/// That the height dial cannot do what `height=auto` asks of it.
void TellOfHeight(base::Diagnostics& diagnostics);
/// The choices with which it was made, and what is missing.
void DescribeOutcome(const GntOutcome& outcome, ConversionReport& report);
MorphReport DescribeMorph(DzFigure& target, const GntCreatedMorph& morph);
/// Lets the target's joints follow the created morphs.
/// @throws base::Error  it has none
void AdjustRig(const GntOutcome& outcome, ConversionReport& report);
/// Where a created morph was saved; empty if it was not.
std::filesystem::path SavedFile(DzFigure& target, const std::string& morph,
                                const std::filesystem::path& library);
/// Where all of them were.
void AddSavedFiles(DzFigure& target, const std::filesystem::path& library, ConversionReport& report);

enum class Measuring {
    Sample, ///< of the vertices of fine meshes
    All     ///< and each distance is kept in the report, for pictures
};
/// Source against the target that wears the created morphs, in the place, pose and resolution of the
/// conversion. Both are put back.
void MeasureDistance(const GntOutcome& outcome, Measuring how, ConversionReport& report);

/// @throws base::IoError  the file cannot be written
void ExportFigure(DzFigure& figure, const std::filesystem::path& file, GntResolution resolution);

/// What DrawPictures() calls its files.
std::vector<std::string> PictureNames();
/// Source and target, and both side by side from several directions.
/// @return the files
std::vector<std::filesystem::path> DrawPictures(const GntOutcome& outcome,
                                                const std::filesystem::path& folder);

} // namespace cli
