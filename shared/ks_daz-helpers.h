// The host's scene: selection, objects, properties, figures and OBJ files.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QString>

class DzBoolProperty;
class DzEnumProperty;
class DzFigure;
class DzFileIOSettings;
class DzFloatProperty;
class DzIntProperty;
class DzNode;
class DzObject;
class DzProperty;
class DzShape;
class DzSkeleton;

/// All objects are the host's and are borrowed. Functions ending in _X, and those with a set throwIfMissing
/// flag, throw kst::Exception where they find nothing; the others then answer null or false. GUI thread only.
namespace kst {
namespace daz {

/// Where FindProperty looks.
enum class PropertyLocation : int { Node, Modifiers, Shape, Any };

enum class NodeResolution : int { Unknown, BaseResolution, HighResolution };

/// Which stock figure an asset URI names.
enum class BaseFigure : int {
    None,
    Genesis3Female,
    Genesis8Female,
    Genesis8_1Female,
    Genesis3Male,
    Genesis8Male,
    Genesis8_1Male,
    Genesis9
};

// Scene and selection.
std::vector<DzNode*> GetSceneSelection(); ///< in selection order
DzNode* GetPrimarySceneSelection(bool throwIfMissing);
DzNode* ResolveBone(DzNode* node); ///< a bone's skeleton; any other node, null included, as it is
DzNode* ResolveSceneSelection();   ///< the primary selection, resolved; null for none
/// Makes the node the only selected one.
/// @return false, touching nothing, when it already is
bool SetSceneSelection(DzNode& node);
DzFigure& ResolveToFigure_X(DzNode& node);
std::string GetNodeAssetUri(const DzNode& node);
BaseFigure GetBaseFigure(std::string_view assetUri); ///< ignores case

// Objects, shapes and properties.
DzObject* GetObject(const DzNode& node, bool throwIfMissing);
DzShape* GetCurrentShape(const DzNode& node, bool throwIfMissing);
DzProperty* FindProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                         bool throwIfMissing);
/// What FindProperty finds, if it is of class T: DzIntProperty, DzFloatProperty, DzBoolProperty or
/// DzEnumProperty.
template <class T>
T* FindTypedProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                     bool throwIfMissing);
DzIntProperty* FindIntProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                               bool throwIfMissing);
DzFloatProperty* FindFloatProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                   bool throwIfMissing);
DzBoolProperty* FindBoolProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                 bool throwIfMissing);
DzEnumProperty* FindEnumProperty(const DzNode& node, PropertyLocation location, std::string_view name,
                                 bool throwIfMissing);
DzFloatProperty* FindBoneProperty(const DzSkeleton& skeleton, std::string_view boneName,
                                  std::string_view propertyName, bool throwIfMissing);
void SetBoneValueOrThrow(const DzSkeleton& skeleton, std::string_view boneName, std::string_view propertyName,
                         float value);

// Properties with fixed names, each at its fixed location.
DzBoolProperty* FindEnableSmoothingProperty(const DzNode& node, bool throwIfMissing);
DzBoolProperty* FindSmoothingInteractiveUpdateProperty(const DzNode& node, bool throwIfMissing);
DzBoolProperty* FindGeneratePreRenderHairsProperty(const DzNode& node, bool throwIfMissing);
DzBoolProperty* FindPreviewPreRenderHairsProperty(const DzNode& node, bool throwIfMissing);
DzIntProperty* FindRenderLineTessellationSidesProperty(const DzNode& node, bool throwIfMissing);
DzIntProperty* FindViewportLineTessellationSidesProperty(const DzNode& node, bool throwIfMissing);
DzBoolProperty* FindFreezeSimulationProperty(const DzNode& node, bool throwIfMissing);
DzProperty* FindVisibleInSimulationProperty(const DzNode& node); ///< null for none

// Resolution.
DzEnumProperty* FindNodeResolutionEnumProperty(const DzNode& node, bool throwIfMissing);
DzIntProperty* FindSubdivisionLevelIntProperty(const DzNode& node, bool throwIfMissing);
NodeResolution GetNodeResolution(const DzNode& node) noexcept;
bool SetNodeResolution(const DzNode& node, NodeResolution resolution, bool throwIfMissing);
bool GetSubdivisionLevel(const DzNode& node, int* level) noexcept;

// OBJ files. Both switch the host's dialogs off in the given settings.
void ExportOneObj_X(DzFileIOSettings& settings, std::string_view path); ///< writes the scene selection
void ImportOneObj_X(DzFileIOSettings& settings, std::string_view path);

// Content paths.
std::string GetAbsolutePath_X(std::string_view relativePath); ///< empty when no content library holds it
QString GetAbsolutePathQ_X(const QString& relativePath);
std::string GetDazRelativePath_X(std::string_view absolutePath); ///< empty for an empty path
std::string GetBaseDirectory_X(std::string_view path); ///< the content folder that holds it; empty if none

} // namespace daz
} // namespace kst
