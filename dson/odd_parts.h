// What nodes and geometries say in a way that is not understood.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_view.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dson {

struct ParseContext;

/// Each kind is told once for a file.
class OddParts {
public:
    enum class Kind { Node, Geometry };

    /// @param what  goes on from "it has"
    /// @param id    of the part
    void add(Kind kind, const std::string& what, const std::string& id) { _ids[{kind, what}].push_back(id); }
    void tell(ParseContext& context) const;

private:
    std::map<std::pair<Kind, std::string>, std::vector<std::string>> _ids;
};

/// As the file has it, but no longer than a line of a log should be.
std::string Shown(const Element& element);
/// The axes' order of a node or its instance; empty where it says none that there is.
/// @param instead  what counts then
std::string RotationOrder(const Element& node, const char* instead, ParseContext& context);
/// Whether it takes over its parent's scale; nothing where it does not say so.
std::optional<bool> InheritsScale(const Element& node);
/// Whether it says so at all.
bool SaysInheritsScale(const Element& node);
/// Tells when that had to be guessed from a text, or cannot be.
void TellInheritsScale(const Element& node, ParseContext& context);
/// A reference to another node; empty for what is none.
/// @param member  that has it
std::string NodeReference(const Element& node, const char* member, ParseContext& context);
/// Tells when the node is of no type that there is.
void TellNodeType(const Element& node, ParseContext& context);
/// Tells when the geometry is of no type that there is.
void TellGeometryType(const Element& geometry, ParseContext& context);
/// The level that an instance says; nothing for what is no number.
std::optional<double> GivenLevel(const Element& geometry, ParseContext& context);

} // namespace dson
