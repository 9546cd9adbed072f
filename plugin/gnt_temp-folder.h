// A folder of a conversion's own for its temporary files.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Makes a folder "gantrel-" and eight random characters below the system's temporary folder, and removes it
/// with the files in it when it goes away. What cannot be removed is told in the log. A conversion has one
/// when the plug-in's setting "use-own-temp-folder" is on; otherwise its files stay for support to look at.
class GntTempFolder {
public:
    /// @throws kst::Exception  "failed to create temporary folder {}"
    GntTempFolder();
    ~GntTempFolder();
    GntTempFolder(const GntTempFolder&) = delete;
    GntTempFolder& operator=(const GntTempFolder&) = delete;

    const std::string& getPath() const { return _path; } ///< absolute

private:
    std::string _path;
};
