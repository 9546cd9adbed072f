// What the closed host may spell otherwise.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

#include <QSize>
#include <QString>

class Dz3DViewport;
class DzCamera;
class DzContentFolder;
class DzFloatProperty;
class DzMorphDeltas;
class DzRenderOptions;
class DzViewport;
class DzViewportMgr;

/// The uses of the host whose spelling is not known for certain: names, headers and results that neither its
/// documentation nor other plug-ins show. Where a host's SDK differs, this class is mended and nothing else.
/// What it is given and what it returns is the host's, and is borrowed.
class KsHelpersDaz {
public:
    /// The host's text for the user about a result code other than success.
    static std::string GetErrorText(int error);
    /// Of the author that the user's preferences name; empty when there is none.
    static QString GetCurrentAuthorName();
    static QString GetFullPath(const DzContentFolder& folder);
    /// Empty when the deltas come from no file.
    static std::string GetDeltasUri(const DzMorphDeltas& deltas);
    static Dz3DViewport* Get3dViewport(const DzViewport& viewport); ///< null when it shows no scene
    /// The camera that is not in the scene; null when the host has none.
    static DzCamera* GetPerspectiveView(const DzViewportMgr& manager);
    /// Whether the host moves a value that is outside of the property's limits to the nearer one.
    static bool IsClamped(const DzFloatProperty& property);
    static QSize GetImageSize(const DzRenderOptions& options); ///< pixels
};
