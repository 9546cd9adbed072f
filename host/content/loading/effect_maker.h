// Modifiers of an object that are neither morphs nor dials.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dzweightmap.h"

#include <functional>
#include <map>
#include <string>

class DzModifier;
class DzObject;

namespace openhost {

class FileEffect;
class PushModifier;

/// Of a kind that acts on a mesh as a whole, be it evaluated here or not.
bool IsCageEffect(const dson::Effect& effect);

/// Each kind has a class of its own if the host does something with it; the others are kept with their dials,
/// for those who read them and for saving.
class EffectMaker {
public:
    using Warn = std::function<void(const std::string&)>;

    /// @param object  null for a figure without a mesh, which gets none
    EffectMaker(DzObject* object, Warn warn);

    /// As a file defines it, with its own dial.
    /// @param path  decoded path of that file
    /// @return null when the object cannot have it
    DzModifier* define(const dson::Modifier& modifier, const std::string& path);
    /// With what an instance or a definition says of its further dials.
    /// @return null when the object cannot have it
    DzModifier* make(const dson::Effect& effect, const std::string& name, const std::string& id,
                     const std::string& path);
    /// Sets what an instance says, on one that has been made here.
    void apply(DzModifier& modifier, const dson::Effect& instance);

    /// Tells what is not evaluated, one line a kind.
    void report();

private:
    struct Omission {
        std::size_t count = 0;
        std::string one, example;
    };

    void addChannel(DzModifier& modifier, FileEffect& file, const dson::EffectChannel& channel);
    void takeOverInfluence(const DzModifier& modifier, FileEffect& file, const dson::InfluenceMap& map);
    void setUp(DzModifier& modifier);
    void setUpPush(PushModifier& modifier, const FileEffect& file) const;
    int vertexCount() const; ///< of the object's mesh
    bool fits(const dson::InfluenceMap& map) const;
    /// Null, and told, when they are not for the object's mesh.
    DzWeightMapPtr weightsOf(const dson::InfluenceMap& map, const DzModifier& modifier) const;
    void note(const dson::Effect& effect, const std::string& name);
    /// @param one, many  what is told of one such modifier, and of several
    void takeOver(DzModifier& modifier, FileEffect& file, dson::EffectChannel channel);
    void noteNoNumber(const dson::Channel& channel);
    void omit(const std::string& one, const std::string& many, const std::string& name);

    DzObject* _object;
    Warn _warn;
    std::map<std::string, Omission> _omitted; ///< by what is to be told of many
};

} // namespace openhost
