// The dials of a figure: listing them, finding one by what the user calls it, setting it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <stdexcept>
#include <string>
#include <vector>

class DzModifier;
class DzNode;
class DzNumericProperty;

namespace cli {

/// A number on a figure, on one of its bones or modifiers. Borrowed from the scene.
struct Dial {
    DzNumericProperty* property = nullptr;
    DzModifier* modifier = nullptr; ///< null for a property of a node itself
    const DzNode* node = nullptr;   ///< the figure or bone
    std::string name;               ///< the modifier's, or the property's
    std::string label;
};

/// The dials that the user can see: of the modifiers first, then of the node.
std::vector<Dial> DialsOf(const DzNode& node);

/// What files have added to the bones of a figure; none of other nodes.
std::vector<Dial> BoneDials(const DzNode& node);

/// Those shown, without the ones that every node has.
std::vector<Dial> OwnDials(const DzNode& node);
bool IsAtDefault(const Dial& dial);

/// What a dial stands for in the end: another one for an alias, itself for others.
DzNumericProperty& TargetOf(const Dial& dial);
bool IsAlias(const Dial& dial);
/// As users know a property: by the morph's name for its dial, else by the property's; of a bone with the
/// bone's behind it.
std::string NameOf(const DzNumericProperty& property);

/// For comparing what users type: without case.
std::string Folded(const std::string& text);

/// No dial is called so.
class UnknownDial : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// By modifier name, then by property name, then by label; exactly first, then ignoring case. Those of bones
/// come after those of the figure.
/// @throws UnknownDial         none is called so; the text lists the closest names
/// @throws std::runtime_error  several labels are
Dial FindDial(const DzNode& node, const std::string& name);
/// As above, on the first of several figures that has it.
Dial FindDial(const std::vector<const DzNode*>& nodes, const std::string& name);

struct NameValue {
    std::string name;
    double value = 0.0;
};

/// Also what an alias stands for.
/// @param wanted       the name is as the user wrote it
/// @param diagnostics  hears of limits that hold the value, and of an alias
/// @throws std::runtime_error  the dial is an alias of nothing that is there
void TurnDial(const Dial& dial, const NameValue& wanted, base::Diagnostics& diagnostics);

/// "NAME=VALUE"; the name may hold "=" itself. The value is finite, with a decimal point; with "%" behind it,
/// it is a hundredth. Blanks may stand around the number.
/// @throws UsageError  it is not of that form
NameValue ParseNameValue(const std::string& text);

} // namespace cli
