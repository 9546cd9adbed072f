// Watching, and failing, what is done to the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// Asked before every operation that changes the scene or writes a file.
///
/// Operations: "select", "add", "remove", "rename", "visible", "property", "morph", "export", "import",
/// "openFile", "replaceScene", "saveAsset", "createMorph", "transfer". The detail names the object and what
/// is done to it. "replaceScene" follows "openFile" when the scene is to be emptied for the file; its
/// listener may ask the user. "progress" tells the text that a progress display shows from now on, and
/// "leftOut" what of a file does not come into the scene that is being made of it; neither can be refused.
class OperationListener {
public:
    virtual ~OperationListener();
    /// False makes the operation fail in the way that its result allows; nothing is changed then.
    virtual bool allow(const QString& operation, const QString& detail) = 0;
};

/// Null ends it. The listener is not owned.
void SetOperationListener(OperationListener* listener);
/// Whether anybody listens; ask before putting a detail together.
bool IsListening();
/// What the listener says; true without one.
bool AllowOperation(const char* operation, const QString& detail);

} // namespace openhost
