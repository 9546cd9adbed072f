// The OBJ options as dialogs show them.
// SPDX-License-Identifier: MIT

#include "obj_option_rows.h"

namespace openhost {

namespace {

const QStringList axes{QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z")};

const char* const spaceGroup = "Axes and scale";
const char* const contentGroup = "What to write";
const char* const readGroup = "What to read";
const char* const geometryGroup = "Geometry";
const char* const groupsGroup = "Groups";
const char* const surfaceGroup = "Surfaces";
const char* const objectGroup = "Which objects";

constexpr double smallestScale = 0.0001;
constexpr double largestScale = 1e6;
constexpr double mostDecimals = 17;

} // namespace

const std::vector<OptionRow>& ObjExportRows()
{
    static const std::vector<OptionRow> rows{
        {spaceGroup, "Scale", "Centimetres per unit", OptionRow::Number, {}, smallestScale, largestScale},
        {spaceGroup, "LatAxis", "Lateral axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertLatAxis", "Invert the lateral axis"},
        {spaceGroup, "VertAxis", "Vertical axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertVertAxis", "Invert the vertical axis"},
        {spaceGroup, "DepthAxis", "Depth axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertDepthAxis", "Invert the depth axis"},
        {spaceGroup, "FloatPrecision", "Decimals", OptionRow::Whole, {}, 0.0, mostDecimals},
        {contentGroup, "WriteVT", "Texture coordinates"},
        {contentGroup, "WriteVN", "Normals"},
        {contentGroup, "WriteF", "Faces"},
        {contentGroup, "WriteL", "Lines"},
        {contentGroup, "WriteO", "Object names"},
        {contentGroup, "WriteG", "Groups"},
        {contentGroup, "WriteUsemtl", "Surfaces"},
        {contentGroup, "WriteMtllib", "Material library"},
        {geometryGroup, "WeldSeams", "Weld seams"},
        {geometryGroup, "RemoveUnusedVerts", "Remove unused vertices"},
        {geometryGroup, "TriangulateNgons", "Triangulate faces of more than four corners"},
        {geometryGroup, "CollapseUVTiles", "Collapse texture tiles"},
        {groupsGroup, "GroupGeom", "By the geometry's own groups"},
        {groupsGroup, "GroupNodes", "By node"},
        {groupsGroup, "GroupSurfaces", "By surface"},
        {groupsGroup, "GroupSingle", "One for everything"},
        {surfaceGroup, "NoMaps", "No maps"},
        {surfaceGroup, "OriginalMaps", "Refer to maps where they are"},
        {surfaceGroup, "CollectMaps", "Copy maps beside the file"},
        {surfaceGroup, "ConvertMaps", "Convert maps"},
        {surfaceGroup, "QuoteMapPathsWithSpaces", "Quote map paths with spaces"},
        {objectGroup, "IgnoreInvisible", "Leave out what is invisible"},
        {objectGroup, "SelectedOnly", "Selected only"},
        {objectGroup, "SelectedRootsOnly", "Selected roots only"},
        {objectGroup, "PrimaryRootOnly", "Primary root only"},
        {objectGroup, "IncludeParented", "With what is parented to them"},
    };
    return rows;
}

const std::vector<OptionRow>& ObjImportRows()
{
    static const std::vector<OptionRow> rows{
        {spaceGroup, "Scale", "Centimetres per unit", OptionRow::Number, {}, smallestScale, largestScale},
        {spaceGroup, "LatAxis", "Lateral axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertLat", "Invert the lateral axis"},
        {spaceGroup, "VertAxis", "Vertical axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertVert", "Invert the vertical axis"},
        {spaceGroup, "DepthAxis", "Depth axis", OptionRow::Choice, axes},
        {spaceGroup, "InvertDepth", "Invert the depth axis"},
        {readGroup, "IncludeVT", "Texture coordinates"},
        {readGroup, "IncludeF", "Faces"},
        {readGroup, "IncludeL", "Lines"},
        {readGroup, "IncludeG", "Groups"},
        {readGroup, "IncludeUsemtl", "Surfaces"},
        {readGroup, "IncludeMtllib", "Material library"},
        {readGroup, "AutoAdapt", "Adapt the scale to the file"},
    };
    return rows;
}

} // namespace openhost
