// Exporters by name.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

class DzExporter;

/// Knows every exporter class that has a factory.
class DzExportMgr : public QObject {
    Q_OBJECT
public:
    DzExportMgr();
    ~DzExportMgr();

    /// A new instance that the caller deletes; null if unknown.
    Q_INVOKABLE DzExporter* findExporterByClassName(const QString& className) const;
    Q_INVOKABLE int getNumExporters() const;
    Q_INVOKABLE DzExporter* getExporter(int index) const;
};
