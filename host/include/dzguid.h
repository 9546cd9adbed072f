// Class identifiers.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Text form {8-4-4-4-12}.
class DzGuid {
public:
    DzGuid() {}

    /// A null id when the text is not of that form.
    static DzGuid fromString(const QString& text);

    QString toString() const { return _text; }
    bool isNull() const { return _text.isEmpty(); }
    bool operator==(const DzGuid& other) const { return _text == other._text; }
    bool operator!=(const DzGuid& other) const { return !(*this == other); }

private:
    QString _text; ///< lower case
};
