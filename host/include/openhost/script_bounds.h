// What scripts of strangers may do to the user's files.
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>

namespace openhost {

/// Beyond content directories and the temporary folder.
struct ScriptRights {
    QStringList folders;    ///< files may be read and written below these too
    bool processes = false; ///< programs may be started, such as one that shows an address
    QStringList toRead;     ///< files may be read below these too
};

/// What all scripts may that users run; nothing more at first. Of its folders to write in, those that are not
/// there are told.
void SetScriptRights(const ScriptRights& rights);

/// As long as it lives, the host writes files below the folders only that it has as content directories when
/// this is made, the temporary folder and those of the rights, and scripts read text below those and the ones
/// to read only. What is refused fails with its reason. Content may be opened wherever it is.
class ScriptBounds {
public:
    ScriptBounds();
    ~ScriptBounds();
    ScriptBounds(const ScriptBounds&) = delete;
    ScriptBounds& operator=(const ScriptBounds&) = delete;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
