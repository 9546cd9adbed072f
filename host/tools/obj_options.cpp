// OBJ option sets of the host as options of the geometry library.
// SPDX-License-Identifier: MIT

#include "obj_options.h"

#include "app/host_log.h"
#include "base/errors.h"
#include "dzfileiosettings.h"

#include <algorithm>
#include <cmath>

#include <QStringList>

namespace openhost {

namespace {

bool Flag(const DzFileIOSettings& options, const char* key, bool fallback)
{
    return options.getBoolValue(QLatin1String(key), fallback);
}

geometry::ObjAxis ReadAxis(const DzFileIOSettings& options, const char* key, const char* invertKey,
                           int fallback)
{
    static const char* const letters = "XYZ";
    const QString name = options.getStringValue(QLatin1String(key), QString(QLatin1Char(letters[fallback])))
                             .trimmed()
                             .toUpper();
    geometry::ObjAxis axis;
    axis.axis = static_cast<int>(QString::fromLatin1(letters).indexOf(name));
    if (name.size() != 1 || axis.axis < 0)
        throw base::FormatError("{} is \"{}\" instead of X, Y or Z", key, name.toStdString());
    axis.invert = Flag(options, invertKey, false) ||
                  options.getBoolValue(QLatin1String(invertKey) + QLatin1String("Axis"), false);
    return axis;
}

geometry::ObjGrouping ReadGrouping(const DzFileIOSettings& options)
{
    using geometry::ObjGrouping;
    if (!Flag(options, "WriteG", true))
        return ObjGrouping::None;
    if (Flag(options, "GroupSingle", false) || Flag(options, "GroupNodes", false))
        return ObjGrouping::Single;
    if (Flag(options, "GroupSurfaces", false))
        return ObjGrouping::Surfaces;
    return Flag(options, "GroupGeom", true) ? ObjGrouping::Geometry : ObjGrouping::None;
}

struct MapOption {
    const char* key;
    bool isSet; ///< by default
};

constexpr MapOption mapOptions[] = {{"NoMaps", false},
                                    {"OriginalMaps", true},
                                    {"CollectMaps", false},
                                    {"ConvertMaps", false},
                                    {"QuoteMapPathsWithSpaces", true}};

} // namespace

geometry::ObjSpace ReadObjSpace(const DzFileIOSettings& options)
{
    geometry::ObjSpace space;
    space.first = ReadAxis(options, "LatAxis", "InvertLat", 0);
    space.second = ReadAxis(options, "VertAxis", "InvertVert", 1);
    space.third = ReadAxis(options, "DepthAxis", "InvertDepth", 2);
    const int used = 1 << space.first.axis | 1 << space.second.axis | 1 << space.third.axis;
    if (used != 7)
        throw base::FormatError("the axes of the OBJ options name one axis twice");
    space.centimetresPerUnit = options.getFloatValue(QLatin1String("Scale"), 1.0);
    if (!(space.centimetresPerUnit > 0.0) || !std::isfinite(space.centimetresPerUnit))
        throw base::FormatError("the scale of the OBJ options is {}", space.centimetresPerUnit);
    return space;
}

void SetDefaultObjSpace(DzFileIOSettings& options)
{
    options.setFloatValue(QLatin1String("Scale"), 1.0);
    options.setStringValue(QLatin1String("LatAxis"), QLatin1String("X"));
    options.setStringValue(QLatin1String("VertAxis"), QLatin1String("Y"));
    options.setStringValue(QLatin1String("DepthAxis"), QLatin1String("Z"));
}

void SetDefaultMapOptions(DzFileIOSettings& options)
{
    for (const MapOption& option : mapOptions)
        options.setBoolValue(QLatin1String(option.key), option.isSet);
}

void NoteMapOptions(const QString& file, const DzFileIOSettings& options)
{
    QStringList unusual;
    for (const MapOption& option : mapOptions)
        if (Flag(options, option.key, option.isSet) != option.isSet)
            unusual.append(QLatin1String(option.key));
    if (!unusual.isEmpty())
        LogNote(QStringLiteral("%1: %2 has no effect here: the scene holds no maps")
                    .arg(file, unusual.join(QLatin1String(", "))));
}

geometry::ObjReadOptions ReadObjReadOptions(const DzFileIOSettings& options)
{
    geometry::ObjReadOptions read;
    read.space = ReadObjSpace(options);
    read.readTexCoords = Flag(options, "IncludeVT", true);
    read.readFaces = Flag(options, "IncludeF", true);
    read.readLines = Flag(options, "IncludeL", true);
    read.readGroups = Flag(options, "IncludeG", true);
    read.readSurfaces = Flag(options, "IncludeUsemtl", true);
    return read;
}

geometry::ObjWriteOptions ReadObjWriteOptions(const DzFileIOSettings& options)
{
    constexpr int mostDecimals = 17;
    geometry::ObjWriteOptions write;
    write.space = ReadObjSpace(options);
    write.decimals = std::clamp(options.getIntValue(QLatin1String("FloatPrecision"), 6), 0, mostDecimals);
    write.writeFaces = Flag(options, "WriteF", true);
    write.writeLines = Flag(options, "WriteL", true);
    write.writeTexCoords = Flag(options, "WriteVT", true);
    write.writeNormals = Flag(options, "WriteVN", false);
    write.writeObjects = Flag(options, "WriteO", false);
    write.writeSurfaces = Flag(options, "WriteUsemtl", true);
    write.triangulate = Flag(options, "TriangulateNgons", false);
    write.grouping = ReadGrouping(options);
    return write;
}

} // namespace openhost
