// What presets name, found on a figure.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/uri.h"

#include <optional>
#include <set>
#include <string>

#include <QHash>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// What such a URI names has no bearing on shapes and poses.
bool IsOfMaterial(const dson::Uri& uri);

/// The figure that a bone belongs to; any other node itself.
DzNode& FigureOf(DzNode& node);

/// The node that a path such as "//@selection/hip/arm" names below one that stands for the selection; steps
/// that are not there are passed over, but for the last. Null for none.
/// @param otherSpellings  receives the steps that differ from a node's name in letter case
DzNode* FindByPath(DzNode& top, const std::string& path, std::set<std::string>* otherSpellings = nullptr);

/// Finds what presets name on a figure. Not to be kept while the figure changes.
class PresetTarget {
public:
    explicit PresetTarget(DzNode& node) : _node(node) {}

    DzNode& node() const { return _node; }
    /// By which nodes were found that are spelled otherwise.
    const std::set<std::string>& otherSpellings() const { return _otherSpellings; }
    const std::set<std::string>& otherDialSpellings() const { return _otherDialSpellings; } ///< likewise
    DzNumericProperty* find(const dson::Uri& uri) const; ///< a dial or a node's channel; null for none
    /// Of a morph or control; null for none.
    /// @param path  of the node whose dials come before the figure's and those of its bones
    DzNumericProperty* findDial(const std::string& path, const std::string& nameOrId) const;

private:
    DzNumericProperty* findExactly(const DzNode& part, const QString& text) const;
    DzNumericProperty* findMorphById(const QString& id) const;
    /// "…/head" with a value and no name: the last step is the dial.
    DzNumericProperty* findAtEnd(const std::string& path) const;

    DzNode& _node;
    mutable std::set<std::string> _otherSpellings, _otherDialSpellings;
    mutable std::optional<QHash<QString, DzNumericProperty*>> _morphsById;
};

} // namespace openhost
