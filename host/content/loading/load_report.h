// What a load meets, told when that is of use.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "base/errors.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

class QString;

namespace openhost {

/// The first few of many, for the end of a warning: ", such as a, b and c"; nothing for none.
std::string Examples(const std::vector<std::string>& texts);
/// That properties, at least one, have lost groups of their paths.
std::string TellCutPaths(const std::vector<std::string>& names);

/// Of one file. Warnings wait for handOver(), since they are errors when nothing could be loaded.
class LoadReport {
public:
    explicit LoadReport(std::string file) : _file(std::move(file)) {}

    void warn(const std::string& what);
    /// Of something that the scene will lack.
    void warnLeftOut(const std::string& what);
    void warnLeftOut(const base::Error& error, const std::filesystem::path& file);
    /// Of something that the log has already, for those who do not read it.
    void tellLogged(const std::string& what) const;
    void addMissing(const std::string& path) { _missing.insert(path); } ///< in no content library
    void addReplaced(const std::string& path)
    {
        _replaced.insert(path);
    } ///< missing; something else has its name
    void addLoneBone(const std::string& id) { _loneBones.push_back(id); } ///< hangs on no figure
    void addRepeatedBone(const std::string& id)
    {
        _repeatedBones.push_back(id);
    } ///< its figure has it already
    /// Hangs on nothing, but there is just one figure that lacks it.
    void addStrayBone(const std::string& id) { _strayBones.push_back(id); }
    void addUnknownBone(const std::string& id) { _unknownBones.push_back(id); } ///< its figure has none such
    /// Something is on a bone of which the file says nothing else.
    void addUnlistedBone(const std::string& id) { _unlistedBones.insert(id); }
    void addWithoutParent(const std::string& node) { _withoutParents.push_back(node); }
    /// One of a node that shows another.
    void addFurtherGeometry(const std::string& id) { _furtherGeometries.push_back(id); }
    /// Of a bone, or of another node that nothing gives a mesh.
    void addGeometryWithoutMesh(const std::string& id) { _withoutMesh.push_back(id); }
    /// It stands for one more of another node.
    void addRepeating(const std::string& node) { _repeating.push_back(node); }
    /// A shape or control that is set on what is neither in the file nor in the scene.
    void addHomeless(const std::string& url) { _homeless.push_back(url); }
    /// A shape or control that its file, which is there, does not have.
    void addAbsent(const std::string& url) { _absent.push_back(url); }
    /// It does not say which shape or control it is of.
    void addWithoutUrl(const std::string& id) { _withoutUrl.push_back(id); }
    /// What sets a dial that has been set already.
    void addRepeatedDial(const std::string& id) { _repeatedDials.push_back(id); }
    /// Another one than its node has.
    void addOtherGeometry(const std::string& id) { _otherGeometries.push_back(id); }
    /// What is set on something that is nowhere is taken to be set on the figure.
    void addGuessedParent(const std::string& id, const std::string& figure)
    {
        _guessedParents.insert(id + " is taken for " + figure);
    }
    /// Properties that formulas drive in the same way more than once.
    void addDuplicates(std::set<std::string> properties) { _duplicates.merge(properties); }

    /// Sums up and hands over; a person hears what should be known before the figures appear.
    /// @param leftOut  of the file, since it has no bearing on shapes and poses
    void tell(const std::vector<std::string>& leftOut, bool isEmpty);
    /// @param isEmpty  nothing could be loaded, and what was met is why
    void handOver(bool isEmpty);

private:
    void tellLeftOut(const QString& what) const;
    void sumUp(const std::vector<std::string>& leftOut);
    void sumUpNodes();
    void sumUpUnshown();
    void sumUpDials();

    std::string _file;
    std::set<std::string> _missing, _replaced, _duplicates, _guessedParents;
    std::vector<std::string> _homeless, _absent, _loneBones, _repeatedBones, _strayBones, _unknownBones,
        _withoutParents;
    std::vector<std::string> _furtherGeometries, _withoutMesh, _repeating, _withoutUrl, _repeatedDials,
        _otherGeometries;
    std::set<std::string> _unlistedBones;
    base::Diagnostics _diagnostics; ///< not handed over yet
};

} // namespace openhost
