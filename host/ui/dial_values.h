// Values of many dials at once: memorized ones, defaults, and whole shapes on the clipboard.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"

#include <QByteArray>
#include <QPointer>
#include <QStringList>

#include <vector>

class DzNode;

namespace openhost {

using Dials = std::vector<QPointer<DzProperty>>;

/// Whether the dial stands elsewhere than it does by itself; what has no number never does.
bool IsChanged(const DzProperty& property);

/// What was done, and to which dials it could not be; for the user.
struct DialReport {
    int set = 0;
    QStringList locked;  ///< labels
    QStringList held;    ///< labels of those that did not get the whole value
    QStringList missing; ///< labels of a shape's dials that the figure does not have
    QString text() const;
};

/// To the values that the dials have by themselves.
DialReport ResetDials(const Dials& dials);
/// Kept until the program ends or the dial goes.
/// @return how many there are
int MemorizeDials(const Dials& dials);
bool IsMemorized(const DzProperty& property);
/// Those that were memorized; the others stay.
DialReport RestoreDials(const Dials& dials);

/// All dials of the node but its place, turn and size, as text.
QByteArray CopyShape(const DzNode& node);
/// Whether the text is one that CopyShape() wrote.
bool IsShape(const QByteArray& text);
/// Gives the node the shape as a whole: its dials that the shape does not have are reset. Dials are told by
/// the names of their morphs.
DialReport PasteShape(const QByteArray& text, DzNode& node);

} // namespace openhost
