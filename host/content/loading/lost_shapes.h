// What would turn the dials of shapes that could not be made.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "formula_links.h"

#include <QPointer>

#include <list>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// Without a dial in the scene, where it would be taken for a shape that is there.
class LostShape {
public:
    /// @param uri      of the file that defines it, with its id there
    /// @param why      names file and shape
    /// @param channel  nothing where it is not known
    LostShape(const dson::Uri& uri, std::string name, base::Diagnostic why,
              std::optional<dson::Channel> channel = std::nullopt);

    bool isNamedBy(const dson::Uri& uri) const;
    bool isCalled(const std::string& nameOrId) const { return nameOrId == _name || nameOrId == _id; }
    const std::string& id() const { return _id; }
    const std::string& name() const { return _name; }
    const base::Diagnostic& why() const { return _why; }

    void set(double value) { _value = value; }
    /// Of a formula whose output the shape is; without all of its inputs it drives nothing.
    void drive(const dson::Formula& formula, const PropertyResolver& resolve);
    /// What its dial would show now.
    double evaluate() const;

private:
    struct Drive {
        dson::Formula formula;
        std::map<std::string, QPointer<DzNumericProperty>> inputs; ///< by the formula's addresses
    };

    std::string _path, _id, _name;
    base::Diagnostic _why;
    std::optional<dson::Channel> _channel;
    std::optional<double> _value;
    std::vector<Drive> _drives;
};

class LostShapes {
public:
    LostShapes() = default;
    LostShapes(LostShapes&&) = default;
    LostShapes& operator=(LostShapes&&) = default;

    LostShape* find(const dson::Uri& uri);              ///< null for none
    LostShape* findCalled(const std::string& nameOrId); ///< null for none
    LostShape& add(LostShape shape);
    bool empty() const { return _shapes.empty(); }

    /// The node has them from now on.
    static void Attach(DzNode& node, LostShapes shapes);
    /// Null for none.
    static LostShapes* Of(const DzNode& node);

    std::list<LostShape>& all() { return _shapes; }

private:
    std::list<LostShape> _shapes;
    std::unordered_map<std::string, std::vector<LostShape*>> _byCall; ///< by id and by name, in order
};

} // namespace openhost
