// What a script gives back.
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QPointer>
#include <QVariant>

namespace openhost {

/// A value that outlives the script, and maybe the objects in it.
class ScriptResult {
public:
    explicit ScriptResult(const QVariant& value = QVariant());

    /// With null in place of objects that are gone.
    QVariant value() const;

private:
    QVariant _value;
    QHash<QObject*, QPointer<QObject>> _objects;
};

} // namespace openhost
