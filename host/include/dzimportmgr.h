// Importers by name.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"

#include <QObject>
#include <QStringList>

class DzImporter;

/// Knows every importer class that has a factory.
class DzImportMgr : public QObject {
    Q_OBJECT
public:
    DzImportMgr();
    ~DzImportMgr();

    /// A new instance that the caller deletes; null if unknown.
    Q_INVOKABLE DzImporter* findImporterByClassName(const QString& className) const;
    Q_INVOKABLE int getNumImporters() const;
    Q_INVOKABLE DzImporter* getImporter(int index) const;
    /// A new instance of the first importer that knows the file's extension; null if none.
    DzImporter* findImporterForFile(const QString& filename) const;
};
