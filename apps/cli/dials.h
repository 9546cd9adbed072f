// The dials of a figure: listing them, finding one by what the user calls it, setting it.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

class DzModifier;
class DzNode;
class DzNumericProperty;

namespace cli {

/// A number on a figure or on one of its modifiers. Borrowed from the scene.
struct Dial {
    DzNumericProperty* property = nullptr;
    DzModifier* modifier = nullptr; ///< null for a property of the node itself
    std::string name;               ///< the modifier's, or the property's
    std::string label;
};

/// The dials that the user can see: of the modifiers first, then of the node.
std::vector<Dial> DialsOf(const DzNode& node);

/// Those shown, without the ones that every node has.
std::vector<Dial> OwnDials(const DzNode& node);
bool IsAtDefault(const Dial& dial);

/// For comparing what users type: without case.
std::string Folded(const std::string& text);

/// By modifier name, then by property name, then by label; exactly first, then ignoring case.
/// @throws std::runtime_error  none is called so (the text lists the closest names), or several labels are
DzNumericProperty& FindDial(const DzNode& node, const std::string& name);
/// As above, on the first of several figures that has it.
DzNumericProperty& FindDial(const std::vector<const DzNode*>& nodes, const std::string& name);

struct NameValue {
    std::string name;
    double value = 0.0;
};

/// "NAME=VALUE"; the name may hold "=" itself. The value is finite, with a decimal point.
/// @throws UsageError  it is not of that form
NameValue ParseNameValue(const std::string& text);

} // namespace cli
