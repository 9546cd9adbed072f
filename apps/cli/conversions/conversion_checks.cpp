// What a conversion is checked for before it costs time.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_checks.h"

#include "base/reason.h"
#include "command.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzuri.h"
#include "geometry/deltas.h"
#include "geometry/limits.h"
#include "mesh_files.h"
#include "openhost/missing_shapes.h"
#include "openhost/shapes.h"
#include "option_words.h"
#include "output_name.h"
#include "page/page_writer.h"
#include "save_options.h"

#include <cerrno>
#include <cmath>

#include <fmt/format.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

std::string FileOf(const DzMorph& morph)
{
    const QString name = morph.getAssetUri().getFilePath();
    const QString path = dzApp->getContentMgr()->getAbsolutePath(name, true);
    return (path.isEmpty() ? name : path).toStdString();
}

} // namespace

void CheckPlaces(const ConversionRequest& request)
{
    std::error_code error;
    for (const char* const type : {".duf", ".dsf", ".dhdm", ".obj", ".png"})
        if (HasExtension(request.pictures, type) && !fs::is_directory(request.pictures, error))
            throw UsageError(
                fmt::format("the pictures go into a folder as .png files, and {} is the name of a file",
                            FileText(request.pictures)));
    if (!request.pictures.empty())
        CheckFolder(request.pictures);
    if (request.save)
        CheckSaveLibrary(request.save->contentDirectory);
    if (!request.page.empty()) {
        CheckPageFile(request.page, {request.source, request.target});
        if (request.page.lexically_normal() == request.exportObj.lexically_normal())
            throw UsageError(fmt::format("{} and {} both name {}", OptionWord("--report"),
                                         OptionWord("--export-obj"), FileText(request.page)));
    }
    if (request.exportObj.empty())
        return;
    const fs::path folder = request.exportObj.parent_path();
    if (!folder.empty() && !fs::is_directory(folder, error))
        throw std::runtime_error(fmt::format("cannot write {}: there is no folder {}",
                                             FileText(request.exportObj), FileText(folder)));
    CheckOutput(request.exportObj, {request.source, request.target});
    if (fs::is_directory(request.exportObj, error))
        throw std::runtime_error(
            fmt::format("cannot write {}: {}", FileText(request.exportObj), base::ReasonOf(EISDIR)));
}

void CheckShapesAreReal(const DzNode& figure)
{
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i) {
        const auto* const morph = qobject_cast<const DzMorph*>(object->getModifier(i));
        const float value = morph ? morph->getValueControl()->getValue() : 0.0f;
        if (value == 0.0f)
            continue;
        const float reach = geometry::LargestLength(openhost::MorphDeltas(*morph)) * std::abs(value);
        if (reach > geometry::farthestPosition)
            throw std::runtime_error(fmt::format(
                "{}: \"{}\" at {:g} moves vertices by more than {:g} cm, which is nothing real",
                FileOf(*morph), morph->getName().toStdString(), value, geometry::farthestPosition));
    }
}

base::Diagnostics CheckShapesAreWhole(const DzNode& source, const ConversionRequest& request)
{
    const openhost::MissingShapes found = openhost::FindMissingShapes(source);
    base::Diagnostics missing = found.shapes;
    if (request.morphs.resolution == GntResolution::Subd)
        missing.insert(missing.end(), found.details.begin(), found.details.end());
    if (missing.empty() || request.acceptsMissing)
        return missing;
    std::string names;
    for (const base::Diagnostic& shape : missing)
        names +=
            fmt::format("{}\"{}\" ({}: {})", names.empty() ? "" : ", ", shape.asset, shape.file, shape.what);
    throw std::runtime_error(fmt::format("{}: worn shapes are missing: {}; {} converts without them",
                                         FileText(request.source), names, OptionWord("--accept-missing")));
}

} // namespace cli
