// What a conversion is checked for before it costs time.
// SPDX-License-Identifier: MIT

#include "conversion_checks.h"

#include "base/reason.h"
#include "command.h"
#include "openhost/missing_shapes.h"
#include "output_name.h"

#include <cerrno>

#include <fmt/format.h>
#include <unistd.h>

namespace cli {

namespace {

namespace fs = std::filesystem;

/// Why the folder can neither be used nor made; zero when it can.
int FolderError(fs::path folder)
{
    std::error_code error;
    folder = fs::absolute(folder, error);
    while (!error && !fs::exists(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    // Below a file there is nothing to look for, which the system tells as an error.
    if (error)
        return error.value();
    if (!fs::is_directory(folder, error))
        return ENOTDIR;
    return access(folder.c_str(), W_OK | X_OK) == 0 ? 0 : errno;
}

void CheckFolder(const fs::path& folder)
{
    if (const int error = FolderError(folder))
        throw std::runtime_error(
            fmt::format("cannot create folder {}: {}", FileText(folder), base::ReasonOf(error)));
}

} // namespace

void CheckPlaces(const ConversionRequest& request)
{
    if (!request.pictures.empty())
        CheckFolder(request.pictures);
    if (request.save)
        CheckFolder(request.save->contentDirectory);
    if (request.exportObj.empty())
        return;
    std::error_code error;
    const fs::path folder = request.exportObj.parent_path();
    if (!folder.empty() && !fs::is_directory(folder, error))
        throw std::runtime_error(fmt::format("cannot write {}: there is no folder {}",
                                             FileText(request.exportObj), FileText(folder)));
    CheckOutput(request.exportObj);
    if (fs::is_directory(request.exportObj, error))
        throw std::runtime_error(
            fmt::format("cannot write {}: {}", FileText(request.exportObj), base::ReasonOf(EISDIR)));
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
    throw std::runtime_error(
        fmt::format("{}: worn shapes are missing: {}; --accept-missing converts without them",
                    FileText(request.source), names));
}

} // namespace cli
