// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "app/current_attendant.h"
#include "dson/reader.h"
#include "dson/uri.h"

#include <optional>
#include <string>
#include <vector>

#include <QHash>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// The figure that a bone belongs to; any other node itself.
DzNode& FigureOf(DzNode& node);

/// The node that a path such as "//@selection/hip/arm" names below one that stands for the selection; steps
/// that are not there are passed over, but for the last. Null for none.
DzNode* FindByPath(DzNode& top, const std::string& path);

/// Finds what presets name on a figure. Not to be kept while the figure changes.
class PresetTarget {
public:
    explicit PresetTarget(DzNode& node) : _node(node) {}

    DzNode& node() const { return _node; }
    DzNumericProperty* find(const dson::Uri& uri) const; ///< a dial or a node's channel; null for none
    /// Of a morph or control of the figure or of one of its bones; null for none.
    DzNumericProperty* findDial(const std::string& nameOrId) const;

private:
    DzNumericProperty* findMorphById(const QString& id) const;

    DzNode& _node;
    mutable std::optional<QHash<QString, DzNumericProperty*>> _morphsById;
};

/// There is a value for something else than a material.
bool HoldsValues(const dson::Document& preset);
/// What of a preset has no bearing on shapes and poses, such as "3 materials".
std::vector<std::string> LeftOutOf(const dson::Document& preset);

/// What is proposed for a D-Former preset: its own name, beside those that are there.
DFormLoadOptions ProposedDFormOptions(const dson::Document& preset);

/// Adds a D-Former to the scene that deforms the node within the file's influence weights.
/// @throws base::FormatError  the weights are not for the node's mesh; the scene is as it was
void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options);

/// Sets the properties that a pose, properties or shape preset names, on the node's figure. Asks what to do
/// about values beyond the limits of clamped dials.
/// @return how many of them there are
int ApplyValues(const dson::Document& preset, DzNode& node);

} // namespace openhost
