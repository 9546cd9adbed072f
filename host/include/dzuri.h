// Asset URIs.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// `[name:|id:][//]<node path>:<file path>#<id>?<property path>`, every part optional.
///
/// toString() gives the text as it was handed in; the parts come percent-decoded.
class DzUri {
public:
    DzUri() {}
    explicit DzUri(const QString& uri);

    QString toString() const { return _text; }
    bool isEmpty() const { return _text.isEmpty(); }
    QString getScheme() const { return _scheme; }
    QString getNodePath() const { return _nodePath; }
    QString getFilePath() const { return _filePath; }
    QString getId() const { return _id; }
    QString getPropertyPath() const { return _propertyPath; }

private:
    QString _text, _scheme, _nodePath, _filePath, _id, _propertyPath;
};
